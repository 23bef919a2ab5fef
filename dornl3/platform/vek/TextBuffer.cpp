#include "dornl3/platform/vek/TextBuffer.h"

#include <algorithm>
#include <cstring>

namespace Vek {

void TextBuffer::append(std::string_view text) {
  if (text.empty()) return;
  std::memcpy(room(text.size()), text.data(), text.size());
  advance(text.size());
}

char* TextBuffer::room(std::size_t length) {
  if (capacity_ - size_ < length) {
    std::size_t const wanted = std::max(2 * capacity_, size_ + length);
    std::vector<char> larger(wanted);
    std::memcpy(larger.data(), begin_, size_);
    many_ = std::move(larger);
    begin_ = many_.data();
    capacity_ = wanted;
  }
  return begin_ + size_;
}

}  // namespace Vek
