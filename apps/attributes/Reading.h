// Reading: what is at a place, taken once and printed in any form.
#pragma once

#include "apps/attributes/Filled.h"
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
  std::vector<Reading> parts = {};       // of an entity, an opened collection, or a record read field by field
};

enum class Form { text, json };

enum class Depth {
  one,  // an entity's attributes, or a collection's members: what these hold by key, and children, stay closed
  all
};

enum class Records {
  whole,  // where all of a record is filled
  byField
};

/// How to look at a place.
struct Look {
  Depth depth = Depth::one;
  Records records = Records::whole;
  Filled const* filled = &Filled::everything();  // not owned; of what is there, the rest is passed over
};

/// Whether a value of that type is shown in one piece, and not field by field.
[[nodiscard]] bool isInOnePiece(Vek::VekType const& type, Look const& look);

/// Throws Misfit where a member is not there.
[[nodiscard]] Reading read(Place const& place, Look const& look);

/// One line a value: "path = text", of a closed collection "path: 3 members".
[[nodiscard]] std::string linesOf(Reading const& reading);
/// JSON, indented, with a line end behind it: entities, collections and records as objects, times and counts as
/// numbers.
[[nodiscard]] std::string jsonOf(Reading const& reading);
/// Several, by their paths.
[[nodiscard]] std::string jsonOf(std::vector<Reading> const& readings);

}  // namespace Apps::Attributes
