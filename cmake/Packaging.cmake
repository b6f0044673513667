# The Debian package: `cpack -G DEB` in a build folder (scripts/package-deb makes
# a release build and runs it). The libraries come from dpkg-shlibdeps; the QML
# modules the window loads at run time are named here, as nothing links them.
set(CPACK_PACKAGE_NAME "sorvel-cleaner")
set(CPACK_PACKAGE_VENDOR "Sorvel")
set(CPACK_PACKAGE_CONTACT "Sorvel <hello@sorvel.org>")
set(CPACK_PACKAGE_HOMEPAGE_URL "${SORVEL_HOMEPAGE}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "see where disk space goes and clear it with care")
string(CONCAT CPACK_PACKAGE_DESCRIPTION
    "Sorvel Cleaner walks a folder, a volume or the whole disk once and shows\n"
    "where the space lives as browsable tiles. It picks out caches and build\n"
    "output that can be rebuilt, ranks the heaviest files, finds big files nobody\n"
    "opened for months and proves byte for byte which files are identical. A fixed\n"
    "guard refuses system and personal folders, and every removal is reviewed first.\n"
    "\n"
    "The package also holds sorvel, a command-line tool over the same engine.")
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION "utils")
set(CPACK_DEBIAN_PACKAGE_PRIORITY "optional")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS
    "qml6-module-qtqml, qml6-module-qtqml-workerscript, qml6-module-qtquick, qml6-module-qtquick-controls, \
qml6-module-qtquick-layouts, qml6-module-qtquick-templates, qml6-module-qtquick-window, qml6-module-qtquick-dialogs, \
qml6-module-qtquick-shapes, qml6-module-qt-labs-platform, qml6-module-qt-labs-folderlistmodel")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland")
set(CPACK_DEBIAN_COMPRESSION_TYPE "xz")
include(CPack)
