// Types: the table of attribute types: what stands in a schema file, and what becomes of it in C++ and on the wire.
#pragma once

#include "schemac/Schema.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Schemac {

/// One type that an attribute or key may have.
struct AttributeType {
  enum class Kind {
    boolean,
    integer,
    seconds,  ///< a double
    text,     ///< counted string data
    sibling,  ///< a value type that comes from outside
    value,    ///< a value type of the same schema file
  };

  std::string declared;  ///< name in schema files, and of constructor arguments as registered: "U32"
  std::string cpp;       ///< "Vek::U32"; a value type of the same file by its short name
  Kind kind = Kind::value;
  std::uint32_t wireWidth = 0;  ///< bytes on the wire; 0 where that depends on the value
  bool byReference = false;     ///< how setters, makers and value constructors take it: const reference, or value
  std::string header;           ///< declares it; empty for types of the language and of the same file
  std::string defaultLiteral;   ///< C++ expression of its default; empty where it is the default constructor's
  std::uint64_t max = 0;        ///< of an integer: the greatest value

  [[nodiscard]] bool isInteger() const { return kind == Kind::integer; }
  /// Type of a parameter: "Vek::U64 const&", "Vek::U32".
  [[nodiscard]] std::string parameter() const { return byReference ? cpp + " const&" : cpp; }
};

/// The types that attributes of one schema file may have: those that every file knows, and the file's own values.
class Types {
 public:
  /// Copies what it needs of `file`, which need not have passed the check.
  explicit Types(File const& file);

  /// The type declared so, or null. "Vek::Name" is among them: the type of every entity's name, and a key.
  [[nodiscard]] AttributeType const* find(std::string_view declared) const noexcept;
  /// The same for a file that has passed the check. Throws std::out_of_range for an unknown type.
  [[nodiscard]] AttributeType const& at(std::string_view declared) const;
  /// All of them, the file's own values last.
  [[nodiscard]] std::vector<AttributeType> const& all() const noexcept { return types_; }

 private:
  std::vector<AttributeType> types_;
};

/// Declared type of the key of a collection: the key itself, or for a child collection the type of the child's
/// attribute: "Vek::Name" for its name, else "Vek::String".
[[nodiscard]] std::string keyType(Attribute const& attribute);

/// Declared types of attributes that every schema file knows, beside its own values.
[[nodiscard]] std::vector<std::string_view> const& attributeTypes();

/// Declared types that may be keys, by kind of collection.
[[nodiscard]] std::vector<std::string_view> const& orderedKeys();
[[nodiscard]] std::vector<std::string_view> const& hashedKeys();

}  // namespace Schemac
