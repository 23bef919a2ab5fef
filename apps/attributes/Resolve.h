// From paths to places: the walk over the entities that are there.
#pragma once

#include "apps/attributes/TypedPath.h"

#include <string_view>

namespace Apps::Attributes {

/// What to do about a child on the way that is not there.
enum class Missing { refuse, make };

/// The place of a path; what is at its end need not be there. Throws Misfit, as readPath does too.
[[nodiscard]] Place resolve(TypedPath const& typed, Missing missing = Missing::refuse);
[[nodiscard]] Place resolve(Vek::Dir const& roots, std::string_view path, Missing missing = Missing::refuse);

}  // namespace Apps::Attributes
