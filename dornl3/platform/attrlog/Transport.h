// Transport: the seams of a connection: where bytes go to and come from, what time it is, and what is random.
// Thread: the connection's. Re-entrancy: none of these operations calls the connection back.
#pragma once

#include "dornl3/core/Integers.h"

#include <cstddef>
#include <functional>
#include <string_view>

namespace Vek::NboAttrLog {

/// A stream of bytes in both directions that never waits. What an operation throws ends the connection, with the
/// exception's text as the reason.
class Transport {
 public:
  Transport() = default;
  Transport(Transport const&) = delete;
  Transport& operator=(Transport const&) = delete;
  virtual ~Transport() = default;

  /// Takes bytes from the front of these, and tells how many; 0 when it can take none now.
  virtual std::size_t write(std::string_view bytes) = 0;
  /// Puts at most `room` bytes at `into`, and tells how many; 0 when there are none now.
  virtual std::size_t read(char* into, std::size_t room) = 0;
  /// Whether the peer has ended the stream, and all that it sent has been read.
  [[nodiscard]] virtual bool isEnded() const = 0;
};

/// Seconds on a clock that never goes back.
using Clock = std::function<double()>;
/// 32 bits that nobody can guess.
using Random = std::function<U32()>;

/// Those of this host. Throws std::exception where it has no source of randomness.
[[nodiscard]] Clock steadyClock();
[[nodiscard]] Random systemRandom();

}  // namespace Vek::NboAttrLog
