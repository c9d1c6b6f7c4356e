// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace quillo {

/// A JSON Schema (draft 2020-12) of the documents that `PluginData::read` takes, in all their forms, with its
/// end of line. It is made of the descriptions that documents are read and written by. What it cannot say:
/// that a rule that is switched off has its place within the list and not before the one in front of it, and
/// that the oldest form can hold pitches that no rule can.
[[nodiscard]] std::string documentSchema();

}  // namespace quillo
