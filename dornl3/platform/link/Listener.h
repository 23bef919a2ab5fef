// Listener: a socket that others connect to. A Unix socket is born with its mode; the file of a process that has ended
// is replaced, that of one that lives is left alone, and its own goes with it.
// Owner: its server. Thread: one; while a Unix socket is made, the process's umask is another.
#pragma once

#include "dornl3/platform/link/Socket.h"

namespace Vek::Link {

class Listener {
 public:
  /// Listens from here on. `mode`: who may connect to a Unix socket, as of a file. Throws AddressError where another
  /// process listens there or the address cannot be had.
  Listener(Address address, mode_t mode);
  Listener(Listener const&) = delete;
  Listener& operator=(Listener const&) = delete;
  ~Listener();

  [[nodiscard]] Address const& address() const noexcept { return address_; }
  [[nodiscard]] int descriptor() const noexcept { return socket_.descriptor(); }
  /// The port that others connect to, where it is TCP; one was found where 0 was asked for.
  [[nodiscard]] unsigned short port() const noexcept;

  enum class Taken { one, none, outOfResources };
  /// Takes one that has connected. outOfResources: the process has no descriptor or memory for it now, and it waits.
  Taken accept(Socket& into) noexcept;

 private:
  void bindPath(mode_t mode);

  Address const address_;
  Socket socket_;
  dev_t device_ = 0;  // of the file that is ours
  ino_t file_ = 0;
};

}  // namespace Vek::Link
