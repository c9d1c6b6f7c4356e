// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "platform/Data.hpp"

/// The platform's panels for files, which alone give a program in a sandbox the user's files. Each is a sheet
/// of the window that `view`, a view of the platform, is in, or stands by itself where there is no window. It
/// runs later, and calls `chosen` on the main thread unless the user chooses nothing; `chosen` must not
/// throw. [main]
namespace quillo {

/// What is to be done with a preset that the user wants to open: its file's name, and how to read it, which
/// throws a `FileError`.
using PresetToRead = std::function<void(const std::string& name, const std::function<Data()>& read)>;

/// What is to be done with the file that the user has chosen to save to: how to write it, whole or not at
/// all, which throws a `FileError`.
using PresetToWrite =
    std::function<void(const std::function<void(std::span<const std::uint8_t> bytes)>& write)>;

void choosePresetToRead(void* view, PresetToRead chosen);
void choosePresetToWrite(void* view, const std::string& suggestedName, PresetToWrite chosen);

}  // namespace quillo
