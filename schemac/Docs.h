// Docs: the attribute reference of a schema file, as Markdown.
#pragma once

#include "schemac/Schema.h"

#include <string>

namespace Schemac {

/// A heading and a table a type: number, name, type, what is special about it, and doc of each attribute. `file` has
/// passed the check.
[[nodiscard]] std::string docsOf(File const& file);

}  // namespace Schemac
