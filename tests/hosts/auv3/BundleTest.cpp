// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>

#include <juce_core/juce_core.h>

#include "audiounit/MIDIQuilloAUAudioUnit.hpp"

/// The property lists that tell macOS of the app, its extension and the audio unit in it.
namespace quillo {
namespace {

std::unique_ptr<juce::XmlElement> readList(const std::string& path) {
    auto list = juce::parseXML(juce::File(path));
    EXPECT_NE(list, nullptr) << path;
    return list;
}

/// The value that follows a key, in this dictionary or in one below it; null when there is no such key.
const juce::XmlElement* find(const juce::XmlElement& element, const juce::String& key) {
    for (const auto* child : element.getChildIterator()) {
        if (child->hasTagName("key") && child->getAllSubText() == key) {
            return child->getNextElement();
        }
        if (const auto* found = find(*child, key)) {
            return found;
        }
    }
    return nullptr;
}

std::string text(const juce::XmlElement& list, const char* key) {
    const auto* found = find(list, key);
    return found != nullptr ? found->getAllSubText().trim().toStdString() : "no " + std::string(key);
}

bool isOn(const juce::XmlElement& list, const char* key) {
    const auto* found = find(list, key);
    return found != nullptr && found->hasTagName("true");
}

std::string fourCharacters(std::uint32_t code) {
    std::string characters;
    for (unsigned shift = 32; shift > 0; shift -= 8) {
        characters += static_cast<char>((code >> (shift - 8)) & 0xFFU);
    }
    return characters;
}

/// The version as the platform counts it: "1.2.3" is 0x00010203.
int versionNumber(const std::string& version) {
    const auto parts = juce::StringArray::fromTokens(juce::String(version), ".", "");
    EXPECT_EQ(parts.size(), 3);
    return (parts[0].getIntValue() << 16) | (parts[1].getIntValue() << 8) | parts[2].getIntValue();
}

TEST(Bundle, TheExtensionDescribesTheComponentThatHostsAskFor) {
    const auto list = readList(QUILLO_BUILT_LISTS "/Extension-Info.plist");
    EXPECT_EQ(text(*list, "type"), fourCharacters(midiQuilloComponent.componentType));
    EXPECT_EQ(text(*list, "subtype"), fourCharacters(midiQuilloComponent.componentSubType));
    EXPECT_EQ(text(*list, "manufacturer"), fourCharacters(midiQuilloComponent.componentManufacturer));
    EXPECT_EQ(text(*list, "name"), "MIDI Quillo: MIDI Quillo");
    EXPECT_EQ(text(*list, "version"),
              std::to_string(versionNumber(text(*list, "CFBundleShortVersionString"))));
    EXPECT_TRUE(isOn(*list, "sandboxSafe"));
}

TEST(Bundle, TheExtensionIsAnAudioUnitWithAViewMadeByOurController) {
    const auto list = readList(QUILLO_BUILT_LISTS "/Extension-Info.plist");
    EXPECT_EQ(text(*list, "NSExtensionPointIdentifier"), "com.apple.AudioUnit-UI");
    EXPECT_EQ(text(*list, "NSExtensionPrincipalClass"), "AudioUnitViewController");
    EXPECT_EQ(text(*list, "CFBundlePackageType"), "XPC!");
}

TEST(Bundle, TheExtensionsIdentifierBeginsWithTheApps) {
    const auto app = readList(QUILLO_BUILT_LISTS "/App-Info.plist");
    const auto extension = readList(QUILLO_BUILT_LISTS "/Extension-Info.plist");
    EXPECT_EQ(text(*extension, "CFBundleIdentifier"), text(*app, "CFBundleIdentifier") + ".extension");
    EXPECT_EQ(text(*extension, "CFBundleShortVersionString"), text(*app, "CFBundleShortVersionString"));
    EXPECT_EQ(text(*app, "CFBundlePackageType"), "APPL");
}

TEST(Bundle, TheSandboxLetsTheUsersChosenFilesInAndOut) {
    const auto list = readList(QUILLO_BUNDLE_SOURCES "/Sandbox.entitlements");
    EXPECT_TRUE(isOn(*list, "com.apple.security.app-sandbox"));
    EXPECT_TRUE(isOn(*list, "com.apple.security.files.user-selected.read-write"));
}

}  // namespace
}  // namespace quillo
