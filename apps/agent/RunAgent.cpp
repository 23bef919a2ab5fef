#include "apps/agent/RunAgent.h"

#include "apps/CommandLoop.h"
#include "apps/kernel/NetlinkSocket.h"
#include "apps/kernel/NotificationSocket.h"

#include <fmt/format.h>

#include <charconv>
#include <cstdlib>

namespace Apps {

namespace {

// The value of a variable that is set and not empty.
std::optional<std::string> variable(char const* name) {
  char const* const value = std::getenv(name);
  return value == nullptr || *value == '\0' ? std::nullopt : std::optional<std::string>{value};
}

}  // namespace

std::string defaultAgentAddress() {
  if (auto const address = variable("DORNL3_AGENT")) return *address;
  return fmt::format("unix:{}/dornl3.sock", variable("XDG_RUNTIME_DIR").value_or("/run"));
}

std::optional<mode_t> modeOf(std::string const& text) {
  constexpr mode_t most = 0777;
  mode_t mode = 0;
  auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), mode, 8);
  bool const fits = error == std::errc{} && end == text.data() + text.size() && mode <= most;
  return fits ? std::optional{mode} : std::nullopt;
}

void runAgent(AgentOptions const& options, Agent::Say const& say) {
  Vek::Link::Address const address = Vek::Link::Address::parse(options.listen);
  CommandLoop loop{CommandLoop::Output::doesNotMatter};
  Kernel::NotificationSocket notifications;
  Kernel::NetlinkSocket kernel;
  Agent const agent{
      loop.loop(), kernel, notifications, notifications.descriptor(), {address, options.mode, options.isVerbose}, say};
  say(fmt::format("The agent listens at {}.", agent.place()));
  loop.run();
}

}  // namespace Apps
