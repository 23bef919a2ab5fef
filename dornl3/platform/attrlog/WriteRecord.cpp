// The way of a change into the bytes of its log: Entity::VekNboAttrLogSa's, and the hottest of it.
#include "dornl3/platform/attrlog/Demuxer.h"
#include "dornl3/platform/attrlog/EntityAdapter.h"

namespace Vek {

using NboAttrLog::Out;
using Sa = Entity::VekNboAttrLogSa;

inline bool Sa::isInStep() const noexcept {
  constexpr U32 whatDecides = syncModeRelay | outputSuppressed | resyncStale | entityReactorActive | readOnlyLocal |
                              handlingScheduledFlowOut | flowOutForced | logEnabled | noFlowOut;
  if ((flags() & whatDecides) != (logEnabled | noFlowOut) || nboAttrLogOut() == nullptr) return false;
  return !boundLog()->demuxer()->hasFlowIns() && boundLog()->hasSufficientBuffer();
}

void Sa::logNumber(AttributeId attr, U32 slot, void const* field, U32 size) {
  if (field == nullptr) return;
  if (!isInStep() && scalarTurn(attr, slot) != Turn::write) return;
  try {
    sayWhatWasApplied();
    Out& out = *boundLog();
    if (char* const at = out.fixedRecordIs(entityId(), static_cast<int>(attr), size)) {
      NboAttrLog::putNumber(at, field, size);
    } else {
      openRecord(out, static_cast<int>(attr), size, false);
      boundLog() << Connection::Out::tokenOpen;
      out.putBytes({static_cast<char const*>(field), size});
      boundLog() << Connection::Out::tokenClose;
    }
    recordDone();
  } catch (...) {
    scalarOwed(slot);
    throw;
  }
}

void Sa::logField(AttributeId attr, U32 slot, void const* field, FieldWriter write) {
  if (field == nullptr) return;
  if (!isInStep() && scalarTurn(attr, slot) != Turn::write) return;
  try {
    sayWhatWasApplied();
    boundLog()->variableRecordIs(entityId(), static_cast<int>(attr));
    write(boundLog(), field);
    boundLog()->closeRecord();
    recordDone();
  } catch (...) {
    scalarOwed(slot);
    throw;
  }
}

bool Sa::logKey(KeyRecord const& record) {
  bool const isPlain = isInStep();
  if (isPlain) writeKey(record);
  return isPlain;
}

void Sa::writeKey(KeyRecord const& record) {
  bool const isThere = record.value != nullptr;
  auto const attr = static_cast<int>(record.attr);
  U32 const size = isThere ? NboAttrLog::fixedKeyRecord : NboAttrLog::fixedKeyDeleteRecord;
  Ptr<Out> const& out = recordIs(isThere ? attr : -attr, record.isFixed ? size : 0, !record.isFixed);
  record.putKey(out, record.key);
  if (isThere) record.putValue(out, record.value);
  out->closeRecord();
  recordDone();
}

Ptr<Out> const& Sa::recordIs(int attr, U32 fixedSize, bool isVariable, U32 kind) {
  sayWhatWasApplied();
  Ptr<Out> const& out = boundLog();
  if (isVariable && kind == NboAttrLog::plainRecord) {
    out->variableRecordIs(entityId(), attr);
    return out;
  }
  openRecord(*out, attr, fixedSize, isVariable, kind);
  return out << Connection::Out::tokenOpen;
}

void Sa::recordClosed() {
  boundLog()->closeRecord();
  recordDone();
}

inline void Sa::sayWhatWasApplied() {
  if (side() == Side::replica) streamDemuxer()->ackIfMoved();
}

inline void Sa::recordDone() {
  recordWritten(*boundLog());
  if (boundLog()->droppedLast() || boundLog()->demuxer()->hasNotReplicated()) [[unlikely]]
    noteWhatWasTooLong();
}

void Sa::noteWhatWasTooLong() {
  int const attr = boundLog()->attribute();
  notReplicatedIs(static_cast<AttributeId>(attr < 0 ? -attr : attr), boundLog()->droppedLast());
}

void Sa::notReplicatedIs(AttributeId attr, bool on) {
  Ptr<Entity> const entity = vekNotifierEntity();
  boundLog()->demuxer()->notReplicatedIs(entity->fullName() + "." + entity->attributeString(attr), on);
}

}  // namespace Vek
