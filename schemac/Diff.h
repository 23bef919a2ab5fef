// Diff: what a change of schema breaks for peers that run the old one.
//
// A peer knows a type by its full name, an attribute on the log by its number, in texts and in the generic interface by
// its name. On the log an unknown attribute of an entity is skipped; the attributes of a value stand one behind the
// other with nothing between them, so that any change of their row breaks.
#pragma once

#include "schemac/Schema.h"

#include <string>
#include <vector>

namespace Schemac {

/// One difference that a peer can meet.
struct Difference {
  enum class Effect { breaks, note };

  Effect effect = Effect::breaks;
  std::string path;  ///< the new file, or the old one for what is in the old one alone
  SourcePosition at;
  std::string text;

  friend auto operator<=>(Difference const&, Difference const&) = default;
};

/// `file:line:column: breaks: text`, or `note`.
[[nodiscard]] std::string toString(Difference const& difference);

/// All differences between two files that have passed the check, in the order of the old one; what is new comes last.
/// Types are paired by name. One that is gone is paired with a new one that has the very same attributes: it was
/// renamed.
[[nodiscard]] std::vector<Difference> diff(File const& before, File const& after);

/// Whether any of them breaks something.
[[nodiscard]] bool breaks(std::vector<Difference> const& differences);

}  // namespace Schemac
