// Demuxer: what a connection knows of the entities on it: adapters by id, what comes in over several records, and whose
// turn it is to write. Applying records is Dispatch, whose turn it is Schedule, exporting and mounting are Exports and
// Mounts.
// Owner: its connection. Thread: the connection's.
#pragma once

#include "dornl3/platform/attrlog/AdapterTable.h"
#include "dornl3/platform/attrlog/Barriers.h"
#include "dornl3/platform/attrlog/Schedule.h"

#include <functional>
#include <unordered_map>

namespace Vek {

class Entity;

namespace NboAttrLog {

/// The four states of a connection.
enum ConnectionState : U32 {
  greeting = 0,  ///< the peer has not said who it is
  open = 1,
  closing = 2,  ///< nothing is read or written any more
  dead = 3,     ///< all that belonged to it has been let go
};

class Demuxer {
 public:
  Demuxer(Out& out, U32 tag, Limits const& limits);
  ~Demuxer();
  Demuxer(Demuxer const&) = delete;
  Demuxer& operator=(Demuxer const&) = delete;

  [[nodiscard]] ConnectionState state() const noexcept { return state_; }
  void stateIs(ConnectionState state) noexcept { state_ = state; }
  [[nodiscard]] Out& out() noexcept { return *out_; }

  [[nodiscard]] AdapterTable& adapters() noexcept { return adapters_; }
  [[nodiscard]] Schedule& schedule() noexcept { return schedule_; }
  [[nodiscard]] Schedule const& schedule() const noexcept { return schedule_; }
  [[nodiscard]] Barriers& barriers() noexcept { return barriers_; }
  [[nodiscard]] Barriers const& barriers() const noexcept { return barriers_; }

  /// Leaves the adapter with a flow-out of its own type, and queues it. `startAttr`: what is owed from the beginning,
  /// see FlowOut. One that stands is replaced only by one that owes everything.
  void createFlowOut(StreamAdapter& adapter, ConnectDesc const& desc, bool isFull, AttributeId startAttr);
  /// Takes an adapter out: no record finds it, none is written by it. Returns it, or null.
  Ptr<StreamAdapter> reactorDel(EntityId id);

  /// Takes an adapter and those of all entities below its own off this log. They stay alive until no record and no turn
  /// runs, since it may be one of theirs.
  void unbind(StreamAdapter& adapter);
  /// An adapter leaves for another log, or for none. It answers its old one until the outermost remount() is done,
  /// since those below it are found by that.
  void remountNoted(StreamAdapter& adapter, Ptr<Out> const& out);
  /// Runs `step`, in which adapters leave, and lets them go when the outermost such step is done.
  template <class Step>
  void remount(Step const& step) {
    ++remounting_;
    try {
      step();
    } catch (...) {
      --remounting_;
      throw;
    }
    if (--remounting_ == 0) remountDone();
  }
  /// Lets go what has left; no record and no turn of this connection runs.
  void retire() noexcept { retired_.clear(); }
  /// Whether something runs that what has left may be part of.
  void isBusyIs(bool on) noexcept {
    isBusy_ = on;
    if (!on) retire();
  }

  /// Whether a child in place must make way for the one that the peer calls `id`: it is bound here, alive, as another
  /// object. Throws NameInUseException where it must and `mayThrow`.
  [[nodiscard]] bool checkEphemeralEntityDeletion(Ptr<Entity> const& child, EntityId id, bool mayThrow);

  /// Whether the far side may not have seen yet that this end has made the adapter's entity: if it makes one of the
  /// same name meanwhile, it is the same.
  [[nodiscard]] bool isSameMadeAtBothEnds(StreamAdapter const& adapter) const noexcept;
  /// Whether the record by which this end has bound a child may still be under way. One to a parent that the far side
  /// has called otherwise since may reach nobody.
  [[nodiscard]] bool isBindUnderWay(StreamAdapter const& child, StreamAdapter const& parent) const noexcept;

  [[nodiscard]] Ptr<FlowIn> flowIn(EntityId id) const;
  Ptr<FlowIn> flowInIs(EntityId id);
  void flowInDel(EntityId id);
  [[nodiscard]] bool hasFlowIns() const noexcept { return !flowIns_.empty(); }

  /// Whether a change of the adapter's entity waits for what becomes of a text that comes in.
  [[nodiscard]] bool holdsBack(StreamAdapter const& adapter) const;

  /// Records of peers that have been applied or passed over, the connection's own among them.
  [[nodiscard]] U64 processed() const noexcept { return processed_; }
  void processedInc() noexcept { ++processed_; }
  /// How many of ours the peer has applied, as far as it has said so.
  [[nodiscard]] U64 ackFromPeer() const noexcept { return ackFromPeer_; }
  void ackFromPeerIs(U64 records) noexcept { ackFromPeer_ = records; }
  /// Says how many of the peer's have been applied, if that has moved since it was last said.
  void ackIfMoved();

  /// The adapter whose record is being applied; null between records.
  [[nodiscard]] StreamAdapter* applied() const noexcept { return applied_; }
  void appliedIs(StreamAdapter* adapter) noexcept { applied_ = adapter; }

  /// Attributes whose last value was longer than the peer takes, by path: what the far side has of them is older. At
  /// most so many are named; all are counted by Out::droppedRecords().
  static constexpr std::size_t mostNotReplicated = 64;
  [[nodiscard]] std::vector<String8> const& notReplicated() const noexcept { return notReplicated_; }
  void notReplicatedIs(String8 const& path, bool on);

  /// Passed over, for want of an adapter, an attribute or a field.
  [[nodiscard]] U64 skipped() const noexcept { return skipped_; }
  void skippedInc() noexcept { ++skipped_; }

  /// Lets all go; the connection has ended.
  void teardown() noexcept;

 private:
  void remountDone();

  struct Remount {
    Ptr<StreamAdapter> adapter;
    Ptr<Out> out;
  };

  Out* out_;
  ConnectionState state_ = greeting;
  AdapterTable adapters_;
  Schedule schedule_;
  Barriers barriers_{*this};
  std::unordered_map<U64, Ptr<FlowIn>> flowIns_;
  U64 processed_ = 0;
  U64 ackFromPeer_ = 0;
  U64 ackSent_ = 0;
  U64 skipped_ = 0;
  StreamAdapter* applied_ = nullptr;
  std::vector<String8> notReplicated_;
  std::vector<Remount> remounts_;
  std::vector<Ptr<StreamAdapter>> retired_;
  U32 remounting_ = 0;
  bool isBusy_ = false;
};

/// The demuxers of a thread, in the order in which they came. One a thread, since an entity and its adapters stay on
/// one.
class DemuxerManager {
 public:
  void demuxerIs(Demuxer& demuxer) { demuxers_.push_back(&demuxer); }
  void demuxerDel(Demuxer& demuxer) noexcept {
    std::erase(demuxers_, &demuxer);
    if (demuxers_.empty()) demuxers_.shrink_to_fit();
  }
  /// The demuxers that stand now; a call of one may add and remove others.
  [[nodiscard]] std::vector<Demuxer*> nboDemuxerIterator() const { return demuxers_; }
  [[nodiscard]] bool has(Demuxer const* demuxer) const noexcept;

 private:
  std::vector<Demuxer*> demuxers_;
};

}  // namespace NboAttrLog

[[nodiscard]] NboAttrLog::DemuxerManager& globalNboAttrLogDemuxerManager();

/// The demuxer of an input; null when its connection has gone.
[[nodiscard]] NboAttrLog::Demuxer* demuxFor(Ptr<NboAttrLog::In const> const& in);

}  // namespace Vek
