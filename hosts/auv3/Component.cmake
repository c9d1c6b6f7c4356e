# SPDX-License-Identifier: GPL-3.0-or-later
# How the system knows the audio unit, and the property lists that say so. A build of somebody else's
# needs another maker's code and another bundle identifier.
set(QUILLO_AU_TYPE "aumi" CACHE STRING "The audio unit's type, four characters: aumi is a MIDI processor")
set(QUILLO_AU_SUBTYPE "Qull" CACHE STRING "The audio unit's subtype, four characters")
set(QUILLO_AU_MANUFACTURER "Qulo" CACHE STRING
    "The audio unit's maker, four characters, not all in lower case")
set(QUILLO_AU_MAKER "MIDI Quillo" CACHE STRING "The maker's name as hosts show it")
set(QUILLO_BUNDLE_IDENTIFIER "example.midi-quillo.app" CACHE STRING
    "The bundle identifier of the app; the extension's is the same with .extension after it")
set(QUILLO_EXTENSION_BUNDLE_IDENTIFIER "${QUILLO_BUNDLE_IDENTIFIER}.extension")

# The audio unit's version as one number: two bytes, one byte, one byte.
math(EXPR QUILLO_AU_VERSION
    "(${PROJECT_VERSION_MAJOR} << 16) | (${PROJECT_VERSION_MINOR} << 8) | ${PROJECT_VERSION_PATCH}")

foreach(list IN ITEMS App-Info.plist Extension-Info.plist)
    configure_file(bundle/${list}.in "${CMAKE_CURRENT_BINARY_DIR}/${list}" @ONLY)
endforeach()
