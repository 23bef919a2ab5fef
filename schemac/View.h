// View: a schema file as data for the templates. Every spelling that a template needs is made here, with Names and
// Types; a template puts none together from pieces.
#pragma once

#include "schemac/Data.h"
#include "schemac/Schema.h"

#include <string_view>

namespace Schemac {

/// The data of the templates Header and Source. The file has passed the check. `includePrefix` stands before the name
/// of the header in its include: "dornl3/schema".
[[nodiscard]] Data viewOf(File const& file, std::string_view includePrefix);

}  // namespace Schemac
