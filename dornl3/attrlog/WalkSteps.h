// WalkSteps: what the walk over an entity of a type comes to, as a constant.
#pragma once

#include "dornl3/attrlog/LogSlots.h"
#include "dornl3/platform/attrlog/EntityAdapter.h"

#include <array>

namespace Vek {

namespace detail {

template <class Attr, class A>
[[nodiscard]] constexpr NboAttrLog::WalkStep walkStep() noexcept {
  using Sa = Entity::VekNboAttrLogSa;
  using Own = typename A::Owner::VekNboAttrLogSa;
  NboAttrLog::WalkStep step{A::number, logSlot<Attr, A>, nullptr, nullptr, holdsKeys<A>};
  if constexpr (holdsKeys<A>) {
    step.goesOn = [](Sa& adapter) { return (static_cast<Own&>(adapter).*A::logWalk)(); };
  } else if constexpr (isLongText<A>) {
    step.goesOn = [](Sa& adapter) { return (static_cast<Own&>(adapter).*A::logText)(); };
  } else {
    step.writes = [](Sa& adapter) { (static_cast<Own&>(adapter).*A::logHandler)(); };
  }
  return step;
}

template <class Attr, class... A>
[[nodiscard]] constexpr auto walkSteps(List<A...>) noexcept {
  std::array<NboAttrLog::WalkStep, ((isLogged<A> ? 1U : 0U) + ... + 0U)> steps{};
  std::size_t at = 0;
  auto const add = [&]<class One>(One) {
    if constexpr (isLogged<One>) steps[at++] = walkStep<Attr, One>();
  };
  (add(A{}), ...);
  return steps;
}

template <class Attr>
inline constexpr auto stepsOf = walkSteps<Attr>(typename Attr::All{});

}  // namespace detail

/// The steps of a type.
template <class Attr>
inline constexpr NboAttrLog::WalkTable walkTable{detail::stepsOf<Attr>.data(),
                                                 detail::stepsOf<Attr>.data() + detail::stepsOf<Attr>.size()};

}  // namespace Vek
