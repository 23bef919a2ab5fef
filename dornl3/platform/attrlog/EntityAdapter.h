// EntityAdapter: Entity::VekNboAttrLogSa, the binding of one entity to one log, but for what depends on the entity's
// type. Two objects make a binding: this one, and a reactor adapter that stands on the entity's list and hands each
// change on.
// Owner, thread, re-entrancy: see StreamAdapter.
#pragma once

#include "dornl3/core/ReactorChain.h"
#include "dornl3/platform/attrlog/MsgChannel.h"
#include "dornl3/platform/attrlog/StreamAdapter.h"
#include "dornl3/platform/attrlog/WalkTable.h"
#include "dornl3/platform/vek/Entity.h"

namespace Vek {

class InboundRecord;

class Entity::VekNboAttrLogSa : public StreamAdapter {
 public:
  class IsActiveAnchor;
  class HandlingScheduledFlowOutAnchor;

  ~VekNboAttrLogSa() override;

  /// Switches both halves.
  void hasNotificationActiveIs(bool on) override;
  void notifierIs(Ptr<PtrInterface const> const& n) override;
  void vekDoZombieReactors(bool mark) override;
  void handleAttrTransaction(AttributeId attr, AttrTransactionType type, U32 arg) override;
  /// The log could not take a change: the caller of the setter is told where it has to know, everything is owed
  /// otherwise, and local reactors hear of the change all the same.
  void onNotificationException(AttributeId attr) override;
  using StreamAdapter::onNotificationException;
  /// The entity goes: the far side is told, and the adapter leaves its log.
  void onZeroReferences() override;

  [[nodiscard]] virtual Ptr<Entity const> vekNotifierEntity() const;
  [[nodiscard]] virtual Ptr<Entity> vekNotifierEntity();

  [[nodiscard]] MsgChannel::Constrainer::VekEntry* channel() const noexcept { return channel_; }
  [[nodiscard]] Ptr<PtrInterface::NotifieeConst> const& reactorAdapter() const noexcept { return reactorAdapter_; }

  /// Whether records for this attribute are coming in just now, so that a local change of it is not sent.
  [[nodiscard]] bool handlingFlowInFor(AttributeId attr) const;
  /// Whether a walk of a collection is coming in.
  [[nodiscard]] bool isInWalkOf(AttributeId attr) const;
  /// Writes a marker.
  void sendTransactionMarker(AttributeId attr, AttrTransactionType type, U32 arg);
  /// Reports a write that is forbidden. `attr` is null where the types are not described.
  [[noreturn]] void doThrowReadOnly(VekAttr const* attr) const;
  /// A record of an attribute that the type does not know: passed over and counted.
  void doBaseVekNboAttrLogSaMsg(int attr, DeserializationOptions options, U32 length, Ptr<NboAttrLog::In> const& in);

  // The halves of the frames that depend on no type.

  /// A slot has thrown.
  void handlerFailed(AttributeId attr);

  /// What binds a child, a closure of the caller's.
  class ChildBinder {
   public:
    template <class F>
    explicit ChildBinder(F const& f) noexcept
        : closure_(&f), function_([](void const* closure, U32 flags) -> Ptr<VekNboAttrLogSa> {
            return (*static_cast<F const*>(closure))(Vek_BitSet(flags));
          }) {}
    [[nodiscard]] Ptr<VekNboAttrLogSa> call(U32 flags) const { return function_(closure_, flags); }

   private:
    void const* closure_;
    Ptr<VekNboAttrLogSa> (*function_)(void const* closure, U32 flags);
  };

