# The Debian package: "cpack" in the build folder, or scripts/package.sh.

# What a library's name does not tell of the packages that the program needs.
set(quire_package_depends
    # The modules that the views import, and those that these import in turn.
    qml6-module-qtquick qml6-module-qtquick-templates
    qml6-module-qtqml qml6-module-qtqml-models qml6-module-qtqml-workerscript
    qt6-image-formats-plugins # covers in WebP
    ca-certificates # every service is asked over TLS
    tzdata) # the published page tells New York's time
set(quire_package_recommends
    # The faces that the interface offers, or their nearest free relatives.
    fonts-inter fonts-lato fonts-texgyre fonts-sil-charis fonts-noto-core
    fonts-adf-baskervald fonts-adf-gillius fonts-league-spartan fonts-linuxlibertine
    fonts-droid-fallback fonts-noto-color-emoji
    qt6-wayland # a desktop that has no X server
    xdg-utils) # opens links and folders
list(JOIN quire_package_depends ", " CPACK_DEBIAN_PACKAGE_DEPENDS)
list(JOIN quire_package_recommends ", " CPACK_DEBIAN_PACKAGE_RECOMMENDS)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quire)
set(CPACK_PACKAGE_VENDOR Quire)
set(CPACK_PACKAGE_CONTACT "Quire <engineers@quire.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "library of the books and audiobooks that you read")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Quire is a personal reading library: one reader, one window, and one SQLite
file that the reader owns. It reads the shelves of a Goodreads account and the
audiobooks of the Audible application, and adds titles that are searched for
or typed in.
.
It shows them as a wall of covers to search and sort, by mouse, keyboard and
screen reader, and counts what was read, when, and how long it was. Ratings
and notes stay as the reader wrote them, whatever an import says. It makes
verified backups, and publishes the reading list if it is told to.")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_DEBIAN_PACKAGE_RELEASE ${QUIRE_BUILD})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

include(CPack)
