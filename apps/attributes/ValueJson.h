// The JSON form of values: records as objects, texts, numbers and times as what they are, a reference as its path.
#pragma once

#include "apps/attributes/Place.h"

#include <nlohmann/json_fwd.hpp>

namespace Apps::Attributes {

/// Texts may hold any bytes, JSON holds characters: whoever prints it replaces what is none.
[[nodiscard]] nlohmann::ordered_json valueJson(Vek::GenericIf& value);

}  // namespace Apps::Attributes
