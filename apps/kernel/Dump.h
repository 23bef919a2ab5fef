// Dumper: reads whole tables of the kernel, message by message, and starts over when a table changed under the reading.
#pragma once

#include "apps/kernel/MessageSource.h"

#include <cstdint>
#include <functional>
#include <string_view>

namespace Apps::Kernel {

enum class Table { links, addresses, neighbours, nextHops, routes };

/// What an error calls the table: "The kernel's routes".
[[nodiscard]] std::string_view tableName(Table table) noexcept;

/// How a dump came out.
enum class Outcome {
  consistent,   // one state of the table
  interrupted,  // the table changed during each attempt: the figures may mix several states
  absent        // this kernel has no such table
};

class Dumper {
 public:
  static constexpr int attempts = 10;

  explicit Dumper(MessageSource& source) noexcept : source_{source} {}  // uses the source, does not own it

  /// Reads `table`: calls `start` before each attempt and `take` with the body of each message (what follows the
  /// netlink header), which holds during the call only. An attempt that the kernel marks as interrupted, or that lost
  /// messages, is repeated. Throws KernelError; what the callables throw passes through, and the Dumper is then of no
  /// more use.
  Outcome read(Table table, std::function<void()> const& start, std::function<void(Bytes)> const& take);

 private:
  enum class Attempt { whole, interrupted, overrun, absent };

  void request(Table table);
  Attempt attempt(Table table, std::function<void(Bytes)> const& take);

  MessageSource& source_;
  std::uint32_t sequence_ = 0;
};

}  // namespace Apps::Kernel
