// The command 'dornl3 agent': follows this host's kernel, and serves what it knows until it is told to end.
#pragma once

#include "apps/agent/Agent.h"

#include <optional>
#include <string>

namespace Apps {

struct AgentOptions {
  std::string listen;  // an address
  mode_t mode = 0660;
  bool isVerbose = false;
};

/// Where an agent listens, and where it is looked for, if nothing else is said: DORNL3_AGENT, or a socket under
/// XDG_RUNTIME_DIR, or one under /run.
[[nodiscard]] std::string defaultAgentAddress();

/// The mode that a text of octal digits stands for; nothing for any other text.
[[nodiscard]] std::optional<mode_t> modeOf(std::string const& text);

/// Runs until an interrupt or termination signal. Throws KernelError, AddressError and std::system_error.
void runAgent(AgentOptions const& options, Agent::Say const& say);

}  // namespace Apps
