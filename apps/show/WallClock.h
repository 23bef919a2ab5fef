// WallClock: the time of day.
#pragma once

#include <chrono>

namespace Apps::Show {

/// Seconds since 1970.
[[nodiscard]] inline double secondsSince1970() {
  return std::chrono::duration<double>{std::chrono::system_clock::now().time_since_epoch()}.count();
}

}  // namespace Apps::Show
