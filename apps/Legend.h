// Legend: the short words of the field that the schema and the tables use, in plain ones.
#pragma once

#include <string>
#include <string_view>

namespace Apps {

/// A line each for those that stand in the text, under a blank one; empty where none do.
[[nodiscard]] std::string legendOf(std::string_view text);

}  // namespace Apps
