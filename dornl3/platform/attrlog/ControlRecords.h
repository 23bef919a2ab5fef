// ControlRecords: what the connection says for itself, under id 1. They are written whatever room there is: each is
// small, and there is at most one for each request, entity and heartbeat. A peer that asks and does not read the answers
// is cut off: see Exports.
#pragma once

#include "dornl3/platform/attrlog/In.h"

namespace Vek::NboAttrLog {

/// The header of a record as it was read.
struct RecordHeader {
  EntityId id;
  int attribute = 0;
  U32 length = 0;
  U32 kind = plainRecord;
  U8 flags = 0;
  U8 tail = 0;

  [[nodiscard]] static RecordHeader read(In& in);
};

/// Asks for an entity of that name and type.
void sendMount(Out& out, Name const& name, String8 const& typeName, bool writable);
void sendRefused(Out& out, Name const& name, String8 const& reason);
void sendGone(Out& out, EntityId id);
void sendAlive(Out& out);
void sendBye(Out& out, String8 const& reason);

}  // namespace Vek::NboAttrLog
