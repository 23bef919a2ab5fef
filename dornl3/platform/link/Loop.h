// Loop: what a link needs of the loop that drives it: to be called when a descriptor is ready, and when time has come.
// PollLoop is one of its own, AsioLoop.h binds an asio::io_context; for another loop these few operations are written
// once. Owner: whoever runs it; it outlives what was made of it. Thread: one, that of the entities. Re-entrancy: calls
// come from the loop alone, never from inside an operation of these classes. A call may do all of them, and may destroy
// the watch or timer that it comes from.
#pragma once

#include "dornl3/core/Integers.h"

#include <functional>
#include <limits>
#include <memory>

namespace Vek::Link {

/// What may be done with a descriptor without waiting, or is wished for.
struct Readiness {
  bool toRead = false;  ///< also where the stream has ended or failed
  bool toWrite = false;

  friend bool operator==(Readiness const&, Readiness const&) = default;
};

/// A descriptor that is looked at as long as this object stands. It must be open all that time.
class Watch {
 public:
  Watch() = default;
  Watch(Watch const&) = delete;
  Watch& operator=(Watch const&) = delete;
  virtual ~Watch() = default;

  /// What to call for; nothing at first. The call comes again as long as the descriptor is ready.
  virtual void wishIs(Readiness wish) = 0;
};

/// A call at a time, as long as this object stands.
class Timer {
 public:
  Timer() = default;
  Timer(Timer const&) = delete;
  Timer& operator=(Timer const&) = delete;
  virtual ~Timer() = default;

  static constexpr double never = std::numeric_limits<double>::infinity();
  /// When to call next, in seconds of NboAttrLog::steadyClock(). One call for one time; never at first.
  virtual void dueIs(double when) = 0;
};

class Loop {
 public:
  Loop() = default;
  Loop(Loop const&) = delete;
  Loop& operator=(Loop const&) = delete;
  virtual ~Loop() = default;

  [[nodiscard]] virtual std::unique_ptr<Watch> watch(int descriptor, std::function<void(Readiness)> call) = 0;
  [[nodiscard]] virtual std::unique_ptr<Timer> timer(std::function<void()> call) = 0;
};

}  // namespace Vek::Link
