#include "DevArtifactRule.h"

#include <QCoreApplication>

#include <fcntl.h>
#include <unistd.h>

namespace {

// Existence only: a project file that is a folder counts as well.
bool exists(int dirFd, const QByteArray &path) { return ::faccessat(dirFd, path.constData(), F_OK, 0) == 0; }

QString label(const char *text) { return QCoreApplication::translate("DevArtifactRule", text); }

} // namespace

QString DevArtifactRule::match(QByteArrayView name, int parentFd)
{
    // Cheap early out: every name of the table is 4 to 13 bytes long.
    if (name.size() < 4 || name.size() > 13)
        return {};

    auto beside = [parentFd](const char *file) { return exists(parentFd, QByteArray(file)); };
    auto inside = [parentFd, name](const char *file) { return exists(parentFd, name.toByteArray() + '/' + file); };

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
