#include "dornl3/core/ReactorWalk.h"

namespace Vek {

void notifyReactors(PtrInterface const& notifier, ReactorChain const& reactors, AttributeId attribute,
                    ReactorSlot slot) {
  walkReactors(notifier, reactors, attribute, [slot](PtrInterface::NotifieeConst& reactor) { (reactor.*slot)(); });
}

namespace {

class LastWalk {
 public:
  LastWalk(PtrInterface const& notifier, ReactorChain& reactors) noexcept : notifier_(notifier), reactors_(reactors) {}
  LastWalk(LastWalk const&) = delete;
  LastWalk& operator=(LastWalk const&) = delete;
  ~LastWalk() {
    if (notifier_.references() == 0) reactors_.letWeakMembersGo();
  }

 private:
  PtrInterface const& notifier_;
  ReactorChain& reactors_;
};

}  // namespace

void notifyLastReferenceGone(PtrInterface const& notifier, ReactorChain& reactors, AttributeId event) {
  LastWalk const scope{notifier, reactors};
  notifyReactors(notifier, reactors, event, &PtrInterface::NotifieeConst::onZeroReferences);
}

}  // namespace Vek
