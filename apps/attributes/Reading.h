// Reading: what is at a place, taken once and printed in any form.
#pragma once

#include "apps/attributes/Place.h"

#include <optional>
#include <string>
#include <vector>

namespace Apps::Attributes {

struct Reading {
  std::string path;
  std::string step;                      // the last step of the path: an attribute, or a key as it is
  Generic value = {};                    // of what is one value, or a reference that is not followed
  std::optional<Vek::U32> members = {};  // how many there are in a collection that is not opened
  std::vector<Reading> parts = {};       // of an entity or an opened collection
};

enum class Form { text, json };

enum class Depth {
  one,  // an entity's attributes, or a collection's members: what these hold by key, and children, stay closed
  all
};

/// Throws Misfit where a member is not there.
[[nodiscard]] Reading read(Place const& place, Depth depth);

/// One line a value: "path = text", of a closed collection "path: 3 members".
[[nodiscard]] std::string linesOf(Reading const& reading);
/// JSON, indented, with a line end behind it: entities, collections and records as objects, times and counts as
/// numbers.
[[nodiscard]] std::string jsonOf(Reading const& reading);
/// Several, by their paths.
[[nodiscard]] std::string jsonOf(std::vector<Reading> const& readings);

}  // namespace Apps::Attributes
