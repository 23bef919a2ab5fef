#include "schemac/Types.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace Schemac {

namespace {

using Kind = AttributeType::Kind;

constexpr std::uint64_t maxOfU64 = std::numeric_limits<std::uint64_t>::max();
constexpr std::uint32_t widestByValue = 2;  // bytes of a record or sibling type

std::vector<AttributeType> const& builtinTypes() {
  static std::vector<AttributeType> const types = {
      // declared, C++, kind, wire width, by reference, header, default, greatest integer
      {"U8", "Vek::U8", Kind::integer, 1, false, "dornl3/core/Integers.h", "0", 0xff},
      {"U32", "Vek::U32", Kind::integer, 4, false, "dornl3/core/Integers.h", "0", 0xffffffff},
      {"U64", "Vek::U64", Kind::integer, 8, true, "dornl3/core/Integers.h", "0", maxOfU64},
      {"bool", "bool", Kind::boolean, 1, false, "", "false", 0},
      {"Vek::Seconds", "double", Kind::seconds, 8, true, "", "0.0", 0},
      {"Vek::String", "Vek::String8", Kind::text, 0, false, "dornl3/core/String8.h", "", 0},
      {"Vek::Name", "Vek::Name", Kind::text, 0, false, "dornl3/core/Name.h", "", 0},
      {"Hardware::Dorn::FapId", "Hardware::Dorn::FapId", Kind::sibling, 2, false, "dornl3/platform/siblings/FapId.h",
       "", 0},
      {"Bridging::VlanIdOrNone", "Bridging::VlanIdOrNone", Kind::sibling, 2, false,
       "dornl3/platform/siblings/VlanIdOrNone.h", "", 0},
      {"Kiln::Fapmask", "Kiln::Fapmask", Kind::sibling, 16, true, "dornl3/platform/siblings/Fapmask.h", "", 0},
  };
  return types;
}

// The sum of the parts, or 0 as soon as one of them varies.
std::uint32_t widthOf(Type const& value, Types const& known) {
  std::uint32_t width = 0;
  for (Attribute const& a : value.attributes) {
    if (a.retired()) continue;
    AttributeType const* const type = known.find(a.type);
    if (type == nullptr || type->wireWidth == 0) return 0;
    width += type->wireWidth;
  }
  return width;
}

}  // namespace

Types::Types(File const& file) : types_(builtinTypes()) {
  for (Type const& type : file.types) {
    if (type.isEntity() || find(type.name) != nullptr) continue;
    std::uint32_t const width = widthOf(type, *this);
    bool const byReference = width == 0 || width > widestByValue;
    types_.push_back({type.name, type.name, Kind::value, width, byReference, "", "", 0});
  }
}

AttributeType const* Types::find(std::string_view declared) const noexcept {
  auto const found =
      std::find_if(types_.begin(), types_.end(), [&](AttributeType const& t) { return t.declared == declared; });
  return found == types_.end() ? nullptr : &*found;
}

AttributeType const& Types::at(std::string_view declared) const {
  if (AttributeType const* const type = find(declared)) return *type;
  throw std::out_of_range(fmt::format("no attribute type is called '{}'", declared));
}

std::string keyType(Attribute const& attribute) {
  if (attribute.shape != Shape::childCollection) return attribute.key;
  return attribute.key == "name" ? "Vek::Name" : "Vek::String";
}

std::vector<std::string_view> const& attributeTypes() {
  static std::vector<std::string_view> const names = [] {
    std::vector<std::string_view> found;
    for (AttributeType const& type : builtinTypes()) {
      if (type.declared != "Vek::Name") found.push_back(type.declared);
    }
    return found;
  }();
  return names;
}

std::vector<std::string_view> const& orderedKeys() {
  static std::vector<std::string_view> const keys = {"U32", "Hardware::Dorn::FapId"};
  return keys;
}

std::vector<std::string_view> const& hashedKeys() {
  static std::vector<std::string_view> const keys = {"U32", "Vek::String", "Bridging::VlanIdOrNone"};
  return keys;
}

}  // namespace Schemac
