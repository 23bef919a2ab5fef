#include "apps/StandardOutput.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace Apps {

void prepareStandardStreams() noexcept {
  std::signal(SIGPIPE, SIG_IGN);
  for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) {
    bool const isClosed = fcntl(fd, F_GETFD) < 0 && errno == EBADF;
    if (isClosed && open("/dev/null", O_RDONLY) < 0) return;  // takes the lowest free number: this one
  }
}

Written writeToStandardOutput(std::string_view text) noexcept {
  while (!text.empty()) {
    ssize_t const count = write(STDOUT_FILENO, text.data(), text.size());
    if (count >= 0) {
      text.remove_prefix(static_cast<std::size_t>(count));
    } else {
      return errno == EPIPE ? Written::readerLeft : errno == EINTR ? Written::interrupted : Written::failed;
    }
  }
  return Written::whole;
}

}  // namespace Apps