  /// What becomes of a change at this moment.
  enum class Turn : U8 {
    silent,  ///< nothing: it came from this log, or the log does not want it
    mark,    ///< it is marked in the flow-out, which stands
    write,   ///< it is written now
  };
  /// How the fields of a type are written.
  struct FieldForm {
    U32 bytes;                                                        ///< of one or more numbers; 0 for another field
    void (*put)(char* at, void const* field);                         ///< writes several numbers; null for one
    void (*write)(NboAttrLog::OutPtr const& out, void const* field);  ///< writes a field that is none
  };
  /// The record of a scalar.
  struct ScalarForm {
    NboAttrLog::RecordHead head;
    U32 slot;
    FieldForm value;
  };
  /// Writes the field of a scalar, or marks the scalar; nothing where there is no field. `bytes`: 1, 2, 4 or 8 for one
  /// number; 0 for what is none.
  template <U32 bytes>
  void logField(ScalarForm const& form, void const* field);
  /// The records of one key: as it stands, and where it is there no longer.
  struct KeyForm {
    NboAttrLog::RecordHead present;
    NboAttrLog::RecordHead gone;
    FieldForm key;
    FieldForm value;
  };
  /// Writes a key, where the plainest of all reasons says so; else the turn decides. Whether it is written. `value`:
  /// null where the key is there no longer.
  [[nodiscard]] bool logKey(KeyForm const& form, void const* key, void const* value);
  void writeKey(KeyForm const& form, void const* key, void const* value);
  /// Decides for a scalar, and marks it or clears its mark.
  [[nodiscard]] Turn scalarTurn(AttributeId attr, U32 slot);
  /// Decides for a key. The caller marks it in the flow-out, or clears its mark there.
  [[nodiscard]] Turn keyTurn(AttributeId attr);
  /// Whether so many keys of a collection of so many members are marked that the owner owes the whole of it in their
  /// place, from now on: keys that come and go under a peer that does not read are not kept without end.
  [[nodiscard]] bool owesAllForMarks(AttributeId attr, U32 marks, U32 members);
  /// The first guards of a walk: false where the handler returns `answer`.
  [[nodiscard]] bool walkMayBegin(AttributeId attr, bool& answer);
  /// Opens a record of an attribute; the log is there. Where the far side waits for it, how much of its records has
  /// been applied goes first.
  [[nodiscard]] Ptr<NboAttrLog::Out> const& recordIs(int attr, U32 fixedSize, bool isVariable,
                                                     U32 kind = NboAttrLog::plainRecord);
  /// The record is written.
  void recordClosed();
  /// A record could not be written in the middle of a walk: a scalar's mark stands again.
  void scalarOwed(U32 slot) noexcept;

  /// Writes a text, in pieces where it is long. Whether all of it has gone.
  [[nodiscard]] bool serializeText(AttributeId attr, U32 slot, String8 const& text);
  /// Reads a piece of a text: whether it is whole now, as `text`.
  [[nodiscard]] bool receiveText(InboundRecord const& record, AttributeId attr, U32 slot, String8& text);
  /// Whether the piece of a text that follows is not taken: it is of a text of which a piece was passed over.
  [[nodiscard]] bool passesOverText(AttributeId attr) const;
  /// Passes over a piece of a text: whether it was the last, so that the far side is to be told what stands.
  [[nodiscard]] bool textPassedOver(InboundRecord const& record, AttributeId attr);
  /// A marker of a text: what has come of it is forgotten at its end. Whether the base's handling follows.
  [[nodiscard]] bool textTransaction(AttributeId attr, AttrTransactionType type);

  /// The flags that a child's adapter takes from this one.
  [[nodiscard]] U32 childFlags() const noexcept;
  /// Calls what binds a child to the log, until it is bound. Where it has no id yet, the attribute is marked, by `slot`
  /// unless that is 0, and false is the answer: the caller marks the key.
  [[nodiscard]] bool bindChild(AttributeId attr, U32 slot, ChildBinder const& bind);
  void doFixChildFlags(VekNboAttrLogSa& child);
  /// A new child's adapter is switched on and gets its id. Throws EntityIdUnavailableException, with nothing left
  /// behind.
  void childIsOnLog(VekNboAttrLogSa& child);
  void childRecordIs(AttributeId attr, String8 const& key, VekNboAttrLogSa& child);
  /// A change of a child attribute that comes from the log: the child that stands there takes the id that follows in
  /// the input.
  void receiveChildId(Ptr<Entity> const& child);
  /// Whether a change of a child attribute comes from the log.
  [[nodiscard]] bool receivesChild() const noexcept { return !hasFlag(syncModeRelay) && hasFlag(entityReactorActive); }
  /// The id that follows in the input, which is then decoded. Throws ProtocolException where it cannot be the child's.
  [[nodiscard]] EntityId peekChildId(InboundRecord const& record, Ptr<Entity> const& child);
  /// See Demuxer::checkEphemeralEntityDeletion.
  [[nodiscard]] bool mustMakeWay(Ptr<Entity> const& child, EntityId id, bool mayThrow);
  /// A child of the far side's is not taken: the one that is here instead, if any, is to be bound there once more, and
  /// what it holds is to follow.
  void bindsAnew(Ptr<Entity> const& child);
  [[nodiscard]] Ptr<VekNboAttrLogSa> childAdapterOf(Ptr<Entity> const& child) const;

  /// Writes what the flow-out owes of these attributes, from one on: see StreamAdapter::handleAttrFlowOut.
  [[nodiscard]] AttributeId walk(NboAttrLog::WalkTable const& table, AttributeId from);

  /// Whether nobody but this adapter, which is silent for what it is applying, hears of changes.
  [[nodiscard]] bool isAloneOn(ReactorChain const& reactors) const noexcept {
    return reactors.count() == 1 && reactors.head() == reactorAdapter_.ptr();
  }
  /// Throws InternalException where the far side may not change the attribute.
  void needRemoteWritable(int attr) const;

