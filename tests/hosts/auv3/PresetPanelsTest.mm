// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/auv3/PresetPanels.hpp"

#include <gtest/gtest.h>

#include <string>

#import "hosts/auv3/doubles/PlatformDoubles.h"

#include "hosts/auv3/doubles/ObjectiveCRuntime.hpp"
#include "platform/AtomicFile.hpp"
#include "support/TemporaryFolder.hpp"

/// The platform's panels for files, run against doubles.
namespace {

using quillo::Data;
using quillo::test::openPanel;

class PresetPanelsTest : public testing::Test {
protected:
    ~PresetPanelsTest() override {
        view = nil;
        objc_autoreleasePoolPop(pool);
        EXPECT_EQ(quillo::test::livingObjects(), before);
    }

    void* bridged() { return (__bridge void*)view; }

    NSURL* url(const char* file) { return [NSURL fileURLWithPath:@((folder / file).c_str())]; }

    std::size_t before = quillo::test::livingObjects();
    std::size_t pool = objc_autoreleasePoolPush();
    NSView* view = [[NSView alloc] init];
    quillo::TemporaryFolder folder;
    std::string name;
    Data bytes;
    std::string error;
};

TEST_F(PresetPanelsTest, TheChosenFileIsReadUnderItsName) {
    const Data preset{'{', '}'};
    quillo::writeWholeFile(folder / "mine.json", preset, quillo::Existing::keep);
    quillo::choosePresetToRead(bridged(), [this](const std::string& chosen, const auto& read) {
        name = chosen;
        bytes = read();
    });
    EXPECT_EQ(openPanel().allowedContentTypes.count, 1U);
    [openPanel() answer:url("mine.json")];
    EXPECT_EQ(name, "mine.json");
    EXPECT_EQ(bytes, preset);
}

TEST_F(PresetPanelsTest, AFileThatCannotBeReadIsAnErrorInThePlatformsWords) {
    quillo::choosePresetToRead(bridged(), [this](const std::string&, const auto& read) {
        try {
            bytes = read();
        } catch (const quillo::FileError& failure) {
            error = failure.what();
        }
    });
    [openPanel() answer:url("none.json")];
    EXPECT_NE(error.find("none.json"), std::string::npos);
}

TEST_F(PresetPanelsTest, TheChosenFileIsWritten) {
    const Data preset{'[', ']'};
    quillo::choosePresetToWrite(bridged(), "suggested.json", [&](const auto& write) { write(preset); });
    EXPECT_STREQ(openPanel().nameFieldStringValue.UTF8String, "suggested.json");
    [openPanel() answer:url("mine.json")];
    EXPECT_EQ(quillo::readWholeFile(folder / "mine.json"), preset);
}

TEST_F(PresetPanelsTest, AFileThatCannotBeWrittenIsAnErrorInThePlatformsWords) {
    quillo::choosePresetToWrite(bridged(), "suggested.json", [this](const auto& write) {
        try {
            write({});
        } catch (const quillo::FileError& failure) {
            error = failure.what();
        }
    });
    [openPanel() answer:url("none/mine.json")];
    EXPECT_NE(error.find("mine.json"), std::string::npos);
}

TEST_F(PresetPanelsTest, BothAreSheetsOfTheWindowThatTheViewIsIn) {
    NSWindow* window = [[NSWindow alloc] init];
    [view moveToWindow:window];
    quillo::choosePresetToRead(bridged(), [](const std::string&, const auto&) {});
    EXPECT_EQ(openPanel().sheetParent, window);
    [openPanel() answer:nil];
    quillo::choosePresetToWrite(bridged(), "suggested.json", [](const auto&) {});
    EXPECT_EQ(openPanel().sheetParent, window);
    [openPanel() answer:nil];
}

TEST_F(PresetPanelsTest, OfAViewInNoWindowBothStandByThemselves) {
    quillo::choosePresetToRead(bridged(), [](const std::string&, const auto&) {});
    EXPECT_EQ(openPanel().sheetParent, nil);
    [openPanel() answer:nil];
    quillo::choosePresetToWrite(bridged(), "suggested.json", [](const auto&) {});
    EXPECT_EQ(openPanel().sheetParent, nil);
    [openPanel() answer:nil];
}

TEST_F(PresetPanelsTest, WhenNothingIsChosenNothingHappens) {
    quillo::choosePresetToRead(bridged(), [this](const std::string&, const auto&) { name = "chosen"; });
    [openPanel() answer:nil];
    quillo::choosePresetToWrite(bridged(), "suggested.json", [this](const auto&) { name = "chosen"; });
    [openPanel() answer:nil];
    EXPECT_EQ(name, "");
}

}  // namespace
