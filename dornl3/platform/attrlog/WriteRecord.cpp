// The way of a change into the bytes of its log: Entity::VekNboAttrLogSa's, and the hottest of it.
#include "dornl3/platform/attrlog/Demuxer.h"
#include "dornl3/platform/attrlog/EntityAdapter.h"

namespace Vek {

using NboAttrLog::Out;
using Sa = Entity::VekNboAttrLogSa;

inline bool Sa::isInStep() const noexcept {
  constexpr U32 whatDecides = syncModeRelay | outputSuppressed | resyncStale | entityReactorActive | readOnlyLocal |
                              handlingScheduledFlowOut | flowOutForced | logEnabled | noFlowOut;
  if ((flags() & whatDecides) != (logEnabled | noFlowOut)) return false;
  Out const* const out = boundLog().ptr();
  return out != nullptr && out->takesPlainly();
}

void Sa::logField(AttributeId attr, U32 slot, bool isFixed, void const* field, FieldForm form) {
  if (field == nullptr) return;
  if (!isInStep() && scalarTurn(attr, slot) != Turn::write) return;
  try {
    sayWhatWasApplied();
    Out& out = *boundLog();
    if (form.bytes != 0) {
      char* const at = out.smallRecordIs(entityId(), static_cast<int>(attr), form.bytes, !isFixed);
      NboAttrLog::putNumber(at, field, form.bytes);
    } else {
      out.variableRecordIs(entityId(), static_cast<int>(attr));
      form.write(boundLog(), field);
      out.closeRecord();
    }
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
  U32 const keyBytes = record.keyForm.bytes;
  U32 const valueBytes = isThere ? record.valueForm.bytes : 0;
  sayWhatWasApplied();
  Out& out = *boundLog();
  if (keyBytes != 0 && (valueBytes != 0 || !isThere)) {
    char* const at = out.smallRecordIs(entityId(), isThere ? attr : -attr, keyBytes + valueBytes, !record.isFixed);
    NboAttrLog::putNumber(at, record.key, keyBytes);
    if (isThere) NboAttrLog::putNumber(at + keyBytes, record.value, valueBytes);
  } else {
    out.variableRecordIs(entityId(), isThere ? attr : -attr);
    putField(record.key, record.keyForm);
    if (isThere) putField(record.value, record.valueForm);
    out.closeRecord();
  }
  recordDone();
}

void Sa::putField(void const* field, FieldForm form) {
  if (form.bytes == 0) return form.write(boundLog(), field);
  if (char* const at = boundLog()->fieldsIs(form.bytes)) NboAttrLog::putNumber(at, field, form.bytes);
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
  if (boundLog()->droppedLast() || boundLog()->isWatched()) [[unlikely]]
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
