// Digest: one number that stands for the state of an entity and of the children below it, so that two copies are
// compared without walking both. It goes over the registry and the generic interface, and knows no type.
// Thread: the entity's. Re-entrancy: it changes nothing, so that no reactor is called.
#pragma once

#include "dornl3/platform/vek/Entity.h"

namespace Vek {

/// A 64-bit hash over the type, the declared attributes in order of their numbers, and the keys and members of
/// collections in the order in which they are walked, which depends on the keys alone; the same on every machine. How
/// the state came to be, the entity's own name, and its counts play no part. All NaN are one, and -0.0 is 0.0, inside
/// records too. Equal digests of different states are as rare as of any good hash; nobody may rely on there being none
/// where somebody chooses the state. Every attribute counts as read.
[[nodiscard]] U64 digest(Entity const& entity);

}  // namespace Vek
