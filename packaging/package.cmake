# SPDX-License-Identifier: MIT
# Settings of the Debian package and of the source archive.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME virelo-app)
set(CPACK_PACKAGE_VENDOR VIRELO)
set(CPACK_PACKAGE_CONTACT "VIRELO App developers <app@${VIRELO_MAKER_DOMAIN}>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "configurator and remote control for VIRELO Air loudspeakers")
set(CPACK_PACKAGE_DESCRIPTION
"VIRELOv2 App finds every VIRELO Air loudspeaker and subwoofer in the WLAN,
shows them in one tree, and sets what they play and how: volume, input, bass,
position and room, crossover and equaliser. It joins loudspeakers into a
group, takes a new one into the home WLAN, and updates the firmware.
.
The package also holds virelo-sim, which plays any number of virtual
loudspeakers that speak the real protocols.")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/strip_notes.cmake")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_VERBATIM_VARIABLES ON)

# One package of both components.
set(CPACK_COMPONENTS_ALL application debian)
set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
set(CPACK_DEB_COMPONENT_INSTALL ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://${VIRELO_MAKER_DOMAIN}")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# The libraries are found by what the programs are linked with. Beyond them: the daemon that knows the speakers, without
# which the window stays empty; the platform plugin for Wayland, which Qt loads by name; the folders of the icon theme.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "avahi-daemon, hicolor-icon-theme, qtwayland5")

# The archive holds what a clone holds: no history, nothing built, nothing of an editor or a search.
set(CPACK_SOURCE_GENERATOR TXZ)
set(CPACK_SOURCE_PACKAGE_FILE_NAME "virelo-app-${PROJECT_VERSION}")
set(CPACK_SOURCE_IGNORE_FILES "/\\.git(/|$)" "${PROJECT_SOURCE_DIR}/build/" "/\\.cache/" "\\.user$" "/__pycache__/")

include(CPack)
