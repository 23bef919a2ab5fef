// Agent: the roots of this host, kept current from the kernel's notifications, and served to whoever mounts them.
// Requests for fresh figures are answered from a later turn of the loop, once for all that have come by then.
// Owner: the command; loop, sources and what `say` uses outlive it. Thread: the loop's.
#pragma once

#include "apps/KernelNews.h"
#include "apps/show/HostFollower.h"
#include "apps/show/RequestResponder.h"
#include "dornl3/platform/link/Server.h"

namespace Apps {

class Agent {
 public:
  struct Settings {
    Vek::Link::Address address;
    mode_t mode = 0660;         // of a Unix socket
    bool tellsOfPeers = false;  // who comes and goes
  };
  /// Hears what whoever runs the agent should know: sentences.
  using Say = std::function<void(std::string const&)>;

  /// Reads the kernel, and serves from here on. `news`: a descriptor that is readable when `notifications` have come.
  /// Throws KernelError, and AddressError where it cannot listen.
  Agent(Vek::Link::Loop& loop, Kernel::MessageSource& questions, Kernel::NotificationSource& notifications, int news,
        Settings const& settings, Say say, Kernel::KernelFollower::Pace pace = {});
  Agent(Agent const&) = delete;
  Agent& operator=(Agent const&) = delete;

  /// Where it listens: the address with the port that was found, where it was to be any.
  [[nodiscard]] std::string place() const;

 private:
  void serve(bool tellsOfPeers);
  void publish();
  void giveNotice();

  Say const say_;
  Show::HostFollower host_;
  KernelNews news_;
  Vek::Ptr<Show::RequestResponder> const responder_;
  Vek::Link::Server server_;
};

}  // namespace Apps
