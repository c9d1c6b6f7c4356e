// SPDX-License-Identifier: GPL-3.0-or-later
#include "commandline/OutputFile.hpp"

#include <filesystem>
#include <system_error>
#include <utility>

#include "commandline/CommandFailure.hpp"
#include "commandline/ExitStatus.hpp"
#include "platform/AtomicFile.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

OutputFile::OutputFile(std::string path, bool force) : path_(std::move(path)), force_(force) {
    std::error_code error;
    if (!force_ && std::filesystem::exists(path_, error)) {
        throw CommandFailure(exitCannotCreate, escaped(path_) + ": is there already; --force replaces it");
    }
}

void OutputFile::write(std::span<const std::uint8_t> bytes) const {
    try {
        writeWholeFile(path_, bytes, force_ ? Existing::replace : Existing::keep);
    } catch (const FileError& error) {
        throw CommandFailure(exitCannotCreate, error.what());
    }
}

}  // namespace quillo
