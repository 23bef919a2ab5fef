#include "dornl3/platform/attrlog/MemoryTransport.h"

#include <algorithm>

namespace Vek::NboAttrLog {

MemoryTransport::~MemoryTransport() {
  cut();
  if (peer_ != nullptr) peer_->peer_ = nullptr;
}

std::size_t MemoryTransport::write(std::string_view bytes) {
  if (isCut_ || peer_ == nullptr) return 0;
  std::size_t const waiting = peer_->incoming_.size();
  std::size_t const free = waiting < capacity_ ? capacity_ - waiting : 0;
  std::size_t const count = std::min({bytes.size(), free, slice_});
  peer_->incoming_.append(bytes.data(), count);
  return count;
}

std::size_t MemoryTransport::read(char* into, std::size_t room) {
  std::size_t const count = std::min({incoming_.size(), room, slice_});
  if (count != 0) std::memcpy(into, incoming_.at(0), count);
  incoming_.consume(count);
  return count;
}

void MemoryTransport::cut(std::size_t keep) {
  for (MemoryTransport* const end : {this, peer_}) {
    if (end != nullptr) end->isCut_ = true;
  }
  if (keep < incoming_.size()) incoming_.truncate(keep);
}

}  // namespace Vek::NboAttrLog
