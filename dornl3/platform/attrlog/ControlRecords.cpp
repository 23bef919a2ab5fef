#include "dornl3/platform/attrlog/ControlRecords.h"

namespace Vek::NboAttrLog {

namespace {

OutPtr const& operator<<(OutPtr const& log, std::vector<U32> const& marks) {
  for (U32 const mark : marks) log << mark;
  return log;
}

// Opens a record of the connection, and closes it at the end of the scope.
template <class... Field>
void send(Out& out, int control, Field const&... fields) {
  out.nextHeaderIs({.entityId = connectionId, .attribute = control, .variableSize = 1});
  OutPtr const log(&out);
  log << Vek::Connection::Out::tokenOpen;
  (void(log << fields), ...);
  log << Vek::Connection::Out::tokenClose;
}

}  // namespace

void sendMount(Out& out, Name const& name, String8 const& typeName, bool writable) {
  send(out, mountRecord, String8(name), typeName, writable);
}
void sendRefused(Out& out, Name const& name, String8 const& reason) { send(out, refusedRecord, String8(name), reason); }
void sendGone(Out& out, EntityId id) { send(out, goneRecord, id); }
void sendState(Out& out, EntityId id, bool isInStep, std::vector<U32> const& cameThrough) {
  send(out, stateRecord, id, isInStep, cameThrough);
}
void sendBarrier(Out& out, EntityId id, U64 number, BarrierKind kind) {
  send(out, barrierRecord, id, number, static_cast<U8>(kind));
}
void sendAlive(Out& out) { send(out, aliveRecord); }
void sendBye(Out& out, String8 const& reason) { send(out, byeRecord, reason); }

}  // namespace Vek::NboAttrLog
