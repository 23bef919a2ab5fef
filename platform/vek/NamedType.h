// NamedType: type records of values that are described by their name alone.
#pragma once

#include <cstddef>

#include "platform/vek/VekType.h"

namespace Vek {

/// A registered record of a value type without attributes, that lives for good. The short name is what stands behind
/// the last "::".
[[nodiscard]] VekType* namedValueType(char const* fullName, std::size_t size);

}  // namespace Vek
