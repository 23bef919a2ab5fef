// TextBuffer: where a text is put together before it becomes a String8. Short texts need no heap.
// Owner: the function that writes. Thread: that function's.
#pragma once

#include "dornl3/core/String8.h"

#include <array>
#include <string_view>
#include <vector>

namespace Vek {

class TextBuffer {
 public:
  TextBuffer() noexcept = default;
  TextBuffer(TextBuffer const&) = delete;
  TextBuffer& operator=(TextBuffer const&) = delete;
  ~TextBuffer() = default;

  /// Throws std::bad_alloc.
  void append(std::string_view text);
  void append(char byte) { append(std::string_view{&byte, 1}); }

  /// Room for `length` more bytes, to be taken up with advance().
  [[nodiscard]] char* room(std::size_t length);
  void advance(std::size_t length) noexcept { size_ += length; }

  [[nodiscard]] std::string_view view() const noexcept { return {begin_, size_}; }
  /// The text as a string of its own. Throws RangeException where it is too long for one.
  [[nodiscard]] String8 text() const { return String8{view()}; }

 private:
  std::array<char, 1024> few_;  // filled up to size_
  std::vector<char> many_;
  char* begin_ = few_.data();
  std::size_t size_ = 0;
  std::size_t capacity_ = few_.size();
};

}  // namespace Vek
