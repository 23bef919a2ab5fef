#include "dornl3/core/String8.h"

#include "dornl3/core/Name.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <limits>
#include <ostream>

namespace Vek {

String8::String8(char const* s) { init(s, 0, s == nullptr ? 0 : std::strlen(s)); }

String8::String8(IteratorConst const& from) : StringN(String8(from.data()).substr(from.position(), ~U32{0})) {}

namespace {

String8 joined(std::string_view head, std::string_view tail) {
  auto* const data = StringN<U8>::Data::create(head.size() + tail.size());
  String8 whole{*data};
  std::memcpy(data->bytes(), head.data(), head.size());
  std::memcpy(data->bytes() + head.size(), tail.data(), tail.size());
  return whole;
}

}  // namespace

String8 String8::operator+(String8 const& tail) const {
  if (tail.empty()) return *this;
  if (empty()) return tail;
  return joined(view(), tail.view());
}

String8& String8::operator+=(String8 const& tail) { return *this = *this + tail; }

String8 String8::substr(long long position, U32 length) const {
  auto const from = static_cast<std::size_t>(std::clamp<long long>(position, 0, this->length()));
  if (from == 0 && length >= this->length()) return *this;
  return String8{view().substr(from, length)};
}

std::ostream& operator<<(std::ostream& os, String8 const& text) {
  std::string_view const view = text;
  return os.write(view.data(), static_cast<std::streamsize>(view.size()));
}

std::ostream& operator<<(std::ostream& os, Name const& name) { return os << String8(name); }

String8 format(char const* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  int const counted = std::vsnprintf(nullptr, 0, format, arguments);
  va_end(arguments);
  if (counted == 0) return {};
  // Negative where an int cannot count the bytes: too long for any text.
  auto const length = counted < 0 ? std::numeric_limits<std::size_t>::max() : static_cast<std::size_t>(counted);
  auto* const data = StringN<U8>::Data::create(length);
  String8 text{*data};
  va_start(arguments, format);
  std::vsnprintf(data->bytes(), length + 1, format, arguments);
  va_end(arguments);
  return text;
}

}  // namespace Vek
