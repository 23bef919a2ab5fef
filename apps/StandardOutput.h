// Standard output of a command-line program: written whole, with its ends told apart.
#pragma once

#include <optional>
#include <string_view>

namespace Apps {

struct Written {
  enum How {
    whole,
    readerLeft,  // the other end of the pipe closed: it has seen enough
    stopped,     // it was to stop while the reader was slow
    failed
  };

  How how = whole;
  int error = 0;  // the system's number, of what failed
};

/// Gives the standard streams that are closed a descriptor that refuses to be written, so that no file or socket opened
/// later takes their place. Lets a closed pipe show as Written::readerLeft instead of ending the process.
void prepareStandardStreams() noexcept;

/// Waits for a slow reader, but only until `stop` becomes readable, where one is given.
[[nodiscard]] Written writeToStandardOutput(std::string_view text, std::optional<int> stop = std::nullopt) noexcept;

}  // namespace Apps
