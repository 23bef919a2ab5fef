// Selection: what a command that shows attributes is to show: what paths name or, without one, everything; of all this
// what is filled; and what the reader should know of the rest.
#pragma once

#include "apps/attributes/Filled.h"
#include "apps/attributes/TypedPath.h"

#include <string>
#include <vector>

namespace Apps::Attributes {

/// What a path names. Where it names something of which nothing is filled, that is wanted all the same.
struct Selected {
  TypedPath path;
  Filled const* filled;  // of it
};

struct Selection {
  std::vector<Selected> places = {};
  std::size_t leftOut = 0;                 // attributes and fields in them, or roots beside them, that are not filled
  std::vector<std::string> unfilled = {};  // of the paths given
};

/// Without paths, every root of which something is filled. Uses `filled`, does not own it. Throws Misfit.
[[nodiscard]] Selection select(Vek::Dir const& roots, std::vector<std::string> const& paths, Filled const& filled);

/// What the reader should know of what is not filled: sentences.
[[nodiscard]] std::vector<std::string> notesOf(Selection const& selection);

}  // namespace Apps::Attributes
