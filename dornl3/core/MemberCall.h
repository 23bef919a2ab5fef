// MemberCall: what a walk over a collection does at each member, whatever its type: true to go on. Owner: it borrows
// the callable, which outlives it.
#pragma once

#include "dornl3/core/PtrInterface.h"

namespace Vek {

class MemberCall {
 public:
  template <class Call>
  MemberCall(Call& call) noexcept
      : call_([](void* held, PtrInterface& member) { return (*static_cast<Call*>(held))(member); }), held_(&call) {}

  bool operator()(PtrInterface& member) const { return call_(held_, member); }

 private:
  bool (*call_)(void* held, PtrInterface& member);
  void* held_;
};

}  // namespace Vek
