#include "apps/remote/AgentSession.h"

#include "apps/remote/NoAnswer.h"

#include <fmt/format.h>

namespace Apps {

using Vek::NboAttrLog::Barriers;

AgentSession::AgentSession(Vek::Link::PollLoop& loop, AgentMounts::Target const& target,
                           std::vector<AgentMounts::Wish> const& wishes, double seconds)
    : loop_{loop}, mounts_{loop, target, wishes}, seconds_{seconds}, end_{Vek::NboAttrLog::steadyClock()() + seconds} {
  waitUntil([this] {
    mounts_.needNoRefusal();
    return mounts_.isInStep();
  });
}

void AgentSession::waitUntil(std::function<bool()> const& condition) {
  auto const isOver = [&] {
    if (condition()) return true;
    mounts_.needConnection();
    return false;
  };
  if (loop_.runUntil(isOver, end_ - Vek::NboAttrLog::steadyClock()())) return;
  mounts_.giveUp(seconds_);
}

void AgentSession::settle(std::vector<std::string_view> const& roots) {
  struct Answers {
    std::size_t applied = 0;
    bool isUnknown = false;
  };
  auto const answers = std::make_shared<Answers>();  // they may come when nobody waits any more
  for (std::string_view root : roots) {
    mount(root).barrier([answers](Barriers::Outcome outcome) {
      outcome == Barriers::Outcome::applied ? void(++answers->applied) : void(answers->isUnknown = true);
    });
  }
  waitUntil([&] { return answers->isUnknown || answers->applied == roots.size(); });
  if (!answers->isUnknown) return;
  mounts_.needConnection();
  throw NoAnswer{fmt::format("The connection to the agent at {} was lost. Try again.", place())};
}

}  // namespace Apps
