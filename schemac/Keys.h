// Keys: what the tables of a schema file may hold. The one place that names every key and tells what it takes; which
// keys of an attribute go together is told in Shapes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Schemac {

struct Key {
  std::string_view name;
  std::string takes;  ///< as complaints say it: "true", "an integer", "one of 'U32', 'Vek::String'"
};

/// Keys of the file itself, above its first type.
[[nodiscard]] std::vector<Key> const& fileKeys();
/// Keys of a [[value]].
[[nodiscard]] std::vector<Key> const& valueKeys();
/// Keys of an [[entity]].
[[nodiscard]] std::vector<Key> const& entityKeys();
/// Keys of an attribute of any shape.
[[nodiscard]] std::vector<Key> const& attributeKeys();

}  // namespace Schemac
