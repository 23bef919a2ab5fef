#include "apps/remote/AgentMounts.h"

#include "apps/remote/NoAnswer.h"
#include "apps/show/WallClock.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <stdexcept>

namespace Apps {

using Vek::Link::Client;
using Vek::NboAttrLog::Mount;

namespace {

constexpr double restOfTheEager = 0.1;  // seconds: an agent that is just being started soon listens

Client::Settings settingsFor(AgentMounts::Target const& target) {
  Client::Settings settings;
  settings.connection.name = target.self;
  settings.longestRest = target.longestRest;
  if (target.isWaitedFor) settings.firstRest = restOfTheEager;
  return settings;
}

}  // namespace

AgentMounts::AgentMounts(Vek::Link::Loop& loop, Target const& target, std::vector<Wish> const& wishes)
    : isWaitedFor_{target.isWaitedFor}, client_{loop, target.address, settingsFor(target)} {
  client_.whenChangedIs([this] { changed(); });
  for (Wish const& wish : wishes) {
    mounts_.push_back(Vek::make<Mount>(wish.name, *wish.type, wish.access, dir_));
    mounts_.back()->whenChangedIs([this](Mount&) { changed(); });
    client_.mountIs(mounts_.back());
  }
}

void AgentMounts::changed() {
  wasConnected_ = wasConnected_ || client_.state() == Client::State::connected;
  if (whenChanged_) whenChanged_();
}

Mount& AgentMounts::mount(std::string_view name) const {
  auto const at =
      std::find_if(mounts_.begin(), mounts_.end(), [name](auto const& mount) { return mount->name().view() == name; });
  if (at == mounts_.end()) throw std::logic_error{fmt::format("{} was not mounted", name)};
  return **at;
}

bool AgentMounts::isInStep() const noexcept {
  return std::all_of(mounts_.begin(), mounts_.end(),
                     [](auto const& mount) { return mount->state() == Vek::Dir::inStep; });
}

double AgentMounts::lastWord() const {
  double last = 0;
  for (auto const& mount : mounts_) last = std::max(last, mount->lastWord());
  return Show::secondsSince1970() - (Vek::NboAttrLog::steadyClock()() - last);
}

void AgentMounts::needNoRefusal() const {
  for (auto const& mount : mounts_) {
    if (mount->refusal().empty()) continue;
    throw Refused{fmt::format("The agent at {} does not give {}: {}. 'dornl3 agent --help' tells what may be written.",
                              place(), mount->name().view(), mount->refusal().view())};
  }
}

void AgentMounts::needConnection() const {
  if (client_.state() != Client::State::resting || client_.attempts() == 0) return;
  std::string const& why = client_.trouble();
  if (wasConnected_) {
    throw NoAnswer{fmt::format("The connection to the agent at {} was lost: {}. Try again.", place(), why)};
  }
  switch (client_.error()) {
  case EAGAIN: return;  // it has many to let in
  case ENOENT:
  case ECONNREFUSED:
    if (isWaitedFor_) return;
    throw NoAnswer{fmt::format("No agent listens at {}. Start one with 'dornl3 agent', wait for one with --wait, name "
                               "another with --agent, or read this host's kernel with --local.",
                               place())};
  case EACCES:
  case EPERM:
    throw NoAnswer{fmt::format("The agent at {} may not be reached: {}. Whoever started it grants access by --mode and "
                               "the socket's group.",
                               place(), why)};
  case 0:
    throw NoAnswer{fmt::format("What listens at {} has ended the connection: {}. Look whether it is an agent of this "
                               "release, and try again.",
                               place(), why)};
  default:
    throw NoAnswer{
        fmt::format("The agent at {} cannot be reached: {}. Check the address and the way there.", place(), why)};
  }
}

void AgentMounts::giveUp(double seconds) {
  isWaitedFor_ = false;
  needConnection();
  throw timedOut(place(), seconds);
}

}  // namespace Apps
