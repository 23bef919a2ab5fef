// Inventor: values of any type, and entities of every type, made by what the registry says of them. No type is named.
#pragma once

#include "dornl3/platform/vek/GenericIfEntity.h"
#include "dornl3/platform/vek/ScalarText.h"

#include <random>
#include <string>
#include <vector>

using Generic = Vek::Ptr<Vek::GenericIf>;

/// Texts of values, the same ones for the same seed.
class Inventor {
 public:
  explicit Inventor(std::uint64_t seed) : random_{seed} {}

  /// The text of some value of a type. Small numbers fit every type that has limits.
  std::string text(Vek::VekType const& type) {
    if (type.isValue() && !type.attributes().empty() && type.valAttr() == nullptr) return record(type);
    if (type.valAttr() != nullptr) return text(*type.valAttr()->valueType());
    std::string_view const name = type.fullName();
    if (name == "bool") return below(2) == 0 ? "False" : "True";
    if (name == "Vek::Seconds") return std::string{Vek::valueToStrep(double(below(1000)) / 8).view()};
    if (name == "U64") return std::to_string(below(3) == 0 ? random_() : below(9));
    if (name == "U32") return std::to_string(below(3) == 0 ? random_() & 0xffffffff : below(9));
    if (name == "Vek::String" || name == "Vek::Name") return std::string{Vek::valueToStrep(bytes()).view()};
    if (name == "Kiln::Fapmask") {
      return Vek::format("'%08x:00000000:%08x:00000000'", unsigned(below(4)), unsigned(below(4))).charPtr();
    }
    return std::to_string(3 + below(5));
  }
  Generic value(Vek::VekType const& type) { return type.genericIf(Vek::String8(std::string_view(text(type))), false); }

 private:
  std::uint64_t below(std::uint64_t n) { return random_() % n; }
  Vek::String8 bytes() {
    std::string all;
    for (auto n = below(4); n > 0; --n) all += "ab'\\\n\xff.]"[below(8)];
    return std::string_view(all);
  }
  std::string record(Vek::VekType const& type) {
    std::string all = "Value('" + std::string(type.fullName().view()) + "', ** {";
    char const* before = "'";
    for (auto const& attr : type.attributes()) {
      all += before + std::string(attr->name().view()) + "': " + text(*attr->valueType());
      before = ", '";
    }
    return all + "})";
  }

  std::mt19937_64 random_;
};

inline std::string str(Vek::String8 const& text) { return std::string{text.view()}; }

/// The value of a type that a text denotes.
inline Generic valueOf(Vek::VekType const& type, std::string const& text) {
  return type.genericIf(Vek::String8(std::string_view(text)), false);
}

inline Generic listOf(std::vector<Generic> const& arguments) {
  auto const list = Vek::make<Vek::GenericIf::List_>();
  for (Generic const& argument : arguments) list->enqueue(argument);
  return list;
}

inline Vek::Entity& entityOf(Generic const& generic) { return static_cast<Vek::GenericIfEntity&>(*generic).entity(); }

/// What the members of an attribute are found by; of an attribute that holds one child, what that is called.
inline Vek::VekType const& keyTypeOf(Vek::VekAttr const& attr) {
  return attr.keyType() == nullptr ? *Vek::Name::_fwkType() : *attr.keyType();
}

/// The types of entities, without the base of all.
inline std::vector<Vek::VekType const*> entityTypes() {
  std::vector<Vek::VekType const*> types;
  for (Vek::VekType* type : Vek::VekType::registered()) {
    if (type->isEntity() && type->base() != nullptr) types.push_back(type);
  }
  return types;
}

/// The types of values that have attributes.
inline std::vector<Vek::VekType const*> recordTypes() {
  std::vector<Vek::VekType const*> types;
  for (Vek::VekType* type : Vek::VekType::registered()) {
    if (type->isValue() && !type->attributes().empty()) types.push_back(type);
  }
  return types;
}

/// A new entity of a type; null for one that comes to be through its parent only.
inline Generic newRoot(Vek::VekType const& type, std::string const& name) {
  try {
    return type.genericIf(listOf({valueOf(*Vek::Name::_fwkType(), name)}).ptr(), false);
  } catch (Vek::InternalException const&) {
    return {};
  }
}
