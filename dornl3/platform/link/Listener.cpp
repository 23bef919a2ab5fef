#include "dornl3/platform/link/Listener.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <string>
#include <system_error>
#include <thread>

namespace Vek::Link {

namespace {

constexpr int backlog = 128;

std::string said(int error) { return std::generic_category().message(error); }

[[noreturn]] void refuse(Address const& address, int error, std::string const& what) {
  throw AddressError("Cannot listen at " + address.text() + ": " + said(error) + ". " + what);
}

// Keeps others from looking at a place, and from taking it, at the same time. Without the right to read the directory,
// and where somebody does not let go of it, there is no lock; then two that start at the same moment may not see each
// other.
class Turn {
 public:
  explicit Turn(std::string const& path) {
    auto const slash = path.rfind('/');
    std::string const directory = slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
    lock_ = Socket(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    for (int tries = 0; lock_ && tries < mostTries; ++tries) {
      if (::flock(lock_.descriptor(), LOCK_EX | LOCK_NB) == 0) return;
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
  }

 private:
  static constexpr int mostTries = 50;
  Socket lock_;
};

// The mode of what is made meanwhile.
class Mask {
 public:
  explicit Mask(mode_t mode) noexcept : before_(::umask(~mode & 0777)) {}
  Mask(Mask const&) = delete;
  Mask& operator=(Mask const&) = delete;
  ~Mask() { ::umask(before_); }

 private:
  mode_t before_;
};

bool isListenedAt(Address const& address) {
  try {
    Socket probe = Socket::of(address);
    probe.connect(address);
    return true;
  } catch (std::system_error const& error) {
    int const code = error.code().value();
    if (code == EACCES) refuse(address, code, "The socket there is another user's. Choose another path.");
    return code != ECONNREFUSED && code != ENOENT;
  }
}

}  // namespace

Listener::Listener(Address address, mode_t mode) : address_(std::move(address)) {
  try {
    socket_ = Socket::of(address_);
  } catch (std::system_error const& error) {
    refuse(address_, error.code().value(), "The system has no socket to give.");
  }
  if (address_.isUnix()) {
    bindPath(mode);
    return;
  }
  int const on = 1;
  ::setsockopt(descriptor(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  if (::bind(descriptor(), address_.socketAddress(), address_.length()) != 0) {
    refuse(address_, errno, "Choose a port that is free and an address of this host.");
  }
  if (::listen(descriptor(), backlog) != 0) refuse(address_, errno, "Choose another port.");
}

void Listener::bindPath(mode_t mode) {
  std::string const& path = address_.path();
  Turn const turn{path};
  struct stat found {};
  if (::lstat(path.c_str(), &found) == 0) {
    if (!S_ISSOCK(found.st_mode)) {
      throw AddressError("Cannot listen at " + address_.text() +
                         ": there is a file that is no socket. Choose another path.");
    }
    if (isListenedAt(address_)) {
      throw AddressError("Cannot listen at " + address_.text() +
                         ": another process listens there. End it first, or choose another path.");
    }
    if (::unlink(path.c_str()) != 0) refuse(address_, errno, "What a process has left there cannot be taken away.");
  }
  int bound = 0;
  {
    Mask const mask{mode};
    bound = ::bind(descriptor(), address_.socketAddress(), address_.length());
  }
  if (bound != 0) refuse(address_, errno, "Choose a path in a directory that exists and that you may write to.");
  if (::listen(descriptor(), backlog) != 0) refuse(address_, errno, "Choose another path.");
  if (::lstat(path.c_str(), &found) == 0) {
    device_ = found.st_dev;
    file_ = found.st_ino;
  }
}

Listener::~Listener() {
  if (!address_.isUnix()) return;
  Turn const turn{address_.path()};
  struct stat found {};
  bool const isOurs = ::lstat(address_.path().c_str(), &found) == 0 && found.st_dev == device_ && found.st_ino == file_;
  if (isOurs) ::unlink(address_.path().c_str());
}

unsigned short Listener::port() const noexcept {
  sockaddr_storage own{};
  socklen_t length = sizeof own;
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): the form of the call
  if (::getsockname(descriptor(), reinterpret_cast<sockaddr*>(&own), &length) != 0) return 0;
  if (own.ss_family == AF_INET) return ntohs(reinterpret_cast<sockaddr_in const&>(own).sin_port);     // NOLINT
  if (own.ss_family == AF_INET6) return ntohs(reinterpret_cast<sockaddr_in6 const&>(own).sin6_port);  // NOLINT
  return 0;
}

// NOLINTNEXTLINE(readability-make-member-function-const): what waits in the socket changes
Listener::Taken Listener::accept(Socket& into) noexcept {
  while (true) {
    Socket taken(::accept4(descriptor(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (taken) {
      into = std::move(taken);
      return Taken::one;
    }
    switch (errno) {
    case EINTR:
    case ECONNABORTED: continue;
    case EMFILE:
    case ENFILE:
    case ENOBUFS:
    case ENOMEM: return Taken::outOfResources;
    default: return Taken::none;
    }
  }
}

}  // namespace Vek::Link
