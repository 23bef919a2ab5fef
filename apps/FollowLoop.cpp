#include "apps/FollowLoop.h"

#include <asio.hpp>
#include <sys/epoll.h>
#include <unistd.h>

#include <csignal>

namespace Apps {

namespace {

using Descriptor = asio::posix::stream_descriptor;
using Clock = std::chrono::steady_clock;

// A descriptor of the loop's own that becomes readable when `number` is, or meets an error: waiting for it leaves
// `number` itself alone, which others share and write to. False where there is nothing to wait for: a file is always
// ready.
bool takeStandIn(Descriptor& descriptor, int number, std::uint32_t events) {
  int const standIn = epoll_create1(EPOLL_CLOEXEC);
  if (standIn < 0) return false;
  descriptor.assign(standIn);
  epoll_event event{};
  event.events = events;  // errors and hang-ups are told anyway
  return epoll_ctl(standIn, EPOLL_CTL_ADD, number, &event) == 0;
}

}  // namespace

class FollowLoop::Waits {
 public:
  Waits(int descriptor, Work work) : work_{std::move(work)} {
    if (!takeStandIn(news_, descriptor, EPOLLIN)) {
      throw std::system_error{errno, std::generic_category(), "The kernel's news cannot be waited for"};
    }
    auto const stopUnlessCancelled = [this](asio::error_code const& error, auto...) {
      if (!error) context_.stop();
    };
    signals_.async_wait(stopUnlessCancelled);
    if (takeStandIn(reader_, STDOUT_FILENO, 0)) reader_.async_wait(Descriptor::wait_read, stopUnlessCancelled);
    waitForNews();
    waitForTime();
  }

  void run() { context_.run(); }
  void stop() noexcept { context_.stop(); }

 private:
  void waitForNews() {
    news_.async_wait(Descriptor::wait_read, [this](asio::error_code const& error) {
      if (error) return;
      take();
      waitForNews();
    });
  }

  void waitForTime() {
    std::optional<Milliseconds> const patience = work_.patience();
    if (!patience) return static_cast<void>(due_.cancel());
    due_.expires_after(*patience);
    due_.async_wait([this](asio::error_code const& error) {
      if (!error) take();
    });
  }

  void take() {
    if (work_.take()) publishSoon();
    waitForTime();
  }

  void publishSoon() {
    if (std::exchange(isToPublish_, true)) return;
    rested_.async_wait([this](asio::error_code const& error) {
      if (error) return;
      isToPublish_ = false;
      Clock::time_point const start = Clock::now();
      work_.publish();
      rested_.expires_after(std::max<Clock::duration>(rest, Clock::now() - start));
    });
  }

  Work work_;
  asio::io_context context_{1};
  Descriptor news_{context_};
  Descriptor reader_{context_};
  asio::signal_set signals_{context_, SIGINT, SIGTERM};
  asio::steady_timer due_{context_};
  asio::steady_timer rested_{context_, Clock::now()};
  bool isToPublish_ = false;
};

FollowLoop::FollowLoop(int descriptor, Work work) : waits_{std::make_unique<Waits>(descriptor, std::move(work))} {}
FollowLoop::~FollowLoop() = default;

void FollowLoop::run() { waits_->run(); }
void FollowLoop::stop() noexcept { waits_->stop(); }

}  // namespace Apps
