// dornl3 watch: the entities of an agent, followed until the reader has enough, also past the agent's end.
#pragma once

#include "apps/ChangePrinter.h"
#include "apps/Pace.h"
#include "apps/attributes/Watch.h"
#include "apps/remote/Target.h"

#include <functional>

namespace Apps {

class AgentWatch {
 public:
  using Notify = std::function<void(std::string const&)>;

  /// Mounts what the paths name, and follows it from then on: prints what is there, and what changes. While the agent
  /// is away, says that it is, and when what is shown is current again; what changed meanwhile is told once. `done` is
  /// called when the reader has enough. Throws Misfit, AddressError.
  AgentWatch(Vek::Link::Loop& loop, Target const& target, WatchOptions const& options, ChangePrinter& printer,
             Notify notify, std::function<void()> done);
  AgentWatch(AgentWatch const&) = delete;
  AgentWatch& operator=(AgentWatch const&) = delete;

 private:
  void look();
  void begin();
  void tellStale();
  void tellCurrent();
  void tellState(std::string const& line, std::string const& sentence);

  WatchOptions const& options_;
  ChangePrinter& printer_;
  Notify const notify_;
  std::function<void()> const done_;
  double const timeout_;
  Attributes::Filled const filled_;
  Pace pace_;
  AgentMounts mounts_;
  std::unique_ptr<Vek::Link::Timer> const timer_;
  std::optional<Attributes::Watch> watch_;  // once it was in step
  bool isStale_ = false;
};

/// Runs one until the changes are told, a signal comes, or nobody reads any more. Throws also NoAnswer where there was
/// no agent at the start, Refused, and std::system_error.
[[nodiscard]] Written watchAgent(Target const& target, WatchOptions const& options, AgentWatch::Notify const& notify);

}  // namespace Apps
