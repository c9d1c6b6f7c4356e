// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <lilv/lilv.h>

#include <memory>
#include <string>

namespace quillo::test {

inline constexpr const char* lv2Plain = "urn:midi-quillo:lv2";
inline constexpr const char* lv2Stereo = "urn:midi-quillo:lv2-stereo";

/// Lilv's world with the bundle that was built, and nothing else.
class LV2World {
public:
    LV2World();

    [[nodiscard]] LilvWorld* get() const { return world_.get(); }

    /// Throws when the bundle has no plug-in of that name.
    [[nodiscard]] const LilvPlugin* plugin(const char* uri) const;

    struct FreeNode {
        void operator()(LilvNode* node) const { ::lilv_node_free(node); }
    };
    using Node = std::unique_ptr<LilvNode, FreeNode>;
    [[nodiscard]] Node uri(const char* text) const { return Node(::lilv_new_uri(get(), text)); }

private:
    struct Free {
        void operator()(LilvWorld* world) const { ::lilv_world_free(world); }
    };
    std::unique_ptr<LilvWorld, Free> world_;
};

}  // namespace quillo::test
