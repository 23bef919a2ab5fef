// TypeNames: the full names of a schema file's types as they stand in the library's section ".vek.type", for tools
// that look a library over without running it: each begins on a 32-byte boundary, zeros fill the space between.
// Thread: any; the block is a constant.
#pragma once

#include "dornl3/frame/Attribute.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace Vek {

namespace detail {

inline constexpr std::size_t typeNameAlignment = 32;

/// The type defined last stands first.
template <class... Definition>
constexpr auto typeNamesInFileOrder() {
  std::array<std::string_view, sizeof...(Definition)> names{Definition::Attr::fullName...};
  std::reverse(names.begin(), names.end());
  return names;
}

/// Where the name that follows one from `begin` begins.
constexpr std::size_t behind(std::size_t begin, std::string_view name) {
  std::size_t const end = begin + name.size() + 1;
  return (end + typeNameAlignment - 1) / typeNameAlignment * typeNameAlignment;
}

}  // namespace detail

/// The names of the types, given by their records in the order of definition, as one block. Nothing stands behind the
/// last name but its zero byte.
template <class... Definition>
constexpr auto typeNames(List<Definition...>) {
  constexpr auto names = detail::typeNamesInFileOrder<Definition...>();
  constexpr std::size_t size = [&names] {
    std::size_t begin = 0;
    for (std::size_t i = 0; i + 1 < names.size(); ++i) begin = detail::behind(begin, names[i]);
    return begin + names.back().size() + 1;
  }();
  std::array<char, size> block{};
  std::size_t begin = 0;
  for (std::string_view const name : names) {
    std::copy(name.begin(), name.end(), block.begin() + static_cast<std::ptrdiff_t>(begin));
    begin = detail::behind(begin, name);
  }
  return block;
}

}  // namespace Vek
