// LocalTime: the one form in which a time is printed for people.
#pragma once

#include <string>

namespace Apps {

/// "2026-11-25T00:53:13.042+01:00", of seconds since 1970: in the zone of the machine, with its offset. A number that
/// no calendar has stands as it is.
[[nodiscard]] std::string localTime(double secondsSince1970);

}  // namespace Apps
