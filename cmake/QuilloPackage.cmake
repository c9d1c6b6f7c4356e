# SPDX-License-Identifier: GPL-3.0-or-later
# What is installed besides what the folders install themselves, and the packages that CPack makes of it all: a
# Debian package, and an archive that runs from wherever it is unpacked.

install(TARGETS midi-quillo RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT programs)
install(DIRECTORY presets/ DESTINATION "${CMAKE_INSTALL_DATADIR}/midi-quillo/presets" COMPONENT documentation
    FILES_MATCHING PATTERN "*.json" PATTERN "*.mid" PATTERN "*.test" PATTERN "library.txt")
install(FILES "${PROJECT_BINARY_DIR}/share/midi-quillo/preset.schema.json"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/midi-quillo" COMPONENT documentation)
install(FILES LICENSE DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/midi-quillo" RENAME copyright
    COMPONENT documentation)
if(TARGET quillo-guide)
    set(guide "${PROJECT_BINARY_DIR}/guide")
    install(DIRECTORY "${guide}/" DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/midi-quillo/guide"
        COMPONENT documentation
        FILES_MATCHING PATTERN "*.html" PATTERN "*.svg" PATTERN "images" EXCLUDE)
    install(FILES ${quillo_guide_pictures} DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/midi-quillo/guide/images"
        COMPONENT documentation OPTIONAL)
    install(FILES "${guide}/midi-quillo-guide.7" DESTINATION "${CMAKE_INSTALL_MANDIR}/man7"
        COMPONENT documentation OPTIONAL)
endif()

# Everything that is installed, as far as the machine has what it needs.
add_custom_target(quillo-product)
foreach(part IN ITEMS midi-quillo midi-quillo-jack midi-quillo-lv2 midi-quillo-lv2-ui midi-quillo-clap
        quillo-vst3-plugin quillo-schema quillo-guide)
    if(TARGET ${part})
        add_dependencies(quillo-product ${part})
    endif()
endforeach()

set(CPACK_PACKAGE_NAME midi-quillo)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_VENDOR "${QUILLO_AUTHOR}")
set(CPACK_PACKAGE_CONTACT "${QUILLO_AUTHOR} <${QUILLO_CONTACT}>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "MIDI processor that works by rules")
set(CPACK_PACKAGE_DESCRIPTION
"MIDI Quillo rewrites a stream of MIDI events by an ordered list of rules. A rule waits for a note, a
controller, a program change, a MIDI or host transport command, or for being loaded, and sends a message of
its own, at once or after a delay.

This package holds the LV2, CLAP and VST3 plug-ins, the stand-alone program for JACK and PipeWire, the
command-line program for MIDI files, example presets and the guide.")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_GENERATOR DEB TGZ)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/packages")
set(CPACK_SET_DESTDIR OFF)
set(CPACK_MONOLITHIC_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "fonts-dejavu-core")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-inter, jackd2 | pipewire-jack")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "qjackctl, xdg-utils")
include(CPack)
