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

// Where to write without ever waiting inside a write. A terminal promises less room than a piece may need, and how its
// description waits is shared with others: so an own one. What a pipe promises holds for a piece.
int patientDescriptor() noexcept {
  if (isatty(STDOUT_FILENO) == 0) return STDOUT_FILENO;
  static int const own = open("/proc/self/fd/1", O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  return own >= 0 ? own : STDOUT_FILENO;
}

enum class Refused : bool { no, yes };

// Waits until standard output takes something, or `stop` is readable: then true. After a refusal, its promise was
// empty: only a moment passes.
bool isToStop(std::optional<int> stop, Refused refused) noexcept {
  constexpr int moment = 20;  // milliseconds
  std::array<pollfd, 2> waits{{{stop.value_or(-1), POLLIN, 0}, {STDOUT_FILENO, POLLOUT, 0}}};
  bool const onlyStop = refused == Refused::yes;
  while (poll(waits.data(), onlyStop ? 1 : waits.size(), onlyStop ? moment : -1) < 0) {
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
  int const descriptor = stop ? patientDescriptor() : STDOUT_FILENO;
  Refused refused = Refused::no;
  while (!text.empty()) {
    bool const waits = stop || refused == Refused::yes;
    if (waits && isToStop(stop, refused)) return {Written::stopped};
    std::string_view const piece = stop ? text.substr(0, PIPE_BUF) : text;
    ssize_t const count = write(descriptor, piece.data(), piece.size());
    refused = count < 0 && errno == EAGAIN ? Refused::yes : Refused::no;
    if (count >= 0) {
      text.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno != EINTR && errno != EAGAIN) {
      return {errno == EPIPE ? Written::readerLeft : Written::failed, errno};
    }
  }
  return {};
}

}  // namespace Apps
