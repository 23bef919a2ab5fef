#include "apps/CommandLoop.h"

#include "dornl3/platform/link/AsioLoop.h"

#include <asio.hpp>
#include <sys/epoll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>

namespace Apps {

namespace {

using Descriptor = asio::posix::stream_descriptor;

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

// Has interrupt and termination signals wait in a descriptor instead of ending the process.
class StopSignals {
 public:
  StopSignals() {
    sigemptyset(&signals_);
    sigaddset(&signals_, SIGINT);
    sigaddset(&signals_, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals_, &before_);
    descriptor_ = signalfd(-1, &signals_, SFD_CLOEXEC | SFD_NONBLOCK);
    if (descriptor_ >= 0) return;
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    throw std::system_error{errno, std::generic_category(), "Signals cannot be waited for"};
  }
  StopSignals(StopSignals const&) = delete;
  StopSignals& operator=(StopSignals const&) = delete;
  ~StopSignals() {
    // One that waits on would end the process now, and one may come twice, to the process and to its group: who has
    // been asked to end does so as its command says.
    signalfd_siginfo heard{};
    bool const isHeard = read(descriptor_, &heard, sizeof heard) > 0;
    close(descriptor_);
    if (!isHeard) pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  }

  [[nodiscard]] int descriptor() const noexcept { return descriptor_; }

 private:
  sigset_t signals_{};
  sigset_t before_{};
  int descriptor_ = -1;
};

}  // namespace

class CommandLoop::Waits {
 public:
  explicit Waits(Output output) {
    auto const stopUnlessCancelled = [this](asio::error_code const& error) {
      if (!error) context_.stop();
    };
    if (!takeStandIn(signals_, stopSignals_.descriptor(), EPOLLIN)) {
      throw std::system_error{errno, std::generic_category(), "Signals cannot be waited for"};
    }
    signals_.async_wait(Descriptor::wait_read, stopUnlessCancelled);
    if (output == Output::isRead && takeStandIn(reader_, STDOUT_FILENO, 0)) {
      reader_.async_wait(Descriptor::wait_read, stopUnlessCancelled);
    }
  }

  [[nodiscard]] Vek::Link::Loop& loop() noexcept { return loop_; }
  void run() { context_.run(); }
  void stop() noexcept { context_.stop(); }
  [[nodiscard]] int stopDescriptor() const noexcept { return stopSignals_.descriptor(); }

 private:
  StopSignals stopSignals_;
  asio::io_context context_{1};
  Vek::Link::AsioLoop loop_{context_};
  Descriptor reader_{context_};
  Descriptor signals_{context_};
};

CommandLoop::CommandLoop(Output output) : waits_{std::make_unique<Waits>(output)} {}
CommandLoop::~CommandLoop() = default;

Vek::Link::Loop& CommandLoop::loop() noexcept { return waits_->loop(); }
void CommandLoop::run() { waits_->run(); }
void CommandLoop::stop() noexcept { waits_->stop(); }
int CommandLoop::stopDescriptor() const noexcept { return waits_->stopDescriptor(); }

}  // namespace Apps
