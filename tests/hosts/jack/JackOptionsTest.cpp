// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/JackOptions.hpp"

#include <gtest/gtest.h>

#include <string>

#include "commandline/CommandFailure.hpp"

namespace quillo {
namespace {

using Words = std::vector<std::string>;

std::string errorOf(const Words& words) {
    try {
        static_cast<void>(readJackOptions(words));
        return "";
    } catch (const UsageError& error) {
        return error.what();
    }
}

TEST(JackOptions, WithoutWordsTheProgramOpensAWindowOnTheDefaultServer) {
    const auto options = readJackOptions({});
    EXPECT_EQ(options.name, "midi-quillo");
    EXPECT_FALSE(options.preset || options.server || options.startServer || options.wait || options.log);
    EXPECT_TRUE(options.window);
    EXPECT_EQ(options.goBack, 0U);
    EXPECT_TRUE(options.connectIn.empty() && options.connectOut.empty());
}

TEST(JackOptions, EveryWordIsTaken) {
    const auto options = readJackOptions(Words{"--preset", "p.json", "--connect-in=a", "--connect-in", "b",
                                               "--connect-out", "c", "--server", "stage", "--start-server",
                                               "--wait", "--name", "left hand", "--no-window", "--log"});
    EXPECT_EQ(options.preset, "p.json");
    EXPECT_EQ(options.connectIn, (Words{"a", "b"}));
    EXPECT_EQ(options.connectOut, (Words{"c"}));
    EXPECT_EQ(options.server, "stage");
    EXPECT_TRUE(options.startServer && options.wait && options.log);
    EXPECT_FALSE(options.window);
    EXPECT_EQ(options.name, "left hand");
    EXPECT_EQ(readJackOptions(Words{"--go-back", "9"}).goBack, 9U);
    EXPECT_EQ(readJackOptions(Words{"--scale", "1.5"}).scale, 1.5);
    EXPECT_EQ(readJackOptions({}).scale, std::nullopt);
    EXPECT_TRUE(readJackOptions(Words{"--history"}).history);
    EXPECT_TRUE(readJackOptions(Words{"--help"}).help);
    EXPECT_TRUE(readJackOptions(Words{"--version"}).version);
}

TEST(JackOptions, AMessageOfThePanicIsAMIDIMessageOrHowOneBegins) {
    const auto message = [](const std::string& text) {
        return readJackOptions(Words{"--panic-message", text}).panicMessage;
    };
    using Bytes = std::vector<std::uint8_t>;
    EXPECT_EQ(message("b0 50 7f"), (Bytes{0xB0, 0x50, 0x7F}));
    EXPECT_EQ(message("B0507F"), (Bytes{0xB0, 0x50, 0x7F}));
    EXPECT_EQ(message("9f 24"), (Bytes{0x9F, 0x24}));
    EXPECT_EQ(message("c3"), Bytes{0xC3});
    EXPECT_EQ(message("fc"), Bytes{0xFC});
    EXPECT_TRUE(readJackOptions({}).panicMessage.empty());
    for (const auto* text : {"", " ", "b", "b0 5", "50", "b0 80", "c0 1 2", "c0 01 02", "b0 50 7f 01",
                             "f0 01", "f7", "f4", "-1", "+b0", "0xb0", "b0 zz", "b0,50"}) {
        EXPECT_EQ(errorOf({"--panic-message", text}),
                  "option --panic-message: \"" + std::string(text) +
                      "\" is not how a MIDI message begins, in hexadecimal: such as \"b0 50 7f\"")
            << text;
    }
}

TEST(JackOptions, ANameFitsIntoAPortsName) {
    EXPECT_EQ(readJackOptions(Words{"--name", std::string(60, 'n')}).name.size(), 60U);
    EXPECT_EQ(errorOf({"--name", std::string(61, 'n')}), "option --name: a name has 1 to 60 bytes");
    EXPECT_EQ(errorOf({"--name="}), "option --name: a name has 1 to 60 bytes");
    EXPECT_EQ(errorOf({"--name", "a:b"}), "option --name: \"a:b\" holds a colon or a control character");
    EXPECT_EQ(errorOf({"--name", "a\n\x1b"}),
              "option --name: \"a\\n\\u001b\" holds a colon or a control character");
}

TEST(JackOptions, WhatIsWrongIsNamed) {
    EXPECT_EQ(errorOf({"p.json"}), "what is \"p.json\"? A preset is given as --preset PRESET.json");
    EXPECT_EQ(errorOf({"\x1b[2J"}), "what is \"\\u001b[2J\"? A preset is given as --preset PRESET.json");
    EXPECT_EQ(errorOf({"--presets", "p.json"}), "unknown option --presets");
    EXPECT_EQ(errorOf({"--preset"}), "option --preset needs a value");
    EXPECT_EQ(errorOf({"--preset", "a", "--preset", "b"}), "option --preset is given twice");
    EXPECT_EQ(errorOf({"--log=yes"}), "option --log takes no value");
    EXPECT_EQ(errorOf({"--server="}), "option --server: the name is empty");
    EXPECT_EQ(errorOf({"--scale", "5"}), "option --scale: \"5\" is not a number from 0.5 to 4");
    EXPECT_EQ(errorOf({"--go-back", "0"}), "option --go-back: \"0\" is not a whole number from 1 to 9");
    EXPECT_EQ(errorOf({"--go-back", "10"}), "option --go-back: \"10\" is not a whole number from 1 to 9");
    EXPECT_EQ(errorOf({"--go-back", "1", "--preset", "p.json"}),
              "--go-back takes the rules of an earlier session, --preset those of a file: give one");
    for (const std::string option : {"--connect-in", "--connect-out"}) {
        EXPECT_EQ(errorOf({option, ""}),
                  "option " + option + ": the pattern is empty; \".*\" matches every port");
        EXPECT_TRUE(
            errorOf({option, "("}).starts_with("option " + option + ": \"(\" is not a regular expression: "));
    }
}

}  // namespace
}  // namespace quillo
