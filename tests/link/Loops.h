// The loops that links are tested on, with one face.
#pragma once

#include "dornl3/platform/link/AsioLoop.h"
#include "dornl3/platform/link/PollLoop.h"

namespace LinkTest {

/// The library's own.
class OnPoll {
 public:
  [[nodiscard]] Vek::Link::Loop& loop() noexcept { return loop_; }
  bool runUntil(std::function<bool()> const& condition, double seconds = 20) {
    return loop_.runUntil(condition, seconds);
  }

 private:
  Vek::Link::PollLoop loop_;
};

/// That on Asio.
class OnAsio {
 public:
  [[nodiscard]] Vek::Link::Loop& loop() noexcept { return loop_; }
  bool runUntil(std::function<bool()> const& condition, double seconds = 20) {
    auto const clock = Vek::NboAttrLog::steadyClock();
    double const end = clock() + seconds;
    while (!condition()) {
      if (clock() >= end) return false;
      context_.restart();
      context_.run_one_for(std::chrono::milliseconds(50));
    }
    return true;
  }

 private:
  asio::io_context context_;
  Vek::Link::AsioLoop loop_{context_};
};

}  // namespace LinkTest
