// AgentSession: roots of an agent for a command that does one thing and ends: whatever it waits for comes within a
// time, or the wait ends in an exception that says why.
// Owner: the command; the loop outlives it. Thread: the loop's.
#pragma once

#include "apps/remote/AgentMounts.h"
#include "dornl3/platform/link/PollLoop.h"

namespace Apps {

class AgentSession {
 public:
  /// Waits until all is in step; `seconds`: for this and all later waits together. Throws NoAnswer and Refused.
  AgentSession(Vek::Link::PollLoop& loop, AgentMounts::Target const& target,
               std::vector<AgentMounts::Wish> const& wishes, double seconds);

  [[nodiscard]] Vek::Dir const& dir() const noexcept { return mounts_.dir(); }
  [[nodiscard]] Vek::NboAttrLog::Mount& mount(std::string_view name) const { return mounts_.mount(name); }
  [[nodiscard]] std::string const& place() const noexcept { return mounts_.place(); }

  /// Throws NoAnswer where the connection is lost or time runs out before.
  void waitUntil(std::function<bool()> const& condition);
  /// Waits until the agent has applied all that was written to these roots, and all that it told of them until now has
  /// come. Throws NoAnswer: then neither is known.
  void settle(std::vector<std::string_view> const& roots);

 private:
  Vek::Link::PollLoop& loop_;
  AgentMounts mounts_;
  double const seconds_;
  double const end_;
};

}  // namespace Apps
