// Data: what a template is filled with: objects, lists of objects, strings and flags.
//
// A string is text and never a condition; a condition is a flag. So nothing is true by being empty, or by being there.
#pragma once

#include <concepts>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Schemac {

class Data {
 public:
  enum class Kind { object, list, string, flag };

  [[nodiscard]] static Data object() { return Data(Kind::object); }
  [[nodiscard]] static Data list() { return Data(Kind::list); }

  Data(std::string text) : kind_(Kind::string), text_(std::move(text)) {}
  Data(std::string_view text) : Data(std::string(text)) {}
  Data(char const* text) : Data(std::string(text)) {}
  /// Takes a bool and nothing that turns into one.
  Data(std::same_as<bool> auto flag) : kind_(Kind::flag), flag_(flag) {}

  /// Adds a member to an object. Throws std::logic_error where this is none, or has a member of that name.
  Data& set(std::string name, Data value);
  /// Adds an object to a list. Throws std::logic_error where this is no list, or `item` no object.
  Data& add(Data item);

  [[nodiscard]] Kind kind() const noexcept { return kind_; }
  /// Names of an object's members, in the order they were set.
  [[nodiscard]] std::vector<std::string> const& names() const noexcept { return names_; }
  /// Of a list, its items; of an object, its members, in the order of `names()`.
  [[nodiscard]] std::vector<Data> const& items() const noexcept { return items_; }
  /// Of a string.
  [[nodiscard]] std::string const& text() const noexcept { return text_; }
  /// Of a flag.
  [[nodiscard]] bool flag() const noexcept { return flag_; }
  /// The member of an object called `name`; null where there is none.
  [[nodiscard]] Data const* find(std::string_view name) const noexcept;

 private:
  explicit Data(Kind kind) : kind_(kind) {}

  Kind kind_;
  std::vector<std::string> names_;
  std::vector<Data> items_;
  std::string text_;
  bool flag_ = false;
};

}  // namespace Schemac
