#include "dornl3/platform/attrlog/ByteQueue.h"

#include <algorithm>

namespace Vek::NboAttrLog {

void ByteQueue::makeRoom(std::size_t count) {
  std::size_t const used = size();
  // With as much free as used, each byte is moved once at most for each byte that is consumed.
  if (used + count > capacity_ / 2) {
    std::size_t const capacity = std::max<std::size_t>(2 * (used + count), 1024);
    std::unique_ptr<char[]> bytes(new char[capacity]);
    if (used != 0) std::memcpy(bytes.get(), bytes_.get() + begin_, used);
    bytes_ = std::move(bytes);
    capacity_ = capacity;
  } else {
    std::memmove(bytes_.get(), bytes_.get() + begin_, used);
  }
  begin_ = 0;
  end_ = used;
}

}  // namespace Vek::NboAttrLog
