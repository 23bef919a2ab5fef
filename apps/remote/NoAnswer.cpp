#include "apps/remote/NoAnswer.h"

#include <fmt/format.h>

namespace Apps {

NoAnswer timedOut(std::string const& place, double seconds) {
  return NoAnswer{
      fmt::format("The agent at {} did not answer within {:g} seconds. See whether it is stopped or busy, or "
                  "give it more time with --timeout.",
                  place, seconds)};
}

}  // namespace Apps
