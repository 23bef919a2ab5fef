// Name: the key of directories and of named attributes. It shares its bytes with the strings it comes from.
// Owner, thread: see StringN.
#pragma once

#include "dornl3/core/String8.h"

namespace Vek {

class VekType;

class Name : public StringN<U8> {
 public:
  constexpr Name() noexcept = default;
  /// The bytes up to the zero byte; the empty name for null. Throws RangeException above maxLength.
  Name(char const* s) : Name(String8(s)) {}
  Name(std::string_view text) : StringN(text) {}
  explicit Name(String8 const& text) noexcept : StringN(text) {}

  /// Text ending in a zero byte, good for as long as the name lives and is not assigned to.
  [[nodiscard]] char const* charPtr() const noexcept { return data().bytes(); }

  [[nodiscard]] bool operator==(Name const& other) const noexcept { return data() == other.data(); }
  [[nodiscard]] bool operator==(char const* other) const { return String8(*this) == String8(other); }
  [[nodiscard]] bool operator<(Name const& other) const noexcept { return data() < other.data(); }

  /// The run-time type record "Vek::Name".
  static VekType* _fwkType();
};

inline String8::String8(Name const& name) noexcept : StringN(name) {}

std::ostream& operator<<(std::ostream& os, Name const& name);

}  // namespace Vek

template <>
struct std::hash<Vek::Name> {
  std::size_t operator()(Vek::Name const& name) const noexcept { return name.hash(); }
};

template <>
struct std::hash<Vek::String8> {
  std::size_t operator()(Vek::String8 const& text) const noexcept { return text.hash(); }
};
