// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hosts/clap/CLAPHeaders.hpp"

namespace quillo::fuzz {

/// A host that offers nothing but itself.
inline const clap_host_t clapHost{CLAP_VERSION,
                                  nullptr,
                                  "fuzzer",
                                  "",
                                  "",
                                  "1",
                                  [](const clap_host_t*, const char*) -> const void* { return nullptr; },
                                  [](const clap_host_t*) {},
                                  [](const clap_host_t*) {},
                                  [](const clap_host_t*) {}};

}  // namespace quillo::fuzz
