// MemoryTransport: two ends of a stream in one process. What one end writes the other reads, when it next asks.
// Owner: whoever makes the pair; for one end the going of the other is the end of the stream. Thread: one.
#pragma once

#include "dornl3/platform/attrlog/ByteQueue.h"
#include "dornl3/platform/attrlog/Transport.h"

#include <limits>

namespace Vek::NboAttrLog {

class MemoryTransport final : public Transport {
 public:
  MemoryTransport() = default;
  ~MemoryTransport() override;

  /// Joins two ends.
  static void join(MemoryTransport& one, MemoryTransport& other) noexcept {
    one.peer_ = &other;
    other.peer_ = &one;
  }

  std::size_t write(std::string_view bytes) override;
  std::size_t read(char* into, std::size_t room) override;
  [[nodiscard]] bool isEnded() const override { return isCut_ && incoming_.size() == 0; }

  /// The most bytes that wait for the peer; more are not taken.
  void capacityIs(std::size_t bytes) noexcept { capacity_ = bytes; }
  /// The most bytes that one call moves.
  void sliceIs(std::size_t bytes) noexcept { slice_ = bytes; }
  /// Cuts the stream, both ways; `keep` of the bytes under way to this end still arrive.
  void cut(std::size_t keep = std::numeric_limits<std::size_t>::max());
  [[nodiscard]] std::string_view incoming() const noexcept { return incoming_.view(); }

 private:
  MemoryTransport* peer_ = nullptr;
  ByteQueue incoming_;
  std::size_t capacity_ = std::numeric_limits<std::size_t>::max();
  std::size_t slice_ = std::numeric_limits<std::size_t>::max();
  bool isCut_ = false;
};

}  // namespace Vek::NboAttrLog
