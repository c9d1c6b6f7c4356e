// SPDX-License-Identifier: GPL-3.0-or-later
#include "commandline/OutputFile.hpp"

#include <filesystem>
#include <ostream>
#include <system_error>
#include <utility>

#include "commandline/CommandFailure.hpp"
#include "commandline/InputFiles.hpp"
#include "platform/AtomicFile.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

OutputFile::OutputFile(std::string path, bool force, std::ostream* standardOutput)
    : path_(std::move(path)), force_(force), stream_(path_ == standardStream ? standardOutput : nullptr) {
    std::error_code error;
    if (stream_ == nullptr && !force_ && std::filesystem::exists(path_, error)) {
        throw CommandFailure(exitCannotCreate, escaped(path_) + ": is there already; --force replaces it");
    }
}

void OutputFile::write(std::span<const std::uint8_t> bytes) const {
    if (stream_ != nullptr) {
        stream_->write(reinterpret_cast<const char*>(bytes.data()),
                       static_cast<std::streamsize>(bytes.size()));
        return;
    }
    try {
        writeWholeFile(path_, bytes, force_ ? Existing::replace : Existing::keep);
    } catch (const FileError& error) {
        throw CommandFailure(exitCannotCreate, error.what());
    }
}

}  // namespace quillo
