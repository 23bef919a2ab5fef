// Docs: what a schema file says of its types and attributes: the reference, as Markdown, and rows for a program that
// tells it to its users.
#pragma once

#include "schemac/Schema.h"

#include <string>

namespace Schemac {

/// A heading and a table a type: number, name, type, what is special about it, and doc of each attribute. `file` has
/// passed the check.
[[nodiscard]] std::string docsOf(File const& file);

/// A line a type, and one an attribute: `{"Space::Type", "attribute", "doc"},`, of a type without attribute. A C++
/// program includes them into an array of its own.
[[nodiscard]] std::string docRowsOf(File const& file);

}  // namespace Schemac
