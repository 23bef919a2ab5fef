// Children on a log: how one gets an adapter and an id, at the end that made it and at the other.
#include "dornl3/platform/attrlog/Connection.h"
#include "dornl3/platform/attrlog/EntityAdapter.h"
#include "dornl3/platform/attrlog/InboundRecord.h"

namespace Vek {

using NboAttrLog::Demuxer;
using NboAttrLog::Out;
using Sa = Entity::VekNboAttrLogSa;

namespace {

// A binding that is to be made again more often than that never will be made.
constexpr int mostBindings = 8;

}  // namespace

U32 Sa::childFlags() const noexcept { return Vek_BitSet::notificationBitMask() & 0xffffc3cf & flags(); }

bool Sa::bindChild(AttributeId attr, U32 slot, ChildBinder const& bind) {
  Ptr<Sa> child;
  for (int times = 1; !child; ++times) {
    try {
      Expect const expect{EntityIdUnavailableException::id};
      child = bind.call(childFlags());
    } catch (AttrLogRecordException const&) {
      if (times == mostBindings) throw;
    } catch (EntityIdUnavailableException const& error) {
      if (isInSession()) {
        // The far side would wait for ever for the whole.
        Ptr<Entity> const entity = vekNotifierEntity();
        streamDemuxer()->schedule().failureIs(entity->fullName() + "." + entity->attributeString(attr) + ": " +
                                              error.message());
      }
      if (!flowOut() && !openFlowOut(attr)) return true;
      flowOut()->attrIdIs(attr);
      if (slot != 0) flowOut()->slotBitIs(slot, true);
      if (side() == Side::plain) {
        flowOut()->yieldRequestedIs(true);
      } else {
        flowOut()->waitingIs(flowOut()->waiting() + 1);  // the walk goes on without it
      }
      return false;
    }
  }
  doFixChildFlags(*child);
  // On a mount one that is bound already has a walk of its own, and what the far side owes of it would be overwritten.
  bool const isWalked = hasFlag(handlingScheduledFlowOut) && (side() == Side::plain || isInSession());
  if (syncMode() == synchronising || isWalked) {
    child->sessionIs(runningSession());
    child->doThis();
  }
  return true;
}

void Sa::doFixChildFlags(Sa& child) {
  constexpr U32 shared = readOnlyLocal | readOnlyRemote | outputSuppressed | flowOutForced;
  child.vek_bitSetIs(Vek_BitSet((child.flags() & ~shared) | (flags() & shared)));
  // A child may have been filled before anybody was told of it: on a mount it is brought in step by itself.
  if (child.side() != Side::plain && std::exchange(child.isNew_, false)) child.doThis();
}

void Sa::childIsOnLog(Sa& child) {
  child.isNew_ = true;
  child.hasNotificationActiveIs(true);
  try {
    child.inheritSide();
    child.vekOnInit();
  } catch (...) {
    streamDemuxer()->unbind(child);  // or a later try would find it, and write an id that nobody knows
    throw;
  }
}

bool Sa::mustMakeWay(Ptr<Entity> const& child, EntityId id, bool mayThrow) {
  return streamDemuxer()->checkEphemeralEntityDeletion(child, id, mayThrow);
}

void Sa::inheritSide() {
  Ptr<Entity> const entity = vekNotifierEntity();
  if (!entity || entity->isRoot()) return;
  Ptr<Entity> const parent = entity->parent();
  Ptr<Sa> const above = parent->vekNboAttrLogSa(Ptr<Out const>(boundLog()));
  if (!above) return;
  sideIs(above->side());
  if (side() == Side::replica) entity->vekWriteGuardIs(parent->vekIsWriteGuarded());
}

void Sa::childRecordIs(AttributeId attr, String8 const& key, Sa& child) {
  // The far side may have made a child of that name too. Whether this is the same, or another that has taken its place
  // here, is told by what had been applied.
  if (hasChildOfPeers_) streamDemuxer()->ackIfMoved();
  Ptr<Out> const& out = recordIs(static_cast<int>(attr), 0, true, NboAttrLog::childBindRecord);
  out << key << child.entityId();
  recordClosed();
  child.boundAtIs(out->records(), entityId());
}

void Sa::receiveChildId(Ptr<Entity> const& child) {
  struct Clear {
    Sa& adapter;
    ~Clear() { adapter.flagsIs(entityReactorActive, false); }
  } const clear{*this};
  Ptr<NboAttrLog::In> const in = boundLog()->reverseLog();
  Demuxer* const demuxer = demuxFor(in);
  if (!child || !in || demuxer == nullptr) return;
  hasChildOfPeers_ = side() == Side::owner;
  Ptr<Sa> const adapter = child->vekNboAttrLogSaIs(Vek_BitSet(childFlags()), 1, boundLog(), channel_);
  adapter->inheritSide();
  EntityId const id = in->nextEntityId();
  adapter->doEntityIdIs(id, *demuxer, true);
  if (!entityId().isAssigned()) in->overwriteId(entityId());
  adapter->flagsIs(resyncStale, false);
}

EntityId Sa::peekChildId(InboundRecord const& record, Ptr<Entity> const& child) {
  NboAttrLog::In& in = record.in();
  U32 const at = in.position();
  EntityId const id = in.nextEntityId();
  in.positionIs(at);
  if (!id.isAssigned() || id == connectionId) throw ProtocolException("a child under an id that is none");
  StreamAdapter const* const holder = streamDemuxer()->adapters().find(id);
  if (holder != nullptr && (!child || holder->rawNotifier() != child.ptr())) {
    throw ProtocolException("an entity id that another entity has");
  }
  NboAttrLog::AdapterTable const& adapters = streamDemuxer()->adapters();
  // An owner says a child again under the id that it had from here. One that is still to be given out would be met
  // later.
  bool const isPeers = side() == Side::plain || id.tag() == boundLog()->connection()->peerTag();
  if (!isPeers && !adapters.wasGivenOut(id)) throw ProtocolException("a child under an id that is not the peer's");
  if (holder == nullptr && !adapters.takesOneMore(id, boundLog()->connection()->settings().limits.entities)) {
    throw ProtocolException("more entities than this end takes");
  }
  record.decoded();
  return id;
}

void Sa::bindsAnew(Ptr<Entity> const& child) {
  hasChildOfPeers_ = side() == Side::owner;
  if (Ptr<Sa> const adapter = childAdapterOf(child)) adapter->isNew_ = true;
}

Ptr<Sa> Sa::childAdapterOf(Ptr<Entity> const& child) const {
  return child ? child->vekNboAttrLogSa(Ptr<Out const>(boundLog())) : Ptr<Sa>{};
}

}  // namespace Vek
