// ReactorWalk: tells the reactors of a notifier that an attribute has changed.
// Re-entrancy: during the walk a reactor may add or remove reactors, set any attribute, throw, or drop the last outside
// reference on the notifier: the walk holds one of its own until it is over.
#pragma once

#include "core/Exception.h"
#include "core/SnapshotIterator.h"

namespace Vek {

/// Calls `call(reactor)` for the reactors on the list at entry. What one throws goes to its
/// onNotificationException(attribute), and the walk goes on; what that throws ends the walk and reaches the caller.
template <class Call>
void walkReactors(PtrInterface const& notifier, ReactorChain const& reactors, AttributeId attribute, Call const& call) {
  if (reactors.count() == 0) return;
  // An object that nobody counts, on the stack say, is not ended by the walk's reference either.
  Ptr<PtrInterface const> const held{notifier.references() != 0 ? &notifier : nullptr};
  for (ReactorSnapshot walk{reactors}; walk; walk.advance()) {
    try {
      Expect const expect{Exception::any};
      call(walk.current());
    } catch (...) {
      walk.current().onNotificationException(attribute);
    }
  }
}

/// Tells the reactors that the last reference on the notifier has gone, as attribute `event`. Weak reactors that are
/// still on the list afterwards are let go if the notifier is to go: those that entered during the walk, and those that
/// it did not reach since another's failure ended it. They would keep a pointer to nothing.
void notifyLastReferenceGone(PtrInterface const& notifier, ReactorChain& reactors, AttributeId event);

/// A slot without a key, as a member of the root of the reactors.
using ReactorSlot = void (PtrInterface::NotifieeConst::*)();

/// The walk for slots without a key: one function for all attributes of all types.
void notifyReactors(PtrInterface const& notifier, ReactorChain const& reactors, AttributeId attribute,
                    ReactorSlot slot);

}  // namespace Vek
