#include "dornl3/platform/attrlog/Dispatch.h"

#include "dornl3/platform/attrlog/Connection.h"
#include "dornl3/platform/attrlog/EntityAdapter.h"

#include <exception>

namespace Vek::NboAttrLog {

namespace {

using Sa = Entity::VekNboAttrLogSa;

void applyControl(Connection& connection, RecordHeader const& header) {
  In& in = *connection.in();
  switch (header.attribute) {
  case orphanRecord:
    if (!connection.mounts().announced(in)) connection.demuxer().skippedInc();
    break;
  case mountRecord: {
    Name const name(in.nextString());
    String8 const typeName = in.nextString();
    bool const writable = in.nextbool();
    connection.exports().mountRequested(name, typeName, writable ? Access::writable : Access::readOnly);
    break;
  }
  case refusedRecord: {
    Name const name(in.nextString());
    String8 const reason = in.nextString();
    in.phaseIs(In::Phase::applying);
    connection.mounts().refused(name, reason);
    break;
  }
  case goneRecord: {
    EntityId const id = in.nextEntityId();
    in.phaseIs(In::Phase::applying);
    if (!connection.exports().gone(id)) connection.mounts().gone(id);
    break;
  }
  case aliveRecord: break;
  case ackRecord: {
    U64 const records = in.nextU64();
    if (records > connection.out()->records()) throw ProtocolException("more records applied than were written");
    connection.demuxer().ackFromPeerIs(records);
    break;
  }
  case stateRecord: {
    EntityId const id = in.nextEntityId();
    bool const isInStep = in.nextbool();
    std::vector<U32> cameThrough;
    while (!in.isAtLimit() && cameThrough.size() <= mostOfAChain) cameThrough.push_back(in.nextU32());
    in.phaseIs(In::Phase::applying);
    connection.mounts().upstreamIs(id, isInStep, std::move(cameThrough));
    break;
  }
  case barrierRecord: {
    EntityId const id = in.nextEntityId();
    U64 const number = in.nextU64();
    U8 const kind = in.nextU8();
    if (kind > barrierUnknown) throw ProtocolException(format("a barrier of kind %u", U32{kind}));
    if (kind != barrierRequest) in.phaseIs(In::Phase::applying);  // an answer calls whoever asked
    connection.demuxer().barriers().received(id, number, static_cast<BarrierKind>(kind));
    break;
  }
  case byeRecord: throw ProtocolException(format("the peer ended the connection: %s", in.nextString().charPtr()));
  default: connection.demuxer().skippedInc();
  }
}

void applyMarker(Sa& adapter, In& in) {
  auto const attr = static_cast<AttributeId>(in.nextU32());
  U32 const type = in.nextU32();
  U32 const argument = in.nextU32();
  if (type > StreamAdapter::endMarker) throw ProtocolException(format("a marker of kind %u", type));
  bool const isOwner = adapter.side() == StreamAdapter::Side::owner;
  // A replica may not know all that its owner holds: its walk sweeps nothing here.
  if (isOwner && type != StreamAdapter::abortMarker) throw ProtocolException("a replica that begins or ends a walk");
  adapter.needRemoteWritable(static_cast<int>(attr));
  in.phaseIs(In::Phase::applying);
  adapter.handleAttrTransaction(attr, static_cast<StreamAdapter::AttrTransactionType>(type), argument);
}

// An answer binds a child once more, which may be new at the far side: what it holds is to follow.
void answer(Sa& adapter, RecordHeader const& header, Ptr<In> const& in) {
  class Synchronising {
   public:
    explicit Synchronising(Sa& adapter) : adapter_(adapter), before_(adapter.syncMode()) {
      adapter_.StreamAdapter::syncModeIs(StreamAdapter::synchronising);
    }
    Synchronising(Synchronising const&) = delete;
    Synchronising& operator=(Synchronising const&) = delete;
    ~Synchronising() { adapter_.StreamAdapter::syncModeIs(before_); }

   private:
    Sa& adapter_;
    StreamAdapter::SyncMode const before_;
  } const synchronising{adapter};
  adapter.handleAttrDeserialization(header.attribute, 0, header.length, in);
}

void applyToEntity(Connection& connection, RecordHeader const& header, Sa& adapter) {
  Ptr<In> const& in = connection.in();
  Demuxer& demuxer = connection.demuxer();
  bool const isOwner = adapter.side() == StreamAdapter::Side::owner;
  if (header.attribute == transactionRecord) {
    applyMarker(adapter, *in);
    return;
  }
  if (header.attribute == syncModeRecord && isOwner) {
    throw ProtocolException("a replica that tells its owner how far it has come");
  }
  if (isOwner && adapter.vekNotifierEntity()->vekIsWriteGuarded()) {
    // It is mounted here, from an owner who would not hear of the change: the peer is told what stands.
    adapter.needRemoteWritable(header.attribute);
    answer(adapter, header, in);
    return;
  }
  bool const crosses = isOwner && (demuxer.ackFromPeer() < adapter.lastSent() || adapter.flowOut());
  try {
    adapter.handleAttrDeserialization(header.attribute, 0, header.length, nullptr);
  } catch (...) {
    bool const isTaken = header.attribute == syncModeRecord && in->phase() == In::Phase::applying;
    if (isTaken) connection.mounts().syncModeReceived(adapter);
    throw;
  }
  if (header.attribute == syncModeRecord) connection.mounts().syncModeReceived(adapter);
  if (in->phase() != In::Phase::applying) return;  // nothing that this end knows; it is counted
  if (!in->isAtLimit()) demuxer.skippedInc();      // fields of a newer peer
  if (!crosses || connection.state() != open) return;
  in->positionIs(0);
  answer(adapter, header, in);
}

// The adapter whose record is applied, for those that are made meanwhile.
class Applied {
 public:
  Applied(Demuxer& demuxer, StreamAdapter* adapter) noexcept : demuxer_(demuxer) { demuxer.appliedIs(adapter); }
  Applied(Applied const&) = delete;
  Applied& operator=(Applied const&) = delete;
  ~Applied() { demuxer_.appliedIs(nullptr); }

 private:
  Demuxer& demuxer_;
};

}  // namespace

void dispatch(Connection& connection, RecordHeader const& header) {
  Demuxer& demuxer = connection.demuxer();
  In const& in = *connection.in();
  try {
    if (header.id == connectionId) {
      applyControl(connection, header);
      return;
    }
    Ptr<Sa> const adapter = static_cast<Sa*>(demuxer.adapters().find(header.id));
    bool const isKnownKind = header.kind == plainRecord || header.kind == childBindRecord;
    if (!isKnownKind || !adapter || !header.id.isAssigned() || adapter->rawNotifier() == nullptr) {
      demuxer.skippedInc();
      return;
    }
    Applied const applied{demuxer, adapter.ptr()};
    applyToEntity(connection, header, *adapter);
  } catch (ShortRecordException const&) {
    demuxer.skippedInc();
  } catch (std::exception const&) {
    if (in.phase() == In::Phase::decoding) throw;
    demuxer.skippedInc();
  }
}

}  // namespace Vek::NboAttrLog
