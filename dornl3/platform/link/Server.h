// Server: listens, and lets each process that connects mount the entities that are exported.
// What one peer does costs its own connection and nothing else: one that does not read is owed at most a bounded log
// and a bounded set of marks, and is cut off when it is not heard for three heartbeats. Owner: the agent; entities
// outlive it. Thread: the loop's. Re-entrancy: see PeerLink; whenChanged may do all but destroy the server.
#pragma once

#include "dornl3/platform/link/Listener.h"
#include "dornl3/platform/link/PeerLink.h"

#include <list>

namespace Vek::Link {

class Server {
 public:
  /// Someone who has connected.
  struct Peer {
    std::optional<PeerCredentials> credentials;  ///< of a Unix socket
    NboAttrLog::Connection& connection;          ///< peerName() is what the peer calls itself
  };
  /// What happens to the peers, for a log.
  enum class Event { came, left, turnedAway };

  struct Settings {
    NboAttrLog::Connection::Settings connection;
    U32 mostPeers = 256;  ///< at a time; those beyond it are told so and let go
    mode_t mode = 0660;   ///< of a Unix socket
    /// What a peer may do with an entity at most; without it all that it was exported for.
    std::function<NboAttrLog::Access(Peer const&, Entity const&)> mostAccess = {};
  };

  /// Listens from here on. Throws AddressError.
  Server(Loop& loop, Address address, Settings settings);
  Server(Server const&) = delete;
  Server& operator=(Server const&) = delete;
  /// Ends the connections with a word, and takes the socket's file away.
  ~Server();

  /// Lets those who are connected and those who come mount a root entity under its name. Throws InternalException for
  /// an entity that has a parent, and for one that has no bindings.
  void exportIs(Ptr<Entity> const& entity, NboAttrLog::Access access,
                NboAttrLog::Exports::Delivery delivery = NboAttrLog::Exports::Delivery::immediate);
  /// Takes it back from all; they keep what they have, and are told.
  void exportDel(Name const& name);

  [[nodiscard]] Listener const& listener() const noexcept { return listener_; }
  [[nodiscard]] std::size_t peerCount() const noexcept { return peers_.size(); }
  [[nodiscard]] std::vector<Peer> peers();
  /// Called after a peer has come, and before it is let go. What it throws leaves the loop.
  void whenChangedIs(std::function<void(Event, Peer const&)> call) { whenChanged_ = std::move(call); }

 private:
  struct Export {
    Ptr<Entity> entity;
    NboAttrLog::Access access;
    NboAttrLog::Exports::Delivery delivery;
  };
  struct Link;

  void accept();
  void take(Socket socket);
  void left(std::list<std::unique_ptr<Link>>::iterator at);
  void exportTo(Link& link, Export const& exported);
  void tell(Event event, Link& link);

  Loop& loop_;
  Settings const settings_;
  Listener listener_;
  std::vector<Export> exports_;
  std::list<std::unique_ptr<Link>> peers_;
  std::function<void(Event, Peer const&)> whenChanged_;
  std::unique_ptr<Watch> watch_;
  std::unique_ptr<Timer> rest_;
};

}  // namespace Vek::Link
