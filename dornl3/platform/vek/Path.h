// Path: how the names of entities stand in the paths that readers write and type: "status.lemV4RouteStats".
// Thread: any.
#pragma once

#include "dornl3/core/Name.h"

namespace Vek {

/// The name as one component of a path: as it is where it consists of letters, digits, and the characters _ - : /
/// alone, else as a string in quotes.
[[nodiscard]] String8 pathComponent(Name const& name);

/// Reads one component and leaves `it` behind it. Throws RangeException where none stands there.
[[nodiscard]] Name readPathComponent(String8::IteratorConst& it, String8::IteratorConst const& end);

}  // namespace Vek
