// StreamAdapter: the state of the binding between one object and one log, whatever the object: its id, its flags, what
// it owes. Entity::VekNboAttrLogSa makes it an entity's, X::VekNboAttrLogSa an X's.
// Owner: the demuxer's table, and whoever bound it. It holds its log, and its entity unless it is weak: an export or a
// mount binds weakly, or entity, adapter and table would keep each other alive.
// Thread: the entity's. Re-entrancy: handlers run inside setters and inside the handling of a record; none waits.
#pragma once

#include "dornl3/core/NotifieeConst.h"
#include "dornl3/platform/attrlog/FlowIn.h"
#include "dornl3/platform/attrlog/FlowOut.h"
#include "dornl3/platform/attrlog/In.h"
#include "dornl3/platform/attrlog/SyncSession.h"

namespace Vek {

namespace NboAttrLog {
class Schedule;
}

class StreamAdapter : public PtrInterface::NotifieeConst {
 public:
  /// How far the entity has come on its log. Any mode but synchronising ends the transactions that it began.
  enum SyncMode : U32 { noSync = 0, inStep = 1, synchronising = 2 };
  /// Markers around the walk of a collection.
  enum AttrTransactionType : U32 { beginMarker = 0, abortMarker = 1, endMarker = 2 };
  using DeserializationOptions = U32;

  /// Which end of a mount the adapter is. A plain one was bound without a mount and follows both ends' rules as they
  /// are; on a mount the owner's word stands over the replica's.
  enum class Side : U8 { plain, owner, replica };

  // Bits of the flags word. Those of stateBits are the adapter's own, a caller sets the others.
  static constexpr U32 readOnlyLocal = 0x4;
  static constexpr U32 readOnlyRemote = 0x8;
  static constexpr U32 entityReactorActive = 0x10;  ///< the change comes from the log: it does not go back
  static constexpr U32 resyncStale = 0x20;
  static constexpr U32 weakAdapter = 0x40;
  static constexpr U32 outputSuppressed = 0x100;
  static constexpr U32 syncModeRelay = 0x2000;
  static constexpr U32 noFlowOut = 0x100000;  ///< in step: nothing is owed. Stands exactly while flowOut() is null
  static constexpr U32 handlingScheduledFlowOut = 0x400000;
  static constexpr U32 childRecordSuppressed = 0x2000000;
  static constexpr U32 logEnabled = 0x4000000;
  static constexpr U32 flowOutForced = 0x8000000;

  ~StreamAdapter() override;

  [[nodiscard]] bool isStreamAdapter() const noexcept final { return true; }
  void hasNotificationActiveIs(bool on) override;
  /// What was not to be sent was not marked either: when output is let go again, everything is owed.
  void vek_bitSetIs(Vek_BitSet flags) override;

  // What the framework and the frames call, each type with its own where that is told.

  /// The sync mode has changed.
  virtual void handleSyncMode();
  /// Writes what is owed, from attribute `from` on. Returns the attribute where the next visit goes on, 0 when it is
  /// through. Here: the framework's own attributes.
  virtual AttributeId handleAttrFlowOut(AttributeId from);
  /// Drops what a flow-out holds of the attribute that it stands on.
  virtual void freeResyncState(NboAttrLog::FlowOut& flowOut);
  /// The adapter has just been made for a child whose record follows.
  virtual void vekOnInit();
  /// Lets children exist on the far side before the attributes flow.
  virtual void vekInstantiateSerialize();
  /// The demuxer of the log; null when the connection has gone, and for an adapter without log.
  [[nodiscard]] virtual NboAttrLog::Demuxer const* streamDemuxer() const;
  [[nodiscard]] virtual NboAttrLog::Demuxer* streamDemuxer();
  /// Announces the entity on the log, and lets its attributes flow.
  virtual void doSerializeOrphan();
  /// Applies one record. `in`: null to apply what stands in the log's own input; else the record is read from `in` to
  /// move past it, and the present value is sent.
  virtual void handleAttrDeserialization(int attr, DeserializationOptions options, U32 length,
                                         Ptr<NboAttrLog::In> const& in);
  /// Applies one marker.
  virtual void handleAttrTransaction(AttributeId attr, AttrTransactionType type, U32 arg);
  /// Gives the adapter an id of this process. Throws ProtocolException where the peer takes no more.
  virtual void doAssignEntityId();
  /// A new flow-out of the adapter's own type.
  [[nodiscard]] virtual Ptr<NboAttrLog::FlowOut> flowOutIs(Ptr<NboAttrLog::Out> const& out, ConnectDesc const& desc,
                                                           bool isFull, AttributeId startAttr);
  [[nodiscard]] virtual EntityId realEntityId() const;
  /// Reports one attribute as if it had changed; of a collection the key at `key`. Another number does nothing.
  virtual void doNotification(int attr, void const* key);
  virtual void syncModeIs(SyncMode mode);
  virtual void entityIdIs(EntityId id);
  /// A marked adapter hears nothing; a revived one hears again.
  virtual void vekDoZombieReactors(bool mark) = 0;
  /// The adapter leaves for another log, or for none; those of all entities below its own leave for none. All answer
  /// the old one until the outermost call returns.
  virtual void doRemountSelf(Ptr<NboAttrLog::Out> const& out);

