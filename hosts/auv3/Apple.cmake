# SPDX-License-Identifier: GPL-3.0-or-later
# The app extension with the audio unit, and the app that carries it into the system. Who signs them, and how,
# is for the builder to say in Xcode's settings.
if(NOT XCODE)
    message(STATUS
        "The audio unit is left out: app extensions are built by the Xcode generator, cmake --preset macos")
    return()
endif()

add_executable(MIDIQuilloExtension MACOSX_BUNDLE
    AudioUnitViewController.mm
    MIDIQuilloAUAudioUnit.mm
    MainThread.mm
    PresetPanels.mm)
target_link_libraries(MIDIQuilloExtension PRIVATE
    quillo-auv3-editor
    "-framework AppKit"
    "-framework AudioToolbox"
    "-framework AVFAudio"
    "-framework CoreAudioKit"
    "-framework Foundation"
    "-framework UniformTypeIdentifiers")
set_target_properties(MIDIQuilloExtension PROPERTIES
    BUNDLE_EXTENSION appex
    MACOSX_BUNDLE_INFO_PLIST "${CMAKE_CURRENT_BINARY_DIR}/Extension-Info.plist"
    XCODE_PRODUCT_TYPE "com.apple.product-type.app-extension"
    XCODE_ATTRIBUTE_WRAPPER_EXTENSION appex
    XCODE_ATTRIBUTE_PRODUCT_BUNDLE_IDENTIFIER "${QUILLO_EXTENSION_BUNDLE_IDENTIFIER}")

add_executable(MIDIQuilloApp MACOSX_BUNDLE app/main.mm)
target_link_libraries(MIDIQuilloApp PRIVATE quillo-options "-framework AppKit")
set_target_properties(MIDIQuilloApp PROPERTIES
    OUTPUT_NAME "MIDI Quillo"
    MACOSX_BUNDLE_INFO_PLIST "${CMAKE_CURRENT_BINARY_DIR}/App-Info.plist"
    XCODE_ATTRIBUTE_PRODUCT_BUNDLE_IDENTIFIER "${QUILLO_BUNDLE_IDENTIFIER}"
    XCODE_EMBED_APP_EXTENSIONS MIDIQuilloExtension)

foreach(target IN ITEMS MIDIQuilloExtension MIDIQuilloApp)
    target_compile_options(${target} PRIVATE -fobjc-arc)
    set_target_properties(${target} PROPERTIES
        XCODE_ATTRIBUTE_CODE_SIGN_ENTITLEMENTS "${CMAKE_CURRENT_SOURCE_DIR}/bundle/Sandbox.entitlements"
        XCODE_ATTRIBUTE_ENABLE_HARDENED_RUNTIME YES)
endforeach()
