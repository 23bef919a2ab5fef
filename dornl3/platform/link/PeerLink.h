// PeerLink: one connection over one socket, driven by a loop: it reads when bytes have come, writes when something is
// owed and the socket takes it, and keeps the heartbeats.
// Owner: a Server or Client, or whoever has a socket of his own. Thread: the loop's. Re-entrancy: reactors on entities
// run inside the loop's calls; they may close the connection, not destroy the link. whenEnded may.
#pragma once

#include "dornl3/platform/attrlog/Connection.h"
#include "dornl3/platform/link/Loop.h"
#include "dornl3/platform/link/Socket.h"

namespace Vek::Link {

class PeerLink {
 public:
  /// `socket` is connected. `whenEnded` is called from the loop, once, when the connection has ended, whoever ended it;
  /// connection().closeReason() tells why.
  PeerLink(Loop& loop, Socket socket, NboAttrLog::Connection::Settings settings, std::function<void()> whenEnded);
  PeerLink(PeerLink const&) = delete;
  PeerLink& operator=(PeerLink const&) = delete;
  ~PeerLink();

  [[nodiscard]] NboAttrLog::Connection& connection() noexcept { return *connection_; }
  [[nodiscard]] NboAttrLog::Connection const& connection() const noexcept { return *connection_; }
  [[nodiscard]] Socket const& socket() const noexcept { return transport_.socket(); }

 private:
  void ready(Readiness readiness);
  void due();
  void settle();
  void ended();

  SocketTransport transport_;
  Ptr<NboAttrLog::Connection> connection_;
  std::function<void()> whenEnded_;
  Readiness wish_;
  double deadline_ = Timer::never;
  std::unique_ptr<Watch> watch_;
  std::unique_ptr<Timer> timer_;
};

}  // namespace Vek::Link
