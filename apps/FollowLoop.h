// FollowLoop: the loop of a command that follows this host: it sleeps until there is something to do.
// Owner: the command. Thread: one.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace Apps {

class FollowLoop {
 public:
  using Milliseconds = std::chrono::milliseconds;

  struct Work {
    std::function<bool()> take;  // takes what has come; true if there is something to publish
    std::function<std::optional<Milliseconds>()> patience;  // when to take again if nothing comes; nothing: never
    std::function<void()> publish;
  };

  /// From the first of what has come to its publication, so that a burst is told as one, and what belongs together is
  /// told together. Publishing takes at most half of the time.
  static constexpr Milliseconds rest{50};

  /// `descriptor` becomes readable when there is something to take; the loop does not own it. Throws std::system_error.
  FollowLoop(int descriptor, Work work);
  FollowLoop(FollowLoop const&) = delete;
  FollowLoop& operator=(FollowLoop const&) = delete;
  ~FollowLoop();

  /// Runs until stop(), an interrupt or termination signal, or until nobody reads standard output any more. While the
  /// loop stands, these signals end nothing but it. Throws what the work throws.
  void run();
  /// Becomes readable when such a signal has come: for the work, where it waits for somebody.
  [[nodiscard]] int stopDescriptor() const noexcept;
  /// For the work: it was the last.
  void stop() noexcept;

 private:
  class Waits;
  std::unique_ptr<Waits> waits_;
};

}  // namespace Apps
