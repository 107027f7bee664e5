# The Debian package: cpack -G DEB in a build folder where everything is built.

set(ORVALO_MAINTAINER "Tessaly <packages@orvalo.example>" CACHE STRING
    "The maintainer of the Debian package: a name and an address in angle brackets")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME orvalo)
set(CPACK_PACKAGE_VENDOR Tessaly)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_CONTACT "${ORVALO_MAINTAINER}")
set(CPACK_PACKAGE_HOMEPAGE_URL "${ORVALO_SITE}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${ORVALO_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
# CPack takes the description's first line from the summary. A dot stands for a blank line.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "player to hear the Orvalo dynamics effect with music")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Orvalo plays music through one audio effect, the Orvalo dynamics effect,
shows the effect's own UI, and reports the MIDI that the effect sends.
Eighty demonstration loops are included.
.
The effect is a stereo compressor for every LV2 host: incoming notes duck the
signal, and gain reduction plays notes.
.
This package contains the application (orvalo), the same player for the
terminal (orvalo-play), the effect and the music, a window that shows easing
curves (orvalo-easing), and a tool for the settings (orvalo-defaults).")

# dpkg-shlibdeps finds the libraries; those that are loaded late are linked with lib/orvalo.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# bubblewrap confines effects and web pages, xdg-dbus-proxy web pages; GTK loads icons in SVG by a
# plug-in.
string(JOIN ", " CPACK_DEBIAN_PACKAGE_DEPENDS
    adwaita-icon-theme bubblewrap hicolor-icon-theme librsvg2-common xdg-dbus-proxy)
string(JOIN ", " CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "fonts-dejavu-core | fonts-cantarell" libasound2-plugins xdg-desktop-portal xdg-utils)
string(JOIN ", " CPACK_DEBIAN_PACKAGE_SUGGESTS
    "pipewire-pulse | pulseaudio" jackd2 jalv)

set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_SOURCE_DIR}/debian/Files.cmake")

# cpack packages what is built and does not build.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON PARENT_SCOPE)
include(CPack)
