// Target: whose entities a command works on: those of an agent, or this host's own.
#pragma once

#include "apps/remote/AgentMounts.h"
#include "apps/show/Roots.h"

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace Apps {

struct Target {
  bool isLocal = false;
  std::string agent;    // an address
  double timeout = 10;  // seconds for all that the agent has to say
  bool waits = false;   // also for an agent that does not listen yet

  /// Adds the options for that to a command. `local`: what --local is for; null where there is no such thing.
  void addTo(CLI::App& command, char const* local);
  /// The agent, for a command of that name. Throws AddressError.
  [[nodiscard]] AgentMounts::Target mounts(std::string const& command) const;
};

/// Whether a command writes what it mounts.
enum class Use { reads, changes };

/// The roots that paths begin with, or all without one. Throws Misfit where a path does not fit the types.
[[nodiscard]] std::vector<AgentMounts::Wish> wishesFor(std::vector<std::string> const& paths, Use use);

/// What is filled of the entities of an agent: by itself, and by those who ask it and configure it.
[[nodiscard]] std::vector<std::string> pathsFilledByAgent();

}  // namespace Apps
