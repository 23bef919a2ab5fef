// ReactorWalk: tells the reactors of a notifier that an attribute has changed.
// Owner: a walk holds its notifier, and each reactor until its turn is over. Thread: the notifier's.
// Re-entrancy: during the walk a reactor may add or remove reactors, set any attribute, throw, or drop the last outside
// reference on the notifier: the walk holds one of its own until it is over.
#pragma once

#include "dornl3/core/Exception.h"
#include "dornl3/core/SnapshotIterator.h"

namespace Vek {

/// A reference that keeps an object over a call of its reactors. None on an object that nobody counts, on the stack
/// say, or that is on its way out: that reference would end it.
[[nodiscard]] inline Ptr<PtrInterface const> holdOver(PtrInterface const& object) noexcept {
  return object.references() != 0 ? &object : nullptr;
}

/// Where no memory is left to hold the reactors of a change: the adapters of logs, which stand first, are told that
/// they have missed it, by onNotificationException, inside the handling of the exception. Lets none out.
void tellLogsOfMissedChange(ReactorChain const& reactors, AttributeId attribute) noexcept;

[[nodiscard]] inline HeldReactors heldFor(ReactorChain const& reactors, AttributeId attribute) {
  try {
    return HeldReactors{reactors};
  } catch (...) {
    tellLogsOfMissedChange(reactors, attribute);
    throw;
  }
}

/// The turn of one reactor.
template <class Call>
[[gnu::always_inline]] inline void callReactor(PtrInterface::NotifieeConst& reactor, AttributeId attribute,
                                               Expect const* around, Call const& call) {
  try {
    Expect const expect{Exception::any, around};
    call(reactor);
  } catch (...) {
    reactor.onNotificationException(attribute);
  }
}

/// Several of them. It stands apart so that the walk over one needs no room for their array.
template <class Call>
[[gnu::noinline]] void walkSeveral(ReactorChain const& reactors, AttributeId attribute, Call const& call) {
  Expect const* const around = Expect::innermost();
  HeldReactors const all = heldFor(reactors, attribute);
  for (ReactorTurns walk{all}; walk; walk.advance()) callReactor(walk.current(), attribute, around, call);
}

/// Calls `call(reactor)` for the reactors on the list at entry. What one throws goes to its
/// onNotificationException(attribute), and the walk goes on; what that throws ends the walk and reaches the caller.
template <class Call>
void walkReactors(PtrInterface const& notifier, ReactorChain const& reactors, AttributeId attribute, Call const& call) {
  if (reactors.count() == 0) return;
  auto const held = holdOver(notifier);
  if (reactors.count() != 1) return walkSeveral(reactors, attribute, call);
  auto& only = const_cast<PtrInterface::NotifieeConst&>(*reactors.head());
  Ptr<PtrInterface::NotifieeConst> const heldOnly(&only);
  callReactor(only, attribute, Expect::innermost(), call);
}

/// A slot without a key, as a member of the root of the reactors.
using ReactorSlot = void (PtrInterface::NotifieeConst::*)();

/// The walk for slots without a key: one function for all attributes of all types.
void notifyReactors(PtrInterface const& notifier, ReactorChain const& reactors, AttributeId attribute,
                    ReactorSlot slot);

/// A slot with a key, in the same way.
template <class K>
using KeyedReactorSlot = void (PtrInterface::NotifieeConst::*)(K);

/// The walk for slots with a key: one function for all attributes with keys of that type.
template <class K>
void notifyReactors(PtrInterface const& notifier, ReactorChain const& reactors, AttributeId attribute,
                    KeyedReactorSlot<K> slot, K const& key) {
  walkReactors(notifier, reactors, attribute,
               [slot, &key](PtrInterface::NotifieeConst& reactor) { (reactor.*slot)(key); });
}

}  // namespace Vek
