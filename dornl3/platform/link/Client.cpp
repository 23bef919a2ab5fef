#include "dornl3/platform/link/Client.h"

#include "dornl3/core/Throwers.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

namespace Vek::Link {

namespace {

constexpr double patience = 10;  // seconds for a connection to come about

}  // namespace

Client::Client(Loop& loop, Address address, Settings settings)
    : loop_(loop),
      address_(std::move(address)),
      settings_(std::move(settings)),
      timer_(loop.timer([this] { tryAgain(); })) {
  timer_->dueIs(0);
}

// What the end of the connection sets off finds none.
Client::~Client() { auto const link = std::exchange(link_, nullptr); }

void Client::mountIs(Ptr<NboAttrLog::Mount> const& mount) {
  if (std::any_of(mounts_.begin(), mounts_.end(),
                  [&mount](auto const& other) { return other->name() == mount->name(); })) {
    throwInternalException(format("%s is mounted already", mount->name().charPtr()));
  }
  mounts_.push_back(mount);
  if (link_) link_->connection().mounts().mountIs(mount);
}

void Client::mountDel(NboAttrLog::Mount& mount) {
  Ptr<NboAttrLog::Mount> const held(&mount);
  std::erase(mounts_, &mount);
  if (link_) link_->connection().mounts().mountDel(mount);
}

// The timer's call: to try, or to give up what does not come about.
void Client::tryAgain() {
  if (state_ == State::connecting) return rest("nothing answers", ETIMEDOUT);
  try {
    socket_ = Socket::of(address_);
    bool const isConnected = socket_.connect(address_);
    timer_->dueIs(NboAttrLog::steadyClock()() + patience);
    if (isConnected) {
      connected();
    } else {
      watch_ = loop_.watch(socket_.descriptor(), [this](Readiness) { connected(); });
      watch_->wishIs({.toWrite = true});
    }
    stateIs(State::connecting);
  } catch (std::system_error const& error) {
    rest(error.code().message(), error.code().value());
  }
}

void Client::connected() {
  watch_ = nullptr;
  if (int const error = socket_.takeError(); error != 0) return rest(std::generic_category().message(error), error);
  link_ = std::make_unique<PeerLink>(loop_, std::move(socket_), settings_.connection, [this] { ended(); });
  link_->connection().whenOpenIs([this] {
    openedAt_ = NboAttrLog::steadyClock()();
    trouble_.clear();
    error_ = 0;
    stateIs(State::connected);
  });
  timer_->dueIs(Timer::never);
  for (auto const& mount : mounts_) link_->connection().mounts().mountIs(mount);
}

void Client::ended() {
  String8 const reason = link_->connection().closeReason();
  link_ = nullptr;
  // One that is let in and turned away at once is to come less and less often too.
  double const now = NboAttrLog::steadyClock()();
  if (std::exchange(openedAt_, Timer::never) + settings_.firstRest < now) attempts_ = 0;
  rest(reason.charPtr(), 0);
}

void Client::rest(std::string trouble, int error) {
  watch_ = nullptr;
  socket_ = {};
  double const rest =
      std::min(settings_.firstRest * static_cast<double>(U64{1} << std::min(attempts_, 16U)), settings_.longestRest);
  double const chance = static_cast<double>(settings_.random()) / std::numeric_limits<U32>::max();
  ++attempts_;
  trouble_ = std::move(trouble);
  error_ = error;
  timer_->dueIs(NboAttrLog::steadyClock()() + rest * (1 + chance / 2));
  state_ = State::resting;
  if (whenChanged_) whenChanged_();
}

void Client::stateIs(State state) {
  if (state == state_) return;
  state_ = state;
  if (whenChanged_) whenChanged_();
}

}  // namespace Vek::Link
