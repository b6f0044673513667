#include "FileCategory.h"

#include <QCoreApplication>

#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace {

struct CategoryInfo {
    const char *id;
    const char *title;
};

constexpr std::array<CategoryInfo, 10> infos = {{
    {"video", QT_TRANSLATE_NOOP("FileCategory", "Video")},
    {"audio", QT_TRANSLATE_NOOP("FileCategory", "Audio")},
    {"image", QT_TRANSLATE_NOOP("FileCategory", "Images")},
    {"document", QT_TRANSLATE_NOOP("FileCategory", "Documents")},
    {"archive", QT_TRANSLATE_NOOP("FileCategory", "Archives")},
    {"diskImage", QT_TRANSLATE_NOOP("FileCategory", "Disk Images")},
    {"application", QT_TRANSLATE_NOOP("FileCategory", "Apps & Installers")},
    {"code", QT_TRANSLATE_NOOP("FileCategory", "Source Code")},
    {"developer", QT_TRANSLATE_NOOP("FileCategory", "Developer")},
    {"other", QT_TRANSLATE_NOOP("FileCategory", "Other")},
}};

// Each row is split at single spaces; no extension stands in two rows.
constexpr std::array<std::pair<FileCategory, std::string_view>, 9> rows = {{
    {FileCategory::video, "mp4 m4v mov avi mkv wmv flv webm mpg mpeg 3gp mts m2ts vob braw r3d insv fcpbundle "
                          "imovielibrary tvlibrary"},
    {FileCategory::audio, "mp3 m4a m4b aac wav aiff aif flac ogg opus wma caf mid midi logicx band musiclibrary"},
    {FileCategory::image, "jpg jpeg png gif heic heif tiff tif bmp raw cr2 cr3 nef arw dng orf rw2 raf psd psb ai svg "
                          "webp ico icns sketch fig xcf exr hdr kra afphoto photoslibrary photolibrary"},
    {FileCategory::document,
     "pdf doc docx xls xlsx ppt pptx pages numbers key txt rtf rtfd md csv epub mobi odt ods odp tex"},
    {FileCategory::archive, "zip rar 7z tar gz tgz bz2 xz zst lz4 lzma cab sit sitx jar war xip"},
    {FileCategory::diskImage, "dmg iso img sparseimage sparsebundle vmdk vdi qcow2 vhd vhdx hdd utm toast"},
    {FileCategory::application, "app pkg mpkg ipa apk aab exe msi appex prefpane saver"},
    {FileCategory::code,
     "swift m mm h hpp c cc cpp js mjs cjs ts tsx jsx py rb go rs java kt kts scala php cs html css "
     "scss json yaml yml toml xml sh zsh sql lua dart vue svelte"},
    {FileCategory::developer,
     "o a dylib so dsym xcarchive framework bundle plugin kext pack idx class pyc whl gem nupkg "
     "tbd swiftmodule pcm docarchive xcodeproj xcworkspace playground ipsw"},
}};

constexpr std::array<std::string_view, 31> packageExtensions = {
    "app",           "bundle",    "framework",   "plugin",        "kext",         "appex",        "xpc",
    "prefpane",      "saver",     "qlgenerator", "photoslibrary", "photolibrary", "musiclibrary", "tvlibrary",
    "imovielibrary", "fcpbundle", "logicx",      "band",          "xcarchive",    "dsym",         "docarchive",
    "sparsebundle",  "rtfd",      "pages",       "numbers",       "key",          "playground",   "xcodeproj",
    "xcworkspace",   "mpkg",      "pkg",
};

// Keys are views into the string literals above, so lookups never allocate.
const std::unordered_map<std::string_view, FileCategory> &table()
{
    static const auto built = [] {
        std::unordered_map<std::string_view, FileCategory> map;
        for (const auto &[category, text] : rows) {
            std::size_t start = 0;
            while (start <= text.size()) {
                const std::size_t space = text.find(' ', start);
                const std::size_t end = space == std::string_view::npos ? text.size() : space;
                map.emplace(text.substr(start, end - start), category);
                start = end + 1;
            }
        }
        return map;
    }();
    return built;
}

const std::unordered_set<std::string_view> &packageSet()
{
    static const std::unordered_set<std::string_view> set(packageExtensions.begin(), packageExtensions.end());
    return set;
}

std::string_view view(QByteArrayView bytes) { return {bytes.data(), std::size_t(bytes.size())}; }

} // namespace

QString FileCategory::id() const { return QString::fromLatin1(infos[m_value].id); }

std::optional<FileCategory> FileCategory::fromRawValue(QStringView raw)
{
    for (FileCategory c : allCases)
        if (raw == QLatin1String(infos[c].id))
            return c;
    return std::nullopt;
}

QString FileCategory::title() const { return QCoreApplication::translate("FileCategory", infos[m_value].title); }

FileCategory FileCategory::classify(QByteArrayView ext)
{
    if (ext.isEmpty())
        return other;
    const auto &map = table();
    const auto it = map.find(view(ext));
    return it == map.end() ? FileCategory(other) : it->second;
}

FileCategory FileCategory::forFileName(QByteArrayView name)
{
    constexpr qsizetype maxLength = 15;
    const qsizetype dot = name.lastIndexOf('.');
    if (dot < 1)
        return other;
    const qsizetype length = name.size() - dot - 1;
    if (length < 1 || length > maxLength)
        return other;
    char lower[maxLength];
    for (qsizetype i = 0; i < length; ++i) {
        const char c = name[dot + 1 + i];
        lower[i] = (c >= 'A' && c <= 'Z') ? char(c - 'A' + 'a') : c;
    }
    return classify(QByteArrayView(lower, length));
}

bool FileCategory::isPackageExtension(QByteArrayView ext) { return !ext.isEmpty() && packageSet().contains(view(ext)); }

int FileCategory::tableSize() { return int(table().size()); }

int FileCategory::packageExtensionCount() { return int(packageSet().size()); }

double FileCategory::hue() const
{
    switch (m_value) {
    case video:
        return 0.78;
    case audio:
        return 0.90;
    case image:
        return 0.55;
    case document:
        return 0.12;
    case archive:
        return 0.06;
    case diskImage:
        return 0.98;
    case application:
        return 0.40;
    case code:
        return 0.25;
    case developer:
        return 0.47;
    case other:
        break;
    }
    return 0.62;
}
