// NamedType: type records of values that are described by their name alone.
// Owner: the process; records stay for good. Thread: the loading thread.
#pragma once

#include "dornl3/platform/vek/VekType.h"

#include <cstddef>
#include <string_view>

namespace Vek {

/// What stands behind the last "::" of a name.
[[nodiscard]] std::string_view shortTypeName(std::string_view fullName) noexcept;

/// Gives a new record its size, kind and full name, and lets it live for good.
VekType* registerValueType(Ptr<VekType> const& type, char const* fullName, std::size_t size);

/// A registered record of a type that has no text and is wrapped by a generic of its own making only.
[[nodiscard]] VekType* namedType(char const* fullName, std::size_t size);

}  // namespace Vek
