// The ten kinds every file and package of a scan falls into, decided by the
// extension alone: a thin value class around the enumeration with its own id,
// title and lookups. The enumerator order is the order of every category list.
// A value; any thread.

#pragma once

#include <QByteArrayView>
#include <QString>

#include <array>
#include <optional>

class FileCategory
{
public:
    enum Value : quint8 { video, audio, image, document, archive, diskImage, application, code, developer, other };

    constexpr FileCategory(Value value = other) : m_value(value) {}
    constexpr operator Value() const { return m_value; }

    static const std::array<FileCategory, 10> allCases;

    // Raw value, which is also the category's id ("video", "diskImage", ...).
    QString id() const;
    QString rawValue() const { return id(); }
    static std::optional<FileCategory> fromRawValue(QStringView raw);
    // Localised title ("Video", "Disk Images", ...).
    QString title() const;
    // The category's hue in turns (0...1), the same wherever a category is
    // tinted; saturation and brightness are the caller's.
    double hue() const;

    // Category of an extension that is already lower case and has no dot. Upper
    // case is not folded here: that is the caller's job. Unknown or empty gives
    // `other`. The table is built once, on first use from any thread, and read
    // without a lock afterwards.
    static FileCategory classify(QByteArrayView ext);

    // The category of a file by its name, as the scanner decides it on raw
    // bytes: the extension follows the last "." at index 1 or later (a leading
    // dot does not count), must be 1 to 15 bytes long, and is lower-cased A-Z
    // only. Anything else has no extension and yields `other`. Never allocates.
    static FileCategory forFileName(QByteArrayView name);

    // True when a directory with this lower-case extension is a package (a bundle
    // that may count as one file).
    static bool isPackageExtension(QByteArrayView ext);

    static int tableSize();
    static int packageExtensionCount();

private:
    Value m_value;
};

inline constexpr std::array<FileCategory, 10> FileCategory::allCases = {
    video, audio, image, document, archive, diskImage, application, code, developer, other,
};
