#include "DevArtifactRule.h"

#include <QCoreApplication>

#include <fcntl.h>
#include <unistd.h>

namespace {

// Existence only: a project file that is a folder counts as well.
bool exists(int dirFd, const QByteArray &path) { return ::faccessat(dirFd, path.constData(), F_OK, 0) == 0; }

QString label(const char *text) { return QCoreApplication::translate("DevArtifactRule", text); }

struct OnDisk {
    int parentFd;
    QByteArrayView name;
};

bool existsOnDisk(const void *context, const char *file, bool inside)
{
    const auto &disk = *static_cast<const OnDisk *>(context);
    return exists(disk.parentFd, inside ? disk.name.toByteArray() + '/' + file : QByteArray(file));
}

// Every file the table below looks for.
constexpr const char *projectFiles[] = {"Cargo.toml",       "Package.swift", "Podfile",   "build.gradle",
                                        "build.gradle.kts", "pom.xml",       "pyvenv.cfg"};

} // namespace

bool DevArtifactRule::isProjectFile(QByteArrayView name)
{
    for (const char *file : projectFiles)
        if (name == file)
            return true;
    return false;
}

QString DevArtifactRule::match(QByteArrayView name, int parentFd)
{
    const OnDisk disk{parentFd, name};
    return match(name, existsOnDisk, &disk);
}

QString DevArtifactRule::match(QByteArrayView name, Lookup exists, const void *context)
{
    // Cheap early out: every name of the table is 4 to 13 bytes long.
    if (name.size() < 4 || name.size() > 13)
        return {};

    auto beside = [exists, context](const char *file) { return exists(context, file, false); };
    auto inside = [exists, context](const char *file) { return exists(context, file, true); };

    if (name == "node_modules")
        return label(QT_TRANSLATE_NOOP("DevArtifactRule", "Node.js dependencies"));
    if (name == "DerivedData")
        return label(QT_TRANSLATE_NOOP("DevArtifactRule", "Xcode DerivedData"));
    if (name == "Pods")
        return beside("Podfile") ? label(QT_TRANSLATE_NOOP("DevArtifactRule", "CocoaPods")) : QString();
    if (name == ".build")
        return beside("Package.swift") ? label(QT_TRANSLATE_NOOP("DevArtifactRule", "Swift build")) : QString();
    if (name == "target") {
        if (beside("Cargo.toml"))
            return label(QT_TRANSLATE_NOOP("DevArtifactRule", "Rust build"));
        if (beside("pom.xml"))
            return label(QT_TRANSLATE_NOOP("DevArtifactRule", "Maven build"));
        return {};
    }
    if (name == "build")
        return beside("build.gradle") || beside("build.gradle.kts")
                   ? label(QT_TRANSLATE_NOOP("DevArtifactRule", "Gradle build"))
                   : QString();
    if (name == ".gradle")
        return label(QT_TRANSLATE_NOOP("DevArtifactRule", "Gradle cache"));
    if (name == ".cxx")
        return label(QT_TRANSLATE_NOOP("DevArtifactRule", "Android native build"));
    if (name == ".venv" || name == "venv")
        return inside("pyvenv.cfg") ? label(QT_TRANSLATE_NOOP("DevArtifactRule", "Python virtualenv")) : QString();
    if (name == ".next")
        return label(QT_TRANSLATE_NOOP("DevArtifactRule", "Next.js build"));
    if (name == ".nuxt")
        return label(QT_TRANSLATE_NOOP("DevArtifactRule", "Nuxt build"));
    if (name == ".turbo")
        return label(QT_TRANSLATE_NOOP("DevArtifactRule", "Turborepo cache"));
    if (name == ".parcel-cache")
        return label(QT_TRANSLATE_NOOP("DevArtifactRule", "Parcel cache"));
    if (name == ".dart_tool")
        return label(QT_TRANSLATE_NOOP("DevArtifactRule", "Dart tool cache"));
    return {};
}