  /// The log, while its connection is open; null otherwise.
  [[nodiscard]] NboAttrLog::Out* nboAttrLogOut() const noexcept {
    return out_ != nullptr && out_->bufferFlag() ? out_.ptr() : nullptr;
  }
  /// The log, whatever has become of its connection.
  [[nodiscard]] Ptr<NboAttrLog::Out> const& boundLog() const noexcept { return out_; }
  [[nodiscard]] EntityId entityId() const noexcept { return id_; }
  /// Whether the id is assigned and the demuxer knows the adapter by it.
  [[nodiscard]] bool hasUnifiedEntityId() const;
  [[nodiscard]] SyncMode syncMode() const noexcept { return syncMode_; }
  [[nodiscard]] Ptr<NboAttrLog::FlowOut> const& flowOut() const noexcept { return flowOut_; }
  [[nodiscard]] U32 flags() const noexcept { return vek_bitSet().word(); }
  [[nodiscard]] bool hasFlag(U32 bits) const noexcept { return (flags() & bits) != 0; }
  void flagsIs(U32 bits, bool on) noexcept { stateFlagsIs(bits, on); }
  /// Whether nothing may be written. On a mount that its owner's walk has not come to a child yet is no reason: a
  /// change of it would be lost.
  [[nodiscard]] bool isKeptSilent() const noexcept {
    return hasFlag(side_ == Side::plain ? outputSuppressed | resyncStale : outputSuppressed);
  }
  [[nodiscard]] Side side() const noexcept { return side_; }
  void sideIs(Side side) noexcept { side_ = side; }
  /// Whether the entity was exported itself, and not as a child.
  [[nodiscard]] bool isMountRoot() const noexcept { return isMountRoot_; }
  void isMountRootIs(bool on) noexcept { isMountRoot_ = on; }
  /// The synchronisation that runs, of this entity or of the one that it came with; null where none does.
  [[nodiscard]] Ptr<NboAttrLog::SyncSession> runningSession() const;
  void sessionIs(Ptr<NboAttrLog::SyncSession> const& session) {
    if (!inSession_) session_ = session;
  }
  /// Whether its own walk is a part of one.
  [[nodiscard]] bool isInSession() const noexcept { return inSession_; }
  void joinSession();
  /// Its part is over; with the last the far side is told.
  void leaveSession() noexcept;
  /// The walk of a full flow-out has been through.
  void walkEnded() noexcept;
  /// The number of the record that bound the entity as a child.
  void boundAtIs(U64 record, EntityId parent) noexcept {
    boundAt_ = record;
    boundIn_ = parent;
  }

  /// The mode that a record names. On a mount only 1 and 2 are; a plain adapter takes every number.
  [[nodiscard]] SyncMode SyncModeInstance(U32 number) const;
  /// Whether the walk may go on in this turn.
  [[nodiscard]] bool continueFlowOut() const noexcept;
  /// With a flow-out: whether the attribute may go out now. Not from a change outside the walk, which goes on in order;
  /// nor where the log is short, and then the walk stops at the attribute.
  [[nodiscard]] bool prepareImmediateTransmission(AttributeId attr, bool bufferShort);
  /// Whether a read-only binding may write after all.
  [[nodiscard]] bool convertedToWritable(bool) const noexcept { return false; }
  /// Whether the far side of a read-only binding may write this attribute all the same.
  [[nodiscard]] bool readOnlyRemoteOk(int) const noexcept { return false; }
  /// Drops the key or the place in a text at which a walk would go on.
  void dropWalkState(NboAttrLog::FlowOut& flowOut);
  /// The adapter goes on with its own part of a synchronisation: everything is owed.
  void doThis();
  /// Tells the far side how far the entity has come.
  void sendSyncMode(SyncMode mode);
  /// Gives the adapter an id and enters it in the demuxer. `fromPeer`: the id stood in a record of the peer's. Throws
  /// ProtocolException where another adapter has it.
  void doEntityIdIs(EntityId id, NboAttrLog::Demuxer& demuxer, bool fromPeer);
  /// All of it goes out again: what has been written is not to be relied on.
  void oweEverything() noexcept;

 protected:
  StreamAdapter(Vek_BitSet flags, U32 count, Ptr<NboAttrLog::Out> const& out);

  /// Opens a record of this adapter on `out`.
  void openRecord(NboAttrLog::Out& out, int attr, U32 fixedSize, bool isVariable, U32 kind = NboAttrLog::plainRecord);

 private:
  friend class NboAttrLog::Demuxer;
  friend class NboAttrLog::Schedule;

  /// Where the demuxer keeps the adapter for its turn.
  enum class Place : U8 { none, queued, blocked, aside };

  SyncMode syncMode_ = noSync;
  Side side_ = Side::plain;
  Place place_ = Place::none;
  bool owesAll_ = false;
  bool isMountRoot_ = false;
  bool inSession_ = false;
  bool hasAlias_ = false;
  U32 const count_;
  EntityId id_;
  Ptr<NboAttrLog::Out> out_;
  Ptr<NboAttrLog::FlowOut> flowOut_;
  Ptr<NboAttrLog::SyncSession> session_;
  U64 boundAt_ = 0;
  EntityId boundIn_;  // of the parent, in the record that binds it
  U64 lastSent_ = 0;  // number of the last record with this id

 public:
  /// The number of the last record that was written under this id.
  [[nodiscard]] U64 lastSent() const noexcept { return lastSent_; }

 protected:
  /// A record of this adapter has been closed.
  void recordWritten(NboAttrLog::Out const& out) noexcept { lastSent_ = out.records(); }
};

}  // namespace Vek
