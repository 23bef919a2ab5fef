// AgentMounts: roots of an agent, mounted into a directory and kept in step, as long as it stands; after a lost
// connection they are mounted again by themselves. What stands in its way is told in sentences.
// Owner: the command; the loop outlives it. Thread: the loop's. Re-entrancy: see Vek::Link::Client.
#pragma once

#include "dornl3/platform/link/Client.h"
#include "dornl3/platform/vek/Dir.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Apps {

class AgentMounts {
 public:
  /// What is to be mounted.
  struct Wish {
    Vek::Name name;
    Vek::VekType const* type;
    Vek::NboAttrLog::Access access;
  };
  struct Target {
    Vek::Link::Address address;
    Vek::Name self;            // what the command calls itself
    double longestRest = 10;   // seconds between attempts to reach an agent that was lost
    bool isWaitedFor = false;  // it may listen only later
  };

  AgentMounts(Vek::Link::Loop& loop, Target const& target, std::vector<Wish> const& wishes);
  AgentMounts(AgentMounts const&) = delete;
  AgentMounts& operator=(AgentMounts const&) = delete;

  /// The roots that have been announced; those that were in step once stay.
  [[nodiscard]] Vek::Dir const& dir() const noexcept { return *dir_; }
  [[nodiscard]] Vek::NboAttrLog::Mount& mount(std::string_view name) const;
  [[nodiscard]] bool isInStep() const noexcept;
  /// When the agent was last heard, in seconds since 1970.
  [[nodiscard]] double lastWord() const;
  [[nodiscard]] std::string const& place() const noexcept { return client_.address().text(); }
  /// Why there is no connection now; empty where there is.
  [[nodiscard]] std::string const& trouble() const noexcept { return client_.trouble(); }
  /// Called after any of this has changed; it must not destroy the mounts.
  void whenChangedIs(std::function<void()> call) { whenChanged_ = std::move(call); }

  /// Throws Refused where the agent will not give one of them.
  void needNoRefusal() const;
  /// Throws NoAnswer where there is no connection, and one that wants an answer now has no reason to wait for it.
  void needConnection() const;
  /// Throws NoAnswer: so many seconds have been waited in vain.
  [[noreturn]] void giveUp(double seconds);

 private:
  void changed();

  Vek::Ptr<Vek::Dir> const dir_ = Vek::make<Vek::Dir>();
  std::vector<Vek::Ptr<Vek::NboAttrLog::Mount>> mounts_;
  std::function<void()> whenChanged_;
  bool isWaitedFor_;
  bool wasConnected_ = false;
  Vek::Link::Client client_;
};

}  // namespace Apps
