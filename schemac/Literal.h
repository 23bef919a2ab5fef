// Literal: how a default or constant is written, in C++ and in a schema file.
#pragma once

#include "schemac/Schema.h"

#include <string>

namespace Schemac {

/// As a C++ expression: `true`, `3`, `0.5`, `"text"`. Bytes outside printable ASCII become octal escapes.
[[nodiscard]] std::string cppLiteral(Literal const& literal);

/// As a schema file writes it, for people: `true`, `3`, `0.5`, `"text"`.
[[nodiscard]] std::string schemaLiteral(Literal const& literal);

}  // namespace Schemac
