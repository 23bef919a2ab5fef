// Change: what has become of one followed place, and how it is printed.
#pragma once

#include "apps/attributes/Reading.h"

#include <string>
#include <vector>

namespace Apps::Attributes {

struct Change {
  std::string path;
  Generic value;  // what is there now; null where it went, with all that was in it
};

enum class Stamp { none, time };

/// One line for each change. As text "path = text", or "path: gone", behind the local time where it is stamped. As JSON
/// an object, always with its time: {"time": 1.5, "path": "a.b", "value": 3} or {"time": 1.5, "path": "a", "gone":
/// true}, without the spaces. `time`: seconds since 1970.
[[nodiscard]] std::string linesOf(std::vector<Change> const& changes, double time, Form form, Stamp stamp);

}  // namespace Apps::Attributes
