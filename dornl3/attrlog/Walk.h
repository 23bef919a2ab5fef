// Walk: writes what a flow-out owes, attribute by attribute in rising number. It is the one place that makes progress
// on a flow-out. Thread: the entity's. Re-entrancy: nests; calls nobody but the adapter's own handlers.
#pragma once

#include "dornl3/attrlog/ChildLog.h"

namespace Vek {

namespace detail {

/// One step; whether the walk ends here, with `next` as its answer.
template <class Attr, class A, class Sa>
[[nodiscard]] bool walkStep(Sa& adapter, NboAttrLog::FlowOut& owed, AttributeId& next) {
  constexpr AttributeId behind = loggedBehind<Attr, A>;
  using Sub = Entity::VekNboAttrLogSa;
  if constexpr (holdsKeys<A>) {
    owed.attrIdIs(A::number);
    bool const done = (adapter.*A::logWalk)();
    return adapter.stepEnds(owed, A::number, behind, done, next);
  } else if constexpr (isLongText<A>) {
    using Handler = bool (Sub::*)();
    return adapter.stepOverText(owed, A::number, behind, logSlot<Attr, A>, static_cast<Handler>(A::logText), next);
  } else {
    using Handler = void (Sub::*)();
    return adapter.stepOverScalar(owed, A::number, behind, logSlot<Attr, A>, static_cast<Handler>(A::logHandler), next);
  }
}

template <class Attr, class Sa, class... A>
void walkFrom(List<A...>, Sa& adapter, NboAttrLog::FlowOut& owed, AttributeId from, AttributeId& next) {
  bool begun = false;
  auto const step = [&]<class One>(One) {
    if constexpr (isLogged<One>) {
      begun = begun || from == One::number;
      return begun && walkStep<Attr, One>(adapter, owed, next);
    } else {
      return false;
    }
  };
  (void)(step(A{}) || ...);
}

}  // namespace detail

/// Lets the children of an entity exist on the far side before its attributes flow.
template <class Attr, class Sa>
void instantiateChildren(Sa& adapter) {
  adapter.StreamAdapter::vekInstantiateSerialize();
  forEach(typename Attr::All{}, [&](auto attribute) {
    using A = decltype(attribute);
    if constexpr (holdsChildrenByKey<A>) {
      static_cast<void>((adapter.*A::logWalk)());
    } else if constexpr (holdsOneChild<A>) {
      (adapter.*A::logHandler)();
    }
  });
}

/// See StreamAdapter::handleAttrFlowOut.
template <class Attr, class Sa>
AttributeId walkAttributes(Sa& adapter, AttributeId from) {
  if (adapter.rawNotifier() == nullptr) return 0;
  Ptr<NboAttrLog::FlowOut> const owed = static_cast<StreamAdapter&>(adapter).flowOut();
  Entity::VekNboAttrLogSa::HandlingScheduledFlowOutAnchor const anchor{adapter};
  if (adapter.walkEndsEarly(owed.ptr(), firstLogged<Attr>, from)) return from;
  AttributeId next = 0;
  if (owed) detail::walkFrom<Attr>(typename Attr::All{}, adapter, *owed, from, next);
  return next;
}

}  // namespace Vek
