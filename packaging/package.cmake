# The Debian package; scripts/package makes it of what has been built.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME plim)
set(CPACK_PACKAGE_VENDOR "The Plim developers")
set(CPACK_PACKAGE_CONTACT "The Plim developers <plim@example.org>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/finish_package.cmake)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# What no library links: the modules that the program and the web engine's own module import, and
# the Polish of Qt's dialogs.
string(JOIN ", " CPACK_DEBIAN_PACKAGE_DEPENDS
    qml6-module-qtqml
    qml6-module-qtqml-models
    qml6-module-qtqml-workerscript
    qml6-module-qtquick
    qml6-module-qtquick-templates
    qml6-module-qtwebchannel
    qml6-module-qtwebengine
    qt6-translations-l10n)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS qt6-wayland) # for sessions that have no X server beside
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "sticky notes on your desktop, to keep")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Short notes with headings, lists, checklists, links and pictures, in one of
seven colours. Any note can be pulled out into a small card on the desktop,
typed in like the main window, pinned above others, collapsed to its title
and arranged in columns.
.
Plim needs no account and no network: the notes are one file of yours, with
backups. Its language is Polish or English.")
include(CPack)
