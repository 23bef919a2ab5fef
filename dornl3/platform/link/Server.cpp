#include "dornl3/platform/link/Server.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace Vek::Link {

using NboAttrLog::Access;
using NboAttrLog::Exports;

namespace {

constexpr double breath = 1;  // seconds without accepting when descriptors have run out

}  // namespace

struct Server::Link {
  Link(Loop& loop, Socket socket, NboAttrLog::Connection::Settings const& settings, std::function<void()> whenEnded)
      : credentials(socket.peer()), link(loop, std::move(socket), settings, std::move(whenEnded)) {}

  std::optional<PeerCredentials> credentials;
  bool isTurnedAway = false;
  PeerLink link;

  [[nodiscard]] Peer peer() noexcept { return {credentials, link.connection()}; }
};

Server::Server(Loop& loop, Address address, Settings settings)
    : loop_(loop),
      settings_(std::move(settings)),
      listener_(std::move(address), settings_.mode),
      watch_(loop.watch(listener_.descriptor(), [this](Readiness) { accept(); })),
      rest_(loop.timer([this] { watch_->wishIs({.toRead = true}); })) {
  watch_->wishIs({.toRead = true});
}

// What the ends of the connections set off finds no peers.
Server::~Server() { auto const peers = std::exchange(peers_, {}); }

void Server::exportIs(Ptr<Entity> const& entity, Access access, Exports::Delivery delivery) {
  Exports::needExportable(*entity);
  std::erase_if(exports_, [&entity](Export const& other) { return other.entity->name() == entity->name(); });
  exports_.push_back({entity, access, delivery});
  for (auto const& peer : peers_) exportTo(*peer, exports_.back());
}

void Server::exportDel(Name const& name) {
  std::erase_if(exports_, [&name](Export const& exported) { return exported.entity->name() == name; });
  for (auto const& peer : peers_) peer->link.connection().exports().exportDel(name);
}

void Server::exportTo(Link& link, Export const& exported) {
  Access access = exported.access;
  if (settings_.mostAccess) access = std::min(access, settings_.mostAccess(link.peer(), *exported.entity));
  link.link.connection().exports().exportIs(exported.entity, access, exported.delivery);
}

std::vector<Server::Peer> Server::peers() {
  std::vector<Peer> all;
  all.reserve(peers_.size());
  for (auto const& peer : peers_) all.push_back(peer->peer());
  return all;
}

void Server::accept() {
  Socket socket;
  switch (listener_.accept(socket)) {
  case Listener::Taken::one: take(std::move(socket)); break;
  case Listener::Taken::none: break;
  case Listener::Taken::outOfResources:
    // Whoever waits would be told of again at once.
    watch_->wishIs({});
    rest_->dueIs(NboAttrLog::steadyClock()() + breath);
    break;
  }
}

void Server::take(Socket socket) {
  auto const at = peers_.emplace(peers_.end());
  try {
    *at = std::make_unique<Link>(loop_, std::move(socket), settings_.connection, [this, at] { left(at); });
  } catch (...) {
    peers_.erase(at);
    throw;
  }
  Link& link = **at;
  NboAttrLog::Connection& connection = link.link.connection();
  if (peers_.size() > settings_.mostPeers) {
    link.isTurnedAway = true;
    connection.closeIs(format("%u readers are connected, the most that there may be", settings_.mostPeers));
    tell(Event::turnedAway, link);
    return;
  }
  try {
    for (Export const& exported : exports_) exportTo(link, exported);
  } catch (std::exception const& error) {
    connection.closeIs(error.what());
  }
  tell(Event::came, link);
}

void Server::left(std::list<std::unique_ptr<Link>>::iterator at) {
  // It is out of the list, whatever is thrown.
  std::unique_ptr<Link> const link = std::move(*at);
  peers_.erase(at);
  if (!link->isTurnedAway) tell(Event::left, *link);
}

void Server::tell(Event event, Link& link) {
  if (whenChanged_) whenChanged_(event, link.peer());
}

}  // namespace Vek::Link
