# What `cmake --install` puts under the prefix, where the desktop looks for it, and the Debian
# package CPack makes of the same files (tools/package).
#
#   bin/parallaxotron
#   share/applications/com.hollerbank.Parallaxotron.desktop      the menu entry, "open with"
#   share/metainfo/com.hollerbank.Parallaxotron.metainfo.xml     the software centre's entry
#   share/icons/hicolor/<size>x<size>/apps/com.hollerbank.Parallaxotron.png, scalable/apps/*.svg
#   share/mime/packages/parallaxotron-show.xml                   show files: *.plx and the magic
#   share/man/man1/parallaxotron.1                               from --help, at build time
include(GNUInstallDirs)

set(PX_APP_ID com.hollerbank.Parallaxotron)
set(PX_DESKTOP_DIR ${CMAKE_SOURCE_DIR}/resources/desktop)
set(PX_ICON_DIR ${CMAKE_SOURCE_DIR}/resources/icons)
set(PX_ICON_SIZES 16 32 48 64 128 256 512)

install(TARGETS parallaxotron RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

install(FILES ${PX_DESKTOP_DIR}/${PX_APP_ID}.desktop
        DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
configure_file(${PX_DESKTOP_DIR}/${PX_APP_ID}.metainfo.xml.in
               ${CMAKE_BINARY_DIR}/${PX_APP_ID}.metainfo.xml @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/${PX_APP_ID}.metainfo.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${PX_DESKTOP_DIR}/parallaxotron-show.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages)

foreach(size ${PX_ICON_SIZES})
  install(FILES ${PX_ICON_DIR}/${size}.png
          DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps
          RENAME ${PX_APP_ID}.png)
endforeach()
install(FILES ${PX_ICON_DIR}/${PX_APP_ID}.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)

# The manual page is the program's own --help, laid out by cmake/man_page.cmake: written by the
# program just built, so it cannot drift from what the program prints.
set(PX_MAN_PAGE ${CMAKE_BINARY_DIR}/parallaxotron.1)
add_custom_command(OUTPUT ${PX_MAN_PAGE}
                   COMMAND ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:parallaxotron>
                           -DOUTPUT=${PX_MAN_PAGE} -P ${CMAKE_SOURCE_DIR}/cmake/man_page.cmake
                   DEPENDS parallaxotron ${CMAKE_SOURCE_DIR}/cmake/man_page.cmake
                   COMMENT "Writing the manual page from parallaxotron --help")
add_custom_target(px_man_page ALL DEPENDS ${PX_MAN_PAGE})
install(FILES ${PX_MAN_PAGE} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

# The Debian package. dpkg-shlibdeps names the Qt, FFmpeg and C++ libraries the program links;
# what it loads at run time without linking is named by hand: Qt's display plugins (xcb,
# wayland), its picture plugins (TIFF, WebP) and the fonts the program draws with. The desktop,
# icon and MIME caches are refreshed by those packages' own triggers, so the package needs no
# scripts of its own.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME parallaxotron)
set(CPACK_PACKAGE_VENDOR Hollerbank)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "turn still pictures into video by flying a camera over them")
string(CONCAT CPACK_PACKAGE_DESCRIPTION
       "Parallaxotron turns still pictures into moving video by flying a virtual camera over "
       "them. A show is up to 64 pictures end to end on one time line, each with camera key "
       "frames; the editor shows the stage, the timeline and the finished frame, and shows "
       "render to movie files or still images, from the editor or the command line.")
set(CPACK_PACKAGE_CONTACT "Parallaxotron developers <parallaxotron@hollerbank.invalid>")
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION video)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins, qt6-image-formats-plugins, fonts-dejavu-core")
include(CPack)
