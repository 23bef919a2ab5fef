#include "apps/LocalTime.h"

#include <fmt/format.h>

#include <cmath>
#include <cstdlib>
#include <ctime>

namespace Apps {

std::string localTime(double secondsSince1970) {
  constexpr double farthest = 1e15;  // beyond any year that has four digits; what follows fits in whole numbers
  if (!(std::abs(secondsSince1970) < farthest)) return fmt::format("{}", secondsSince1970);
  long long const milliseconds = std::llround(secondsSince1970 * 1000);
  long long const rest = ((milliseconds % 1000) + 1000) % 1000;
  auto const seconds = static_cast<std::time_t>((milliseconds - rest) / 1000);
  std::tm parts{};
  if (localtime_r(&seconds, &parts) == nullptr) return fmt::format("{}", secondsSince1970);
  long const offset = parts.tm_gmtoff / 60;  // minutes
  return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}.{:03}{}{:02}:{:02}", parts.tm_year + 1900LL, parts.tm_mon + 1,
                     parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec, rest, offset < 0 ? '-' : '+',
                     std::abs(offset) / 60, std::abs(offset) % 60);
}

}  // namespace Apps
