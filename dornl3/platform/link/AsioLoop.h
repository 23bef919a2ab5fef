// AsioLoop: an asio::io_context as the loop of links. Needs standalone Asio, which the library itself does not.
// Owner: the program; the context outlives it. Thread: the one that runs the context.
#pragma once

#include "dornl3/platform/attrlog/Transport.h"
#include "dornl3/platform/link/Loop.h"

#include <asio/io_context.hpp>
#include <asio/posix/stream_descriptor.hpp>
#include <asio/steady_timer.hpp>

#include <algorithm>
#include <chrono>
#include <utility>

namespace Vek::Link {

class AsioLoop final : public Loop {
 public:
  explicit AsioLoop(asio::io_context& context) noexcept : context_(context) {}

  [[nodiscard]] std::unique_ptr<Watch> watch(int descriptor, std::function<void(Readiness)> call) override {
    return std::make_unique<AsioWatch>(context_, descriptor, std::move(call));
  }
  [[nodiscard]] std::unique_ptr<Timer> timer(std::function<void()> call) override {
    return std::make_unique<AsioTimer>(context_, std::move(call));
  }

 private:
  // What outlives the watch until Asio has called for the last time.
  struct Waiting : std::enable_shared_from_this<Waiting> {
    Waiting(asio::io_context& context, int number, std::function<void(Readiness)> toCall)
        : descriptor(context, number), call(std::make_shared<std::function<void(Readiness)>>(std::move(toCall))) {}

    void wait() {
      waitFor(asio::posix::stream_descriptor::wait_read, wish.toRead, isWaitingToRead, {.toRead = true});
      waitFor(asio::posix::stream_descriptor::wait_write, wish.toWrite, isWaitingToWrite, {.toWrite = true});
    }
    void waitFor(asio::posix::stream_descriptor::wait_type what, bool isWished, bool& isWaiting, Readiness ready) {
      if (!isWished || std::exchange(isWaiting, true)) return;
      descriptor.async_wait(what, [self = shared_from_this(), &isWaiting, ready](asio::error_code const& error) {
        isWaiting = false;
        auto const held = self->call;  // it may end the watch
        if (error || !held) return;
        bool const isStillWished = ready.toRead ? self->wish.toRead : self->wish.toWrite;
        try {
          if (isStillWished) (*held)(ready);
        } catch (...) {
          if (self->call) self->wait();
          throw;
        }
        if (self->call) self->wait();
      });
    }

    asio::posix::stream_descriptor descriptor;
    std::shared_ptr<std::function<void(Readiness)>> call;  // null when nobody watches any more
    Readiness wish;
    bool isWaitingToRead = false;
    bool isWaitingToWrite = false;
  };

  class AsioWatch final : public Watch {
   public:
    AsioWatch(asio::io_context& context, int number, std::function<void(Readiness)> call)
        : waiting_(std::make_shared<Waiting>(context, number, std::move(call))) {}
    ~AsioWatch() override {
      waiting_->call = nullptr;
      waiting_->descriptor.release();  // it was never ours
    }
    AsioWatch(AsioWatch const&) = delete;
    AsioWatch& operator=(AsioWatch const&) = delete;
    void wishIs(Readiness wish) override {
      waiting_->wish = wish;
      waiting_->wait();
    }

   private:
    std::shared_ptr<Waiting> waiting_;
  };

  class AsioTimer final : public Timer {
   public:
    AsioTimer(asio::io_context& context, std::function<void()> call)
        : timer_(context), due_(std::make_shared<Due>(std::move(call))) {}
    ~AsioTimer() override { ++due_->round; }
    AsioTimer(AsioTimer const&) = delete;
    AsioTimer& operator=(AsioTimer const&) = delete;
    void dueIs(double when) override {
      // A call that waits already is not taken back by the context.
      auto const round = ++due_->round;
      timer_.cancel();
      if (when == never) return;
      using Clock = asio::steady_timer::clock_type;
      std::chrono::duration<double> const since(std::min(when, longest));
      timer_.expires_at(Clock::time_point(std::chrono::duration_cast<Clock::duration>(since)));
      timer_.async_wait([due = due_, round](asio::error_code const& error) {
        if (!error && due->round == round) due->call();
      });
    }

   private:
    static constexpr double longest = 1e9;  // what a clock of the host can count to

    struct Due {
      explicit Due(std::function<void()> toCall) : call(std::move(toCall)) {}
      std::function<void()> call;
      U64 round = 0;
    };
    asio::steady_timer timer_;
    std::shared_ptr<Due> due_;
  };

  asio::io_context& context_;
};

}  // namespace Vek::Link
