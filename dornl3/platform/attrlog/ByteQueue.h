// ByteQueue: bytes that wait to be sent, or to be read, in one piece of memory: a record is written and read without a
// seam. What has been consumed makes room at the front; the rest moves there when the memory is used up to its end,
// which costs a copy of at most as many bytes as were consumed before. Owner: one end of a connection. Thread: the
// connection's.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

namespace Vek::NboAttrLog {

class ByteQueue {
 public:
  [[nodiscard]] std::size_t size() const noexcept { return end_ - begin_; }
  [[nodiscard]] char* at(std::size_t offset) noexcept { return bytes_.get() + begin_ + offset; }
  [[nodiscard]] std::string_view view() const noexcept { return {bytes_.get() + begin_, size()}; }

  /// Room for `count` bytes behind the last, which extend() then takes in. Good until the next call.
  [[nodiscard]] char* room(std::size_t count) {
    if (capacity_ - end_ < count) makeRoom(count);
    return bytes_.get() + end_;
  }
  void extend(std::size_t count) noexcept { end_ += count; }

  void append(void const* from, std::size_t count) {
    char* const to = room(count);
    if (count != 0) std::memcpy(to, from, count);
    extend(count);
  }

  /// Drops bytes from the front.
  void consume(std::size_t count) noexcept {
    begin_ += count;
    if (begin_ == end_) begin_ = end_ = 0;
  }
  /// Drops the bytes behind the first `size`.
  void truncate(std::size_t size) noexcept { end_ = begin_ + size; }

 private:
  void makeRoom(std::size_t count);

  std::unique_ptr<char[]> bytes_;
  std::size_t capacity_ = 0;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
};

}  // namespace Vek::NboAttrLog
