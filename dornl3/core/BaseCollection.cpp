#include "dornl3/core/BaseCollection.h"

namespace Vek {

BaseCollection::~BaseCollection() = default;

void BaseCollection::iteratorDelete(StrepIterator& it) const noexcept {
  if (PtrInterface* const member = std::exchange(it.current_, nullptr)) member->referencesDec();
}

PtrInterface* BaseCollection::iteratorSpaceCopy(StrepIterator const& it) const noexcept {
  if (it.current_ != nullptr) it.current_->referencesInc();
  return it.current_;
}

BaseCollection::StrepIterator::~StrepIterator() = default;

}  // namespace Vek
