// SPDX-License-Identifier: GPL-3.0-or-later
// What a project holds of an instance: a stream that a CLAP host reads and writes in pieces, and a chunk of
// VST3.
//
// The longest piece (1 byte; 0: the stream fails at its end), and the document.
#include <array>
#include <string_view>

#include "FuzzCLAPHost.hpp"
#include "FuzzInput.hpp"
#include "FuzzRules.hpp"
#include "hosts/clap/CLAPExtensions.hpp"
#include "hosts/clap/CLAPPlugin.hpp"
#include "hosts/vst3/StateChunk.hpp"
#include "persistence/PluginData.hpp"

using namespace quillo;
using fuzz::Bytes;
using fuzz::require;

namespace {

/// A host's stream, both ways.
struct Stream {
    std::size_t longestPiece;
    Bytes bytes;
    std::size_t position = 0;
    clap_istream_t in{this, [](const clap_istream_t* stream, void* buffer, std::uint64_t size) {
                          return static_cast<Stream*>(stream->ctx)->read(buffer, size);
                      }};
    clap_ostream_t out{this, [](const clap_ostream_t* stream, const void* buffer, std::uint64_t size) {
                           return static_cast<Stream*>(stream->ctx)->write(buffer, size);
                       }};

    [[nodiscard]] bool failsAtItsEnd() const { return longestPiece == 0; }

    std::int64_t read(void* buffer, std::uint64_t size) {
        const auto piece = failsAtItsEnd() ? bytes.size() : longestPiece;
        const auto count = std::min({static_cast<std::size_t>(size), piece, bytes.size() - position});
        if (count == 0 && failsAtItsEnd()) {
            return -1;
        }
        std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(position), count,
                    static_cast<std::uint8_t*>(buffer));
        position += count;
        return static_cast<std::int64_t>(count);
    }

    std::int64_t write(const void* buffer, std::uint64_t size) {
        const auto count = std::min(static_cast<std::size_t>(size), longestPiece);
        const auto* begin = static_cast<const std::uint8_t*>(buffer);
        bytes.insert(bytes.end(), begin, begin + count);
        return static_cast<std::int64_t>(count);
    }
};

Bytes saved(const clap_plugin_t* plugin, std::size_t longestPiece) {
    Stream stream{longestPiece, {}};
    require(clapState().save(plugin, &stream.out), "the state is saved");
    return stream.bytes;
}

void loadIntoCLAP(fuzz::FuzzInput input) {
    const std::size_t longestPiece = input.number<std::uint8_t>();
    const auto document = input.rest();
    const auto* plugin = CLAPPlugin::create(&fuzz::clapHost);
    require(plugin->init(plugin), "an instance is made");
    CLAPPlugin::instanceOf(plugin)->session.processor().setRules(fuzz::fuzzRules());
    Stream stream{longestPiece, {document.begin(), document.end()}};
    const auto before = saved(plugin, 256);
    if (clapState().load(plugin, &stream.in)) {
        require(PluginData::read(saved(plugin, longestPiece)) == PluginData::read(document),
                "what was loaded is saved as the same");
    } else {
        require(saved(plugin, 256) == before, "what is refused changes nothing");
    }
    plugin->destroy(plugin);
}

/// The document begins the chunk; the bypass, if there is one, is all behind it.
void takeApartForVST3(const Bytes& bytes) {
    const auto chunk = StateChunk::of(bytes);
    require(chunk.document.data() == bytes.data() && chunk.document.size() <= bytes.size(),
            "the document begins the chunk");
    require(chunk.bypass.empty() || (chunk.bypass.data() == chunk.document.data() + chunk.document.size() &&
                                     chunk.document.size() + chunk.bypass.size() == bytes.size()),
            "the bypass is all behind it");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    loadIntoCLAP({data, size});
    takeApartForVST3({data, data + size});
    return 0;
}
