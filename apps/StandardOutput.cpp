#include "apps/StandardOutput.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>

namespace Apps {

namespace {

// Waits until standard output takes more, or `stop` is readable: then true.
bool isToStop(int stop) noexcept {
  std::array<pollfd, 2> waits{{{stop, POLLIN, 0}, {STDOUT_FILENO, POLLOUT, 0}}};
  while (poll(waits.data(), waits.size(), -1) < 0) {
    if (errno != EINTR) return false;  // the write will tell
  }
  return waits[0].revents != 0;
}

}  // namespace

void prepareStandardStreams() noexcept {
  std::signal(SIGPIPE, SIG_IGN);
  for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) {
    bool const isClosed = fcntl(fd, F_GETFD) < 0 && errno == EBADF;
    if (isClosed && open("/dev/null", O_RDONLY) < 0) return;  // takes the lowest free number: this one
  }
}

Written writeToStandardOutput(std::string_view text, std::optional<int> stop) noexcept {
  while (!text.empty()) {
    if (stop && isToStop(*stop)) return {Written::stopped};
    // As much as a pipe takes at once when it says that it takes something.
    std::string_view const piece = stop ? text.substr(0, PIPE_BUF) : text;
    ssize_t const count = write(STDOUT_FILENO, piece.data(), piece.size());
    if (count >= 0) {
      text.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      return {errno == EPIPE ? Written::readerLeft : Written::failed, errno};
    }
  }
  return {};
}

}  // namespace Apps
