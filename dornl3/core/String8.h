// String8: the general text value, bytes without a meaning of their own. Copying shares the bytes.
// Owner, thread: see StringN; a cursor holds the bytes that it stands in.
#pragma once

#include "dornl3/core/StringN.h"

#include <iosfwd>

namespace Vek {

class Name;

class String8 : public StringN<U8> {
 public:
  class Iterator;
  class IteratorConst;

  /// The empty text.
  constexpr String8() noexcept = default;
  /// The bytes up to the zero byte; the empty text for null. Throws RangeException above maxLength.
  String8(char const* s);
  /// Those bytes, zero bytes among them. Throws RangeException above maxLength.
  String8(std::string_view text) : StringN(text) {}
  /// The text from the cursor to its end; the whole text for a cursor ahead of the start.
  String8(IteratorConst const& from);
  /// The same bytes, shared.
  explicit String8(Name const& name) noexcept;
  /// The text in `data`, shared.
  explicit String8(Data const& data) noexcept { data_ = &data; }

  String8& operator=(char const* s) { return *this = String8(s); }
  String8& operator+=(char const* s) { return *this += String8(s); }
  String8& operator+=(String8 const& tail);

  /// At most `length` bytes from `position`; empty where the text does not reach. A negative position counts as 0.
  [[nodiscard]] String8 substr(long long position, U32 length) const;

  /// Text ending in a zero byte, good for as long as the string lives and is not assigned to.
  [[nodiscard]] char const* charPtr() const noexcept { return data().bytes(); }

  [[nodiscard]] String8 operator+(String8 const& tail) const;
  [[nodiscard]] String8 operator+(char const* tail) const { return *this + String8(tail); }

  [[nodiscard]] bool operator==(String8 const& other) const noexcept { return data() == other.data(); }
  [[nodiscard]] bool operator==(char const* other) const { return *this == String8(other); }
  [[nodiscard]] bool operator<(String8 const& other) const noexcept { return data() < other.data(); }
};

[[nodiscard]] inline String8 operator+(char const* head, String8 const& tail) { return String8(head) + tail; }

std::ostream& operator<<(std::ostream& os, String8 const& text);

/// A cursor that reads, as the parsers use it.
class String8::IteratorConst : public StringN<U8>::IteratorBase {
 public:
  IteratorConst() noexcept = default;
  /// Stands at `position` of the text.
  explicit IteratorConst(String8 const& text, int position = 0) noexcept : IteratorBase(text.data(), position) {}

  IteratorConst& operator++() noexcept {
    ++position_;
    return *this;
  }
  IteratorConst& operator+=(int bytes) noexcept {
    position_ += bytes;
    return *this;
  }

  /// The end of the text that this cursor stands in.
  [[nodiscard]] IteratorConst end() const noexcept {
    IteratorConst it = *this;
    it.position_ = static_cast<int>(data_->length());
    return it;
  }
};

/// The same cursor in code that once wrote through it; the bytes never change.
class String8::Iterator : public String8::IteratorConst {
 public:
  using IteratorConst::IteratorConst;
};

/// A String8 from a format in the manner of printf. Throws RangeException above maxLength.
[[nodiscard]] [[gnu::format(printf, 1, 2)]] String8 format(char const* format, ...);

}  // namespace Vek
