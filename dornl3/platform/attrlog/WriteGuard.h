// WriteGuard: what keeps a replica from local changes that its owner would never hear of, or would take back. A
// read-only mount is guarded for good, a writable one as long as it is not in step. A guarded entity refuses a change
// before anything is stored, counted or told; what comes from the owner passes. Thread: the entity's.
#pragma once

#include "dornl3/platform/vek/Entity.h"

namespace Vek {

/// Lets the next change of an entity pass, once: the change that the log makes itself. Those that its reactors make
/// meanwhile do not pass, and at the end of the scope nothing does.
class WritePass {
 public:
  explicit WritePass(Entity& entity) noexcept : entity_(entity) {
    if (entity_.guard_ != 0) [[unlikely]]
      entity_.guard_ |= Entity::guardPass;
  }
  WritePass(WritePass const&) = delete;
  WritePass& operator=(WritePass const&) = delete;
  ~WritePass() { entity_.guard_ = static_cast<U8>(entity_.guard_ & ~Entity::guardPass); }

 private:
  Entity& entity_;
};

}  // namespace Vek
