#include "apps/remote/Target.h"

#include "apps/agent/RunAgent.h"
#include "apps/attributes/TypedPath.h"
#include "apps/show/StatusFiller.h"

#include <algorithm>

namespace Apps {

using Vek::NboAttrLog::Access;

void Target::addTo(CLI::App& command, char const* local) {
  CLI::Option* const here = local == nullptr ? nullptr : command.add_flag("--local", isLocal, local);
  agent = defaultAgentAddress();
  CLI::Option* const there =
      command.add_option("--agent", agent, "Where the agent listens: unix:PATH or tcp:HOST:PORT")->type_name("ADDRESS");
  CLI::Option* const patience =
      command.add_option("--timeout", timeout, "How long to wait for it, 10 seconds if not given")
          ->type_name("SECONDS")
          ->check(CLI::PositiveNumber);
  CLI::Option* const start = command.add_flag("--wait", waits, "Wait also for an agent that does not listen yet");
  if (here == nullptr) return;
  there->excludes(here);
  patience->excludes(here);
  start->excludes(here);
}

AgentMounts::Target Target::mounts(std::string const& command) const {
  AgentMounts::Target target{Vek::Link::Address::parse(agent), Vek::Name{"dornl3 " + command}};
  target.isWaitedFor = waits;
  return target;
}

std::vector<AgentMounts::Wish> wishesFor(std::vector<std::string> const& paths, Use use) {
  Access const access = use == Use::changes ? Access::writable : Access::readOnly;
  Vek::Ptr<Vek::Dir> const known = Vek::make<Vek::Dir>();
  std::vector<AgentMounts::Wish> all;
  Show::Roots const roots;
  roots.forEach([&](Vek::Ptr<Vek::Entity> const& root) {
    known->entryIs(root);
    all.push_back({root->name(), root->fwkType(), access});
  });
  if (paths.empty()) return all;
  std::vector<Vek::Name> wanted;
  wanted.reserve(paths.size());
  for (std::string const& path : paths) wanted.push_back(Attributes::readPath(*known, path).root->name());
  std::erase_if(all, [&wanted](AgentMounts::Wish const& wish) {
    return std::find(wanted.begin(), wanted.end(), wish.name) == wanted.end();
  });
  return all;
}

std::vector<std::string> pathsFilledByAgent() {
  std::vector<std::string> paths = Show::filledPaths(Show::Reading::following);
  Show::Roots{}.forEachExport([&paths](Vek::Ptr<Vek::Entity> const& root, Access access) {
    if (access == Access::writable) paths.emplace_back(root->name().view());
  });
  return paths;
}

}  // namespace Apps
