// What a schema file says: plain structs, filled by Read, judged by Check, handed to View, Diff and Docs.
// A name or text that the file does not give is empty, a number 0. Check is what promises more than that.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace Schemac {

/// A place in a schema file, both counted from 1; 0 where there is none.
struct SourcePosition {
  std::uint32_t line = 0;
  std::uint32_t column = 0;

  friend auto operator<=>(SourcePosition const&, SourcePosition const&) = default;
};

/// What a table of the file has in common: where it begins, and where each of its values stands.
struct Table {
  SourcePosition at;
  std::map<std::string, SourcePosition, std::less<>> keys;

  /// Whether the table gives `key`.
  [[nodiscard]] bool has(std::string_view key) const { return keys.find(key) != keys.end(); }
  /// Where the value of `key` stands; the table itself where it has no such key.
  [[nodiscard]] SourcePosition where(std::string_view key) const {
    auto const found = keys.find(key);
    return found == keys.end() ? at : found->second;
  }
};

/// A default or constant, as the file gives it.
using Literal = std::variant<bool, std::int64_t, double, std::string>;

/// What an attribute is. Each is exactly one of these; everything downstream asks the shape, never the name.
enum class Shape {
  scalar,           ///< one plain value
  text,             ///< one string
  constant,         ///< a value that the type itself has: no storage
  fixed,            ///< a string given to the constructor
  ordered,          ///< values by key, walked by rising key
  hashed,           ///< values by key, in the order of their hashes
  child,            ///< one entity that this one makes and owns
  childCollection,  ///< such entities, hashed by one of their own attributes
  retired,          ///< no attribute any more: holds its number
};

/// One attribute of a type.
struct Attribute : Table {
  std::uint32_t number = 0;
  std::string name;
  std::string doc;
  Shape shape = Shape::scalar;
  std::string type;        ///< declared type of the value, "U32" or "RouteStats"; empty for children
  std::string child;       ///< entity that a child or child collection makes
  std::string key;         ///< declared key type of a collection; of a child collection, the child's attribute
  bool increment = false;  ///< has an incrementer
  std::optional<Literal> defaultValue;  ///< of a scalar or text; without it zero, false or empty
  std::optional<Literal> constant;      ///< of a constant
  std::optional<std::int64_t> min;      ///< least value that text and lists may give
  std::optional<std::int64_t> max;      ///< greatest such value

  [[nodiscard]] bool retired() const { return shape == Shape::retired; }
};

/// A value type or an entity.
struct Type : Table {
  enum class Kind { value, entity };

  Kind kind = Kind::value;
  std::string name;
  std::string doc;
  std::string factory;                ///< of an entity: the function that makes one from its name; empty for none
  bool bare = false;                  ///< of a value: its text is that of its one attribute, with no wrapper
  std::vector<Attribute> attributes;  ///< in the order of the file, which is that of their numbers

  [[nodiscard]] bool isEntity() const { return kind == Kind::entity; }
  /// The attribute called `attribute`, retired or not; null where there is none.
  [[nodiscard]] Attribute const* find(std::string_view attribute) const {
    for (Attribute const& a : attributes) {
      if (a.name == attribute) return &a;
    }
    return nullptr;
  }
};

/// One schema file.
struct File : Table {
  std::string path;       ///< as it was named to the program
  std::string stem;       ///< "Status" for dornl3/schema/Status.toml: names the header and what registers the types
  std::string nameSpace;  ///< "Hardware::DornL3Unicast"
  std::string doc;
  std::vector<Type> types;  ///< in definition order, values and entities together

  /// The type called `type` (without namespace); null where there is none.
  [[nodiscard]] Type const* find(std::string_view type) const {
    for (Type const& t : types) {
      if (t.name == type) return &t;
    }
    return nullptr;
  }
  /// The attribute that holds entities of the type `child` by key; null where none does.
  [[nodiscard]] Attribute const* holderOf(Type const& child) const {
    for (Type const& t : types) {
      for (Attribute const& a : t.attributes) {
        if (a.shape == Shape::childCollection && a.child == child.name) return &a;
      }
    }
    return nullptr;
  }
};

}  // namespace Schemac
