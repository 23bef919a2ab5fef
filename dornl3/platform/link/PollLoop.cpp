#include "dornl3/platform/link/PollLoop.h"

#include "dornl3/platform/attrlog/Transport.h"

#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <system_error>
#include <vector>

namespace Vek::Link {

namespace {

constexpr double longestWait = 3600;  // seconds; then it looks again

}  // namespace

struct PollLoop::Wish {
  int descriptor;
  std::function<void(Readiness)> call;
  Readiness wish;
  bool isOver = false;
};

struct PollLoop::Due {
  std::function<void()> call;
  double when = Timer::never;
  bool isOver = false;
};

class PollLoop::PollWatch final : public Watch {
 public:
  explicit PollWatch(std::shared_ptr<Wish> wish) noexcept : wish_(std::move(wish)) {}
  PollWatch(PollWatch const&) = delete;
  PollWatch& operator=(PollWatch const&) = delete;
  ~PollWatch() override { wish_->isOver = true; }
  void wishIs(Readiness wish) override { wish_->wish = wish; }

 private:
  std::shared_ptr<Wish> wish_;
};

class PollLoop::PollTimer final : public Timer {
 public:
  explicit PollTimer(std::shared_ptr<Due> due) noexcept : due_(std::move(due)) {}
  PollTimer(PollTimer const&) = delete;
  PollTimer& operator=(PollTimer const&) = delete;
  ~PollTimer() override { due_->isOver = true; }
  void dueIs(double when) override { due_->when = when; }

 private:
  std::shared_ptr<Due> due_;
};

PollLoop::PollLoop() = default;
PollLoop::~PollLoop() = default;

std::unique_ptr<Watch> PollLoop::watch(int descriptor, std::function<void(Readiness)> call) {
  wishes_.push_back(std::make_shared<Wish>(Wish{descriptor, std::move(call), {}}));
  return std::make_unique<PollWatch>(wishes_.back());
}

std::unique_ptr<Timer> PollLoop::timer(std::function<void()> call) {
  dues_.push_back(std::make_shared<Due>(Due{std::move(call)}));
  return std::make_unique<PollTimer>(dues_.back());
}

void PollLoop::run() {
  isStopped_ = false;
  while (!isStopped_) runOnce(longestWait);
}

bool PollLoop::runUntil(std::function<bool()> const& condition, double seconds) {
  NboAttrLog::Clock const clock = NboAttrLog::steadyClock();
  double const end = clock() + seconds;
  isStopped_ = false;
  while (!condition()) {
    double const left = end - clock();
    if (left <= 0 || isStopped_) return condition();
    runOnce(left);
  }
  return true;
}

bool PollLoop::runOnce(double seconds) {
  NboAttrLog::Clock const clock = NboAttrLog::steadyClock();
  std::erase_if(wishes_, [](auto const& wish) { return wish->isOver; });
  std::erase_if(dues_, [](auto const& due) { return due->isOver; });
  double wait = std::min(seconds, longestWait);
  double const before = clock();
  for (auto const& due : dues_) wait = std::min(wait, due->when - before);
  std::vector<pollfd> polled;
  std::vector<std::shared_ptr<Wish>> asked;
  for (auto const& wish : wishes_) {
    if (!wish->wish.toRead && !wish->wish.toWrite) continue;
    auto const events = (wish->wish.toRead ? POLLIN : 0) | (wish->wish.toWrite ? POLLOUT : 0);
    polled.push_back({wish->descriptor, static_cast<short>(events), 0});
    asked.push_back(wish);
  }
  int const milliseconds = static_cast<int>(std::ceil(std::max(wait, 0.0) * 1000));
  int const count = ::poll(polled.data(), polled.size(), milliseconds);
  if (count < 0 && errno != EINTR)
    throw std::system_error(errno, std::generic_category(), "descriptors cannot be waited for");
  bool hasCalled = false;
  for (std::size_t i = 0; count > 0 && i < asked.size(); ++i) {
    int const events = polled[i].revents;
    Wish& wish = *asked[i];
    // An error is told to whoever wishes for anything.
    bool const isBroken = (events & (POLLERR | POLLHUP | POLLNVAL)) != 0;
    Readiness const ready{.toRead = wish.wish.toRead && (isBroken || (events & POLLIN) != 0),
                          .toWrite = wish.wish.toWrite && (isBroken || (events & POLLOUT) != 0)};
    if (wish.isOver || !(ready.toRead || ready.toWrite)) continue;
    wish.call(ready);
    hasCalled = true;
  }
  double const now = clock();
  for (auto const& due : std::vector<std::shared_ptr<Due>>(dues_.begin(), dues_.end())) {
    if (due->isOver || due->when > now) continue;
    due->when = Timer::never;
    due->call();
    hasCalled = true;
  }
  return hasCalled;
}

}  // namespace Vek::Link
