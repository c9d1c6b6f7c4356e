// SPDX-License-Identifier: GPL-3.0-or-later
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "hosts/clap/CLAPExtensions.hpp"

#include "hosts/clap/CLAPPlugin.hpp"

namespace quillo {

namespace {

constexpr std::size_t longestPiece = std::size_t{1} << 16U;

/// How many bytes a stream says that it has handled, of at most `offered`; nothing for an error.
std::optional<std::size_t> countOf(std::int64_t answer, std::size_t offered) {
    if (answer < 0 || static_cast<std::uint64_t>(answer) > offered) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(answer);
}

/// All bytes up to the stream's end, in whatever pieces it hands them over, or a piece more than can be
/// restored. Nothing when it fails or is null.
std::optional<std::vector<std::uint8_t>> readAll(const clap_istream_t* stream) {
    if (stream == nullptr || stream->read == nullptr) {
        return std::nullopt;
    }
    std::vector<std::uint8_t> bytes;
    std::vector<std::uint8_t> piece(longestPiece);
    while (bytes.size() <= Session::longestDocument) {
        const auto count = countOf(stream->read(stream, piece.data(), piece.size()), piece.size());
        if (!count) {
            return std::nullopt;
        }
        if (*count == 0) {
            break;
        }
        const auto read = std::span(piece).first(*count);
        bytes.insert(bytes.end(), read.begin(), read.end());
    }
    return bytes;
}

/// Writes all bytes, in whatever pieces the stream takes them. False when it fails, takes no more, or is
/// null.
bool writeAll(const clap_ostream_t* stream, std::span<const std::uint8_t> bytes) {
    if (stream == nullptr || stream->write == nullptr) {
        return false;
    }
    while (!bytes.empty()) {
        const auto count = countOf(stream->write(stream, bytes.data(), bytes.size()), bytes.size());
        if (!count || *count == 0) {
            return false;
        }
        bytes = bytes.subspan(*count);
    }
    return true;
}

bool save(const clap_plugin_t* plugin, const clap_ostream_t* stream) noexcept {
    return CLAPPlugin::with(plugin, false, [&](CLAPInstance& instance) {
        const auto document = instance.session.trySave();
        return document && writeAll(stream, *document);
    });
}

bool load(const clap_plugin_t* plugin, const clap_istream_t* stream) noexcept {
    return CLAPPlugin::with(plugin, false, [&](CLAPInstance& instance) {
        const auto document = readAll(stream);
        if (!document) {
            instance.session.tellUser("The saved rules cannot be restored: the host cannot read them.");
            return false;
        }
        const bool restored = !instance.session.restore(*document);
        instance.wake();
        return restored;
    });
}

constexpr clap_plugin_state_t table{.save = &save, .load = &load};

}  // namespace

const clap_plugin_state_t& clapState() {
    return table;
}

}  // namespace quillo
