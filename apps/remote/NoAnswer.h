// NoAnswer: an agent that is not there, or says nothing, or has gone before it said what was to be known. The text says
// what happened, where, and what to do.
#pragma once

#include <stdexcept>
#include <string>

namespace Apps {

class NoAnswer : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Of an agent that is waited for in vain.
[[nodiscard]] NoAnswer timedOut(std::string const& place, double seconds);

/// An agent that does not give what was asked for.
class Refused : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace Apps
