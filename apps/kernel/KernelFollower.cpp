#include "apps/kernel/KernelFollower.h"

#include "apps/kernel/Datagram.h"
#include "apps/kernel/ForwardingMessage.h"
#include "apps/kernel/KernelError.h"

#include <linux/rtnetlink.h>

#include <algorithm>

namespace Apps::Kernel {

namespace {

constexpr int datagramsAtOnce = 4096;
constexpr int readingsWithoutRest = 3;

}  // namespace

KernelFollower::KernelFollower(MessageSource& questions, NotificationSource& notifications, Clock clock, Pace pace)
    : notifications_{notifications}, clock_{std::move(clock)}, pace_{pace}, questions_{questions} {
  read();
}

bool KernelFollower::advance() {
  bool changed = takeNews();
  if (due_ && Steady::now() >= *due_) {
    try {
      readAgain();
    } catch (KernelError const&) {
      if (failures_ == pace_.failuresInARow) throw;
    }
    changed = true;
  }
  return changed && isSettled();
}

void KernelFollower::refresh() {
  takeNews();
  readAgain();
}

bool KernelFollower::takeNews() {
  bool changed = false;
  Bytes datagram;
  int left = datagramsAtOnce;
  for (; left > 0; --left) {
    NotificationSource::News const news = notifications_.receive(datagram);
    if (news == NotificationSource::News::none) break;
    if (news == NotificationSource::News::overrun) {
      needReading();
      continue;
    }
    auto const each = [&](nlmsghdr const& header, Bytes body) {
      changed = take(header, body) || changed;
      return true;
    };
    if (forEachMessage(datagram, each) == Walked::broken) needReading();  // what it said is lost
  }
  hasMore_ = left == 0;
  return changed;
}

bool KernelFollower::isSettled() const noexcept { return failures_ == 0 && (!due_ || unasked_ >= readingsWithoutRest); }

// What a busy kernel could not tell now it may tell soon; what is known until then is not whole.
void KernelFollower::readAgain() {
  try {
    if (failures_ != 0) questions_.reopen();
    read();
    failures_ = 0;
    failure_.clear();
  } catch (KernelError const& error) {
    ++failures_;
    failure_ = error.what();
    due_ = Steady::now() + 10 * pace_.settling;
    throw;
  }
}

std::optional<std::chrono::milliseconds> KernelFollower::patience() const {
  using std::chrono::milliseconds;
  if (hasMore_) return milliseconds{0};
  if (!due_) return std::nullopt;
  return std::max(milliseconds{0}, std::chrono::ceil<milliseconds>(*due_ - Steady::now()));
}

KernelFigures KernelFollower::figures() {
  KernelFigures figures = surroundings_.sumUp(routeFigures_);
  routes_.tidy();
  RouteTable::Done const& done = routes_.done();
  figures.commands = {processed_, done.added, done.deleted, done.overwritten, failed_};
  figures.times = times_;
  figures.interrupted = interrupted_;
  unasked_ = 0;
  return figures;
}

void KernelFollower::needReading() {
  if (!due_) due_ = std::max(Steady::now() + pace_.settling, rested_);
}

void KernelFollower::read() {
  Steady::time_point const start = Steady::now();
  due_.reset();
  Surroundings::Interrupted interrupted;
  surroundings_.read(dumper_, interrupted);
  readRoutes(interrupted);
  interrupted_ = std::move(interrupted);
  Steady::time_point const end = Steady::now();
  rested_ = end + (end - start) * pace_.restFactor;
  ++unasked_;
  if (interrupted_.empty()) return;
  unasked_ = readingsWithoutRest;
  needReading();
}

void KernelFollower::readRoutes(Surroundings::Interrupted& interrupted) {
  auto const start = [this] {
    if (wasRead_) return routes_.beginReading();
    routes_.clear();
    processed_ = failed_ = 0;
  };
  Outcome const outcome = dumper_.read(Table::routes, start, [this](Bytes body) {
    bool const isRead = readRoute(body, route_);
    if (isRead && route_.family == Family::other) return;
    if (!wasRead_) ++processed_;
    if (!wasRead_ && !isRead) ++failed_;
    if (isRead && route_.forwardsOrDiscards()) note(route_, routes_.read(route_));
  });
  if (outcome == Outcome::interrupted) interrupted.push_back(tableName(Table::routes));
  routes_.endReading([this](RouteUse const& gone) { noteTime(gone.family, gone.prefixLength); });
  wasRead_ = true;
}

bool KernelFollower::take(nlmsghdr const& header, Bytes body) {
  if (header.nlmsg_type == RTM_NEWROUTE || header.nlmsg_type == RTM_DELROUTE) {
    takeRoute(header, body);
    return true;
  }
  if (header.nlmsg_type == RTM_NEWNETCONF) return takeForwarding(body);
  Surroundings::Taken const taken = surroundings_.take(header.nlmsg_type, body);
  if (taken == Surroundings::Taken::takenAndMore) needReading();
  return taken != Surroundings::Taken::foreign;
}

void KernelFollower::takeRoute(nlmsghdr const& header, Bytes body) {
  bool const isRead = readRoute(body, route_);
  if (isRead && route_.family == Family::other) return;
  ++processed_;
  if (!isRead) {
    ++failed_;
    needReading();
    return;
  }
  bool const isNew = header.nlmsg_type == RTM_NEWROUTE;
  if (!route_.forwardsOrDiscards()) {
    // One that counts may have given way to it.
    bool const mayTakePlace = isNew && (header.nlmsg_flags & (NLM_F_REPLACE | NLM_F_CREATE)) != NLM_F_CREATE;
    if (mayTakePlace && routes_.holdsKeyOf(route_)) needReading();
  } else {
    note(route_, isNew ? routes_.put(route_, header.nlmsg_flags) : routes_.remove(route_));
  }
}

bool KernelFollower::takeForwarding(Bytes body) {
  std::optional<ForwardingSwitch> const forwarding = readForwarding(body);
  if (!forwarding) return false;
  ChangeTimes::OfFamily& times = forwarding->family == Family::ipv4 ? times_.ipv4 : times_.ipv6;
  (forwarding->isOn ? times.forwardingOn : times.forwardingOff) = clock_();
  return true;
}

void KernelFollower::note(Route const& route, RouteChange change) {
  if (change == RouteChange::none) return;
  if (change == RouteChange::unclear) return needReading();
  noteTime(route.family, route.prefixLength);
}

void KernelFollower::noteTime(Family family, std::uint8_t prefixLength) {
  if (!wasRead_ || addressBits(family) == 0) return;
  ChangeTimes::OfFamily& times = family == Family::ipv4 ? times_.ipv4 : times_.ipv6;
  times.route = clock_();
  if (prefixLength == 0) times.defaultRoute = times.route;
}

}  // namespace Apps::Kernel