  /// The flow-in of this entity where a marker is to be handled, made where it opens one.
  void transactionHead(AttributeId attr, AttrTransactionType type);
  /// Whether a change of sync mode begins or ends transactions here.
  [[nodiscard]] bool modeOpensTransactions();
  /// Begins the orphan record, up to the entity's name; the frame adds what else its constructor takes.
  [[nodiscard]] Ptr<NboAttrLog::Out> orphanIs(char const* typeName);
  /// Ends it.
  void orphanClosed(Ptr<NboAttrLog::Out> const& out);
  /// Applies a record of the sync mode.
  void receiveSyncMode(NboAttrLog::In& in);

 protected:
  VekNboAttrLogSa(Vek_BitSet flags, U32 count, Ptr<NboAttrLog::Out> const& out, PtrInterface* owner);

  /// The end of construction: the reactor adapter stands on the entity's list, this follows the entity.
  void reactorAdapterIs(Ptr<PtrInterface::NotifieeConst> const& adapter, Ptr<Entity> const& entity);
  /// The beginning of destruction: the reactor adapter leaves the list; it is handed to the caller.
  [[nodiscard]] Ptr<PtrInterface::NotifieeConst> reactorAdapterDel() noexcept;

 private:
  /// Takes over from the adapter of the entity's parent which end of a mount this is.
  void inheritSide();
  /// Guards that all handlers begin with; false where the handler is to return.
  [[nodiscard]] bool maySend(AttributeId attr);
  void needWritable(AttributeId attr);
  [[nodiscard]] bool isInStep() const noexcept;
  /// The way of a scalar where not all is plain.
  using PutScalar = void (VekNboAttrLogSa::*)(ScalarForm const& form, void const* field);
  void logFieldInTurn(ScalarForm const& form, void const* field, PutScalar put);
  template <U32 bytes>
  void putScalar(ScalarForm const& form, void const* field);
  void sayWhatWasApplied();
  void putKey(KeyForm const& form, void const* key, void const* value);
  static void putNumbers(char* at, void const* field, FieldForm const& form);
  void putField(void const* field, FieldForm const& form);
  /// What follows the closing of a record.
  void recordDone();
  void smallRecordDone(NboAttrLog::RecordHead const& head);
  void noteWhatWasTooLong(int attr, bool wasDropped);
  /// The far side has an older value of this attribute, or no longer.
  void notReplicatedIs(AttributeId attr, bool on);
  // Steps of the walk: whether it ends there, with `next` as its answer. `behind`: the attribute that follows, or 0.
  [[nodiscard]] bool walkEndsEarly(NboAttrLog::FlowOut* owed, AttributeId first, AttributeId& from);
  [[nodiscard]] bool stepEnds(NboAttrLog::FlowOut& owed, NboAttrLog::WalkStep const& step, AttributeId behind,
                              AttributeId& next);
  /// Makes a flow-out that owes nothing, for what is then marked.
  [[nodiscard]] bool openFlowOut(AttributeId attr);

  Ptr<PtrInterface::NotifieeConst> reactorAdapter_;
  MsgChannel::Constrainer::VekEntry* channel_;
  bool isNew_ = false;            // bound as a child just now
  bool hasChildOfPeers_ = false;  // the far side has made a child of the entity
};

/// Holds entityReactorActive on an adapter while a record is applied to its entity.
class Entity::VekNboAttrLogSa::IsActiveAnchor {
 public:
  IsActiveAnchor() noexcept = default;
  IsActiveAnchor(IsActiveAnchor const&) = delete;
  IsActiveAnchor& operator=(IsActiveAnchor const&) = delete;
  ~IsActiveAnchor() { telIs(nullptr); }
  /// Clears the bit on the adapter held before, and sets it on this one.
  void telIs(VekNboAttrLogSa* adapter) noexcept;

 private:
  Ptr<VekNboAttrLogSa> adapter_;
};

/// Holds an adapter, and handlingScheduledFlowOut on it, while the walk runs. Nests.
class Entity::VekNboAttrLogSa::HandlingScheduledFlowOutAnchor {
 public:
  explicit HandlingScheduledFlowOutAnchor(VekNboAttrLogSa& adapter) noexcept;
  HandlingScheduledFlowOutAnchor(HandlingScheduledFlowOutAnchor const&) = delete;
  HandlingScheduledFlowOutAnchor& operator=(HandlingScheduledFlowOutAnchor const&) = delete;
  ~HandlingScheduledFlowOutAnchor();

 private:
  Ptr<VekNboAttrLogSa> adapter_;
  bool before_;
};

}  // namespace Vek
