// Literal: how a default or constant is written, in C++ and in a schema file.
#pragma once

#include "schemac/Schema.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <string>

namespace Schemac {

/// Greatest integer of TOML, and so of a schema file.
constexpr std::uint64_t maxOfToml = std::numeric_limits<std::int64_t>::max();

/// The number that an unsigned attribute is given: an integer, or above `maxOfToml` a string of its decimal digits.
/// None for all else, a string with a smaller number included: there is one way to write each.
[[nodiscard]] std::optional<std::uint64_t> unsignedOf(Literal const& literal) noexcept;

/// As a C++ expression: `true`, `3`, `0.5`, `"text"`. Bytes outside printable ASCII become octal escapes.
[[nodiscard]] std::string cppLiteral(Literal const& literal);

/// As a schema file writes it, for people: `true`, `3`, `0.5`, `"text"`.
[[nodiscard]] std::string schemaLiteral(Literal const& literal);

}  // namespace Schemac
