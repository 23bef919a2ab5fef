// PollLoop: a loop on poll(2), for a program that has none. Owner: the program. Thread: one.
#pragma once

#include "dornl3/platform/link/Loop.h"

#include <list>

namespace Vek::Link {

class PollLoop final : public Loop {
 public:
  PollLoop();
  ~PollLoop() override;

  [[nodiscard]] std::unique_ptr<Watch> watch(int descriptor, std::function<void(Readiness)> call) override;
  [[nodiscard]] std::unique_ptr<Timer> timer(std::function<void()> call) override;

  /// Calls what is ready or due until stop(). Throws what a call throws, and std::system_error.
  void run();
  /// Ends run(), from inside a call.
  void stop() noexcept { isStopped_ = true; }
  /// The same until `condition` holds, which is looked at after each round; at most so many seconds. Whether it holds.
  bool runUntil(std::function<bool()> const& condition, double seconds);
  /// One round: waits for something to be ready or due, at most so many seconds, and calls for it. Whether it did.
  bool runOnce(double seconds);

 private:
  class PollWatch;
  class PollTimer;
  struct Wish;
  struct Due;

  std::list<std::shared_ptr<Wish>> wishes_;
  std::list<std::shared_ptr<Due>> dues_;
  bool isStopped_ = false;
};

}  // namespace Vek::Link
