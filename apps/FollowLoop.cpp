#include "apps/FollowLoop.h"

#include <asio.hpp>
#include <unistd.h>

#include <csignal>

namespace Apps {

namespace {

using Descriptor = asio::posix::stream_descriptor;
using Clock = std::chrono::steady_clock;

// Takes part in the loop with a descriptor that stays its owner's.
class Borrowed {
 public:
  explicit Borrowed(asio::io_context& context) : descriptor_{context} {}
  Borrowed(Borrowed const&) = delete;
  Borrowed& operator=(Borrowed const&) = delete;
  ~Borrowed() {
    if (descriptor_.is_open()) static_cast<void>(descriptor_.release());
  }

  // False where there is nothing to wait for: a file is always ready.
  [[nodiscard]] bool take(int number) {
    asio::error_code error;
    descriptor_.assign(number, error);
    return !error;
  }
  Descriptor& operator*() noexcept { return descriptor_; }

 private:
  Descriptor descriptor_;
};

}  // namespace

class FollowLoop::Waits {
 public:
  Waits(int descriptor, Work work) : work_{std::move(work)} {
    if (!news_.take(descriptor)) throw std::system_error{errno, std::generic_category(), "The kernel's news"};
    auto const stopUnlessCancelled = [this](asio::error_code const& error, auto...) {
      if (!error) context_.stop();
    };
    signals_.async_wait(stopUnlessCancelled);
    if (reader_.take(STDOUT_FILENO)) (*reader_).async_wait(Descriptor::wait_error, stopUnlessCancelled);
    waitForNews();
    waitForTime();
  }

  void run() { context_.run(); }
  void stop() noexcept { context_.stop(); }

 private:
  void waitForNews() {
    (*news_).async_wait(Descriptor::wait_read, [this](asio::error_code const& error) {
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
  Borrowed news_{context_};
  Borrowed reader_{context_};
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
