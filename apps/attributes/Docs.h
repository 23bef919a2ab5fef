// Docs: what the schema says of types and attributes. The library goes without these texts; the program carries them.
#pragma once

#include "dornl3/platform/vek/VekType.h"

#include <string_view>

namespace Apps::Attributes {

/// What it is; empty where no schema file tells.
[[nodiscard]] std::string_view docOf(Vek::VekType const& type);
/// What it holds; empty where nothing tells.
[[nodiscard]] std::string_view docOf(Vek::VekType const& owner, Vek::VekAttr const& attr);

}  // namespace Apps::Attributes
