// Client: keeps mounts of one server in step. A connection that was lost, or could not be had, is tried again, later
// each time and never at a fixed beat, so that many readers of a server that comes back do not come at once. The
// entities of the mounts stay the same all the while. Owner: the reader; mounts and entities outlive it. Thread: the
// loop's. Re-entrancy: see PeerLink; whenChanged may do all but destroy the client.
#pragma once

#include "dornl3/platform/link/PeerLink.h"

namespace Vek::Link {

class Client {
 public:
  enum class State {
    resting,     ///< there is no connection; it is tried again
    connecting,  ///< the server has not greeted yet
    connected,
  };

  struct Settings {
    NboAttrLog::Connection::Settings connection;
    double firstRest = 1;     ///< seconds before a first new attempt; each further one rests up to twice as long
    double longestRest = 30;  ///< at most a half is added to each, by chance
    NboAttrLog::Random random = NboAttrLog::systemRandom();
  };

  /// Connects from here on; nothing has been tried when it returns.
  Client(Loop& loop, Address address, Settings settings);
  Client(Client const&) = delete;
  Client& operator=(Client const&) = delete;
  ~Client();

  /// Wants an entity of the server's, now and whenever it is connected. Throws InternalException where one of that name
  /// is wanted already.
  void mountIs(Ptr<NboAttrLog::Mount> const& mount);
  /// Wants it no longer.
  void mountDel(NboAttrLog::Mount& mount);

  [[nodiscard]] State state() const noexcept { return state_; }
  [[nodiscard]] Address const& address() const noexcept { return address_; }
  /// Why there is no connection: the last reason, a sentence; empty when none has failed since one stood.
  [[nodiscard]] std::string const& trouble() const noexcept { return trouble_; }
  /// The system's number of it, an errno; 0 where it was not the system that refused a connection.
  [[nodiscard]] int error() const noexcept { return error_; }
  /// How many connections have been tried in vain since one stood for a while.
  [[nodiscard]] U32 attempts() const noexcept { return attempts_; }
  /// Called from the loop after state() or trouble() has changed; a mount that changes tells by a call of its own.
  void whenChangedIs(std::function<void()> call) { whenChanged_ = std::move(call); }

  /// The present connection, or null.
  [[nodiscard]] NboAttrLog::Connection* connection() noexcept { return link_ ? &link_->connection() : nullptr; }

 private:
  void tryAgain();
  void connected();
  void ended();
  void rest(std::string trouble, int error);
  void stateIs(State state);

  Loop& loop_;
  Address const address_;
  Settings const settings_;
  State state_ = State::resting;
  std::string trouble_;
  int error_ = 0;
  U32 attempts_ = 0;
  double openedAt_ = Timer::never;
  std::vector<Ptr<NboAttrLog::Mount>> mounts_;
  std::function<void()> whenChanged_;
  Socket socket_;  // while it connects
  std::unique_ptr<Watch> watch_;
  std::unique_ptr<Timer> timer_;
  std::unique_ptr<PeerLink> link_;
};

}  // namespace Vek::Link
