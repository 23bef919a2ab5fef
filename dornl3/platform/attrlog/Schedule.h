// Schedule: whose turn it is to write. Adapters that owe something stand in a queue and are visited in turn, each as
// long as there is room and budget, so that none starves another. One that could neither write nor step on is set aside
// until something has happened that may help it: a visit that changes nothing would be repeated for ever. Owner: the
// demuxer. It holds the adapters that wait. Thread: the connection's. Re-entrancy: a turn does not begin inside a turn,
// nor inside the handling of a record.
#pragma once

#include "dornl3/platform/attrlog/AdapterTable.h"
#include "dornl3/platform/attrlog/StreamAdapter.h"

#include <deque>
#include <limits>
#include <vector>

namespace Vek::NboAttrLog {

class Schedule {
 public:
  Schedule(Out& out, AdapterTable const& adapters) noexcept : out_(out), adapters_(adapters) {}

  /// The adapter owes something.
  void queue(StreamAdapter& adapter);
  /// A mark has been made for an adapter: if it is blocked, there is now something that it may do.
  void marked(StreamAdapter& adapter);
  /// The adapter owes everything. Also where no memory is left to queue it: the next turn finds it.
  void oweEverything(StreamAdapter& adapter) noexcept;
  /// Something has happened that may help those that are blocked.
  void unblock();
  /// An exported entity, with all below it, has been written: the far side is to be told.
  void inStepIs(StreamAdapter& root);
  /// What an exported entity has come through, and whether it is in step there, has changed: the far side is told when
  /// there is room, once however often it has changed.
  void stateIsDue(StreamAdapter& root);
  void remove(StreamAdapter& adapter) noexcept;
  void clear() noexcept;

  /// Whether a turn would find something to do, if there is room.
  [[nodiscard]] bool isDue() const noexcept {
    return !queue_.empty() || !inStepDue_.empty() || !stateDue_.empty() || mustSearch_;
  }
  /// Visits each adapter that waits once, while there is room, and writes at most about `budget` bytes.
  void turn(U32 budget);

  /// Whether some adapter may owe something, also one that is blocked or being visited.
  [[nodiscard]] bool isOwing() const noexcept {
    return isRunning_ || mustSearch_ || !queue_.empty() || !blocked_.empty();
  }
  /// Whether the adapter owes something that is to be written, if there is room.
  [[nodiscard]] static bool isOwing(StreamAdapter const& adapter) noexcept;

  /// Whether an adapter that is being visited may go on.
  [[nodiscard]] bool mayGoOn() const noexcept { return out_.written() < end_ && out_.hasSufficientBuffer(); }

  /// Why this cannot go on: three visits of one adapter in a row have failed, say. Empty where it can.
  [[nodiscard]] String8 const& failure() const noexcept { return failure_; }
  void failureIs(String8 const& why) { failure_ = why; }

 private:
  void leavePlace(StreamAdapter& adapter) noexcept;
  void visit(StreamAdapter& adapter);
  void walkEnded(StreamAdapter& adapter, FlowOut& flowOut);
  void writeInStep();
  void writeStates();

  Out& out_;
  AdapterTable const& adapters_;
  std::deque<Ptr<StreamAdapter>> queue_;
  std::vector<Ptr<StreamAdapter>> blocked_;
  std::vector<Ptr<StreamAdapter>> aside_;
  std::vector<Ptr<StreamAdapter>> inStepDue_;
  std::vector<Ptr<StreamAdapter>> stateDue_;
  U64 end_ = std::numeric_limits<U64>::max();
  U32 failures_ = 0;
  bool isRunning_ = false;
  bool mustSearch_ = false;
  String8 failure_;
};

}  // namespace Vek::NboAttrLog
