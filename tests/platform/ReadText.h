// ReadText: one reader applied to a text, and what it left: the value or the message, and the place of the cursor.
#pragma once

#include "dornl3/core/Exception.h"
#include "dornl3/core/String8.h"

#include <optional>
#include <string>

template <class T>
struct ReadText {
  std::optional<T> value;
  std::string message;
  int column = 0;
};

/// `read(it, end)` on the text; `length` sets the end inside it. Whatever is thrown is a RangeException.
template <class Reader>
auto readText(std::string_view text, Reader const& read, int length = -1) {
  Vek::String8 const string{text};
  Vek::String8::IteratorConst it{string};
  Vek::String8::IteratorConst const end = length < 0 ? it.end() : Vek::String8::IteratorConst{string, length};
  ReadText<decltype(read(it, end))> result;
  try {
    result.value = read(it, end);
  } catch (Vek::RangeException const& e) {
    result.message = std::string_view{e.message()};
  }
  result.column = it.position();
  return result;
}

/// The reader of a scalar: the type is the one that selects it.
template <class T>
auto readScalar(std::string_view text, int length = -1) {
  return readText(
      text, [](auto& it, auto const& end) { return Vek::sequenceToValue(it, end, static_cast<T*>(nullptr)); }, length);
}
