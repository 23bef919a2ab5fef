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

inline void Sa::sayWhatWasApplied() {
  if (side() == Side::replica) streamDemuxer()->ackIfMoved();
}

inline void Sa::smallRecordDone(NboAttrLog::RecordHead const& head) {
  Out const& out = *boundLog();
  recordWritten(out);
  if (out.isWatched()) [[unlikely]]
    noteWhatWasTooLong(head.attribute(), false);
}

inline void Sa::putNumbers(char* at, void const* field, FieldForm const& form) {
  form.put == nullptr ? NboAttrLog::putNumber(at, field, form.bytes) : form.put(at, field);
}

template <U32 bytes>
[[gnu::always_inline]] inline void Sa::putScalar(ScalarForm const& form, void const* field) {
  sayWhatWasApplied();
  Out& out = *boundLog();
  if constexpr (bytes != 0) {
    NboAttrLog::putNumber(out.smallRecordIs(entityId(), form.head, bytes), field, bytes);
    smallRecordDone(form.head);
  } else if (form.value.put != nullptr) {
    form.value.put(out.smallRecordIs(entityId(), form.head, form.value.bytes), field);
    smallRecordDone(form.head);
  } else {
    out.variableRecordIs(entityId(), form.head.attribute());
    form.value.write(boundLog(), field);
    recordClosed();
  }
}

template <U32 bytes>
void Sa::logField(ScalarForm const& form, void const* field) {
  if (field == nullptr) return;
  isInStep() ? putScalar<bytes>(form, field) : logFieldInTurn(form, field, &Sa::putScalar<bytes>);
}
template void Sa::logField<0>(ScalarForm const& form, void const* field);
template void Sa::logField<1>(ScalarForm const& form, void const* field);
template void Sa::logField<2>(ScalarForm const& form, void const* field);
template void Sa::logField<4>(ScalarForm const& form, void const* field);
template void Sa::logField<8>(ScalarForm const& form, void const* field);

void Sa::logFieldInTurn(ScalarForm const& form, void const* field, PutScalar put) {
  Ptr<Sa> const held(this);
  if (scalarTurn(static_cast<AttributeId>(form.head.attribute()), form.slot) != Turn::write) return;
  try {
    (this->*put)(form, field);
  } catch (...) {
    scalarOwed(form.slot);
    throw;
  }
}

[[gnu::always_inline]] inline void Sa::putKey(KeyForm const& form, void const* key, void const* value) {
  bool const isThere = value != nullptr;
  NboAttrLog::RecordHead const& head = isThere ? form.present : form.gone;
  U32 const keyBytes = form.key.bytes;
  U32 const valueBytes = isThere ? form.value.bytes : 0;
  sayWhatWasApplied();
  Out& out = *boundLog();
  if (keyBytes != 0 && (valueBytes != 0 || !isThere)) {
    char* const at = out.smallRecordIs(entityId(), head, keyBytes + valueBytes);
    putNumbers(at, key, form.key);
    if (isThere) putNumbers(at + keyBytes, value, form.value);
    smallRecordDone(head);
  } else {
    out.variableRecordIs(entityId(), head.attribute());
    putField(key, form.key);
    if (isThere) putField(value, form.value);
    recordClosed();
  }
}

bool Sa::logKey(KeyForm const& form, void const* key, void const* value) {
  bool const isPlain = isInStep();
  if (isPlain) putKey(form, key, value);
  return isPlain;
}

void Sa::writeKey(KeyForm const& form, void const* key, void const* value) { putKey(form, key, value); }

void Sa::putField(void const* field, FieldForm const& form) {
  if (form.bytes == 0) return form.write(boundLog(), field);
  if (char* const at = boundLog()->fieldsIs(form.bytes)) putNumbers(at, field, form);
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

inline void Sa::recordDone() {
  Out const& out = *boundLog();
  recordWritten(out);
  if (out.droppedLast() || out.isWatched()) [[unlikely]]
    noteWhatWasTooLong(out.attribute(), out.droppedLast());
}

void Sa::noteWhatWasTooLong(int attr, bool wasDropped) {
  notReplicatedIs(static_cast<AttributeId>(attr < 0 ? -attr : attr), wasDropped);
}

void Sa::notReplicatedIs(AttributeId attr, bool on) {
  Ptr<Entity> const entity = vekNotifierEntity();
  boundLog()->demuxer()->notReplicatedIs(entity->fullName() + "." + entity->attributeString(attr), on);
}

}  // namespace Vek
