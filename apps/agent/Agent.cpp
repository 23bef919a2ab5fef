#include "apps/agent/Agent.h"

#include "apps/attributes/Misfit.h"
#include "apps/kernel/KernelError.h"
#include "apps/show/WallClock.h"

#include <fmt/format.h>

namespace Apps {

namespace {

using Vek::Link::Server;
using Vek::NboAttrLog::Access;

// Over TCP nobody is known: to ask for figures is all that is theirs.
Access mostAccess(Server::Peer const& peer, Vek::Entity const& root) {
  bool const isRequest = root.fwkType() == Hardware::DornL3Unicast::Request::_fwkType();
  return peer.credentials || isRequest ? Access::writable : Access::readOnly;
}

// An agent goes on where it cannot read: what it knows is still worth telling.
Kernel::KernelFollower::Pace goingOn(Kernel::KernelFollower::Pace pace) {
  pace.failuresInARow = 0;
  return pace;
}

std::string describe(Server::Peer const& peer) {
  std::string const name = peer.connection.peerName().view().empty()
                               ? "without a name"
                               : Attributes::inQuotes(peer.connection.peerName().view());
  if (!peer.credentials) return fmt::format("{} (over TCP)", name);
  return fmt::format("{} (user {}, process {})", name, peer.credentials->user, peer.credentials->process);
}

}  // namespace

Agent::Agent(Vek::Link::Loop& loop, Kernel::MessageSource& questions, Kernel::NotificationSource& notifications,
             int news, Settings const& settings, Say say, Kernel::KernelFollower::Pace pace)
    : say_{std::move(say)},
      host_{questions, notifications, goingOn(pace), Show::Asker::others},
      news_{loop,
            news,
            {.take =
                 [this] {
                   bool const isToPublish = host_.advance();
                   giveNotice();
                   return isToPublish;
                 },
             .patience = [this] { return host_.patience(); },
             .publish = [this] { publish(); }}},
      responder_{Vek::make<Show::RequestResponder>([this] { news_.publishSoon(); })},
      server_{loop,
              settings.address,
              {.connection = {"dornl3 agent", {}}, .mode = settings.mode, .mostAccess = mostAccess}} {
  responder_->notifierIs(host_.roots().request);
  responder_->isRegisteredNotifieeIs(true);
  serve(settings.tellsOfPeers);
  giveNotice();
}

void Agent::serve(bool tellsOfPeers) {
  host_.roots().forEachExport(
      [this](Vek::Ptr<Vek::Entity> const& root, Access access) { server_.exportIs(root, access); });
  if (!tellsOfPeers) return;
  server_.whenChangedIs([this](Server::Event event, Server::Peer const& peer) {
    switch (event) {
    case Server::Event::came:  // and says its name
      peer.connection.whenOpenIs([this, peer] { say_(fmt::format("{} has come.", describe(peer))); });
      break;
    case Server::Event::left:
      say_(fmt::format("{} has gone: {}.", describe(peer), peer.connection.closeReason().view()));
      break;
    case Server::Event::turnedAway: say_(fmt::format("{} was turned away.", describe(peer))); break;
    }
  });
}

void Agent::publish() {
  if (!responder_->isAsked()) {
    host_.publish();
  } else {
    try {
      host_.refresh();
      responder_->answer(host_.roots(), Show::secondsSince1970());
    } catch (Kernel::KernelError const&) {
      say_("A request for fresh figures has no answer yet.");
    }
  }
  giveNotice();
}

void Agent::giveNotice() {
  for (std::string const& notice : host_.notices()) say_(notice);
}

std::string Agent::place() const {
  Vek::Link::Address const& address = server_.listener().address();
  if (address.isUnix()) return address.text();
  return fmt::format("{}:{}", address.text().substr(0, address.text().rfind(':')), server_.listener().port());
}

}  // namespace Apps
