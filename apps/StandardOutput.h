// Standard output of a command-line program: written whole, with its ends told apart.
#pragma once

#include <string_view>

namespace Apps {

enum class Written {
  whole,
  readerLeft,   // the other end of the pipe closed: it has seen enough
  interrupted,  // a signal that the program listens to came while the reader was slow
  failed        // errno tells why
};

/// Gives the standard streams that are closed a descriptor that refuses to be written, so that no file or socket opened
/// later takes their place. Lets a closed pipe show as Written::readerLeft instead of ending the process.
void prepareStandardStreams() noexcept;

[[nodiscard]] Written writeToStandardOutput(std::string_view text) noexcept;

}  // namespace Apps
