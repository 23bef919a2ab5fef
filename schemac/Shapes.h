// Shapes: how the shape of an attribute follows from its keys, and which keys go with each shape.
#pragma once

#include "schemac/Schema.h"

#include <string_view>
#include <vector>

namespace Schemac {

/// The shape that the keys of `attribute` show. Where they contradict each other, the first of: retired, child,
/// ordered, hashed, constant, fixed; Check names the keys that do not go with it.
[[nodiscard]] Shape shapeOf(Attribute const& attribute);

/// "an ordered collection": for messages and tables.
[[nodiscard]] std::string_view describe(Shape shape) noexcept;

/// The keys that an attribute of this shape may have, beside `number`, `name` and `doc`.
[[nodiscard]] std::vector<std::string_view> const& keysOf(Shape shape);

}  // namespace Schemac
