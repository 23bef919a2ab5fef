// ControlRecords: what the connection says for itself, under id 1. They are written whatever room there is: each is
// small, and there is at most one for each request, entity and heartbeat. A peer that asks and does not read the
// answers is cut off: see Exports.
#pragma once

#include "dornl3/platform/attrlog/In.h"

#include <vector>

namespace Vek::NboAttrLog {

/// The header of a record as it was read.
struct RecordHeader {
  EntityId id;
  int attribute = 0;
  U32 length = 0;
  U32 kind = plainRecord;
  U8 flags = 0;
  U8 tail = 0;

  /// The header whose bytes stand at `at`.
  [[nodiscard]] static RecordHeader read(char const* at) noexcept {
    auto const flags = takeNumber<U32>(at + 16);
    return {EntityId::read(at),          static_cast<int>(takeNumber<U32>(at + 8)),
            takeNumber<U32>(at + 12),    flags >> 16,
            static_cast<U8>(flags >> 8), static_cast<U8>(flags)};
  }
};

/// Asks for an entity of that name and type.
void sendMount(Out& out, Name const& name, String8 const& typeName, bool writable);
void sendRefused(Out& out, Name const& name, String8 const& reason);
void sendGone(Out& out, EntityId id);
/// An exported entity, which is mounted here itself, is in step with its owner, or no longer. `cameThrough`: see
/// cameThrough() of Mounts.
void sendState(Out& out, EntityId id, bool isInStep, std::vector<U32> const& cameThrough);
/// Asks whether all that was written to an entity has been applied, or answers.
void sendBarrier(Out& out, EntityId id, U64 number, BarrierKind kind);
void sendAlive(Out& out);
void sendBye(Out& out, String8 const& reason);

}  // namespace Vek::NboAttrLog
