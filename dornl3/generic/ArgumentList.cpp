#include "dornl3/generic/ArgumentList.h"

#include "dornl3/platform/vek/VekType.h"

namespace Vek {

namespace {

GenericIf::List::Queue const& queueOf(GenericIf const* list) {
  if (dynamic_cast<GenericIf::List_ const*>(list) == nullptr) GenericIf::throwTypeException("Vek::GenericIf::List_");
  return *static_cast<GenericIf::List::Queue const*>(list->voidPtrIs(Ptr<VekType const>(GenericIf::List::_fwkType())));
}

}  // namespace

ArgumentList::ArgumentList(GenericIf const* list) : queue_(queueOf(list)), at_(queue_.head()) {}

void const* ArgumentList::next(char const* name, VekType const* type) {
  if (at_ == nullptr || !at_->value()) GenericIf::throwTypeException(name);
  void const* const argument = at_->value()->voidPtrIs(Ptr<VekType const>(type));
  at_ = GenericIf::List::Queue::next(*at_);
  return argument;
}

void ArgumentList::needEnd(String8 const& name) const {
  if (at_ != nullptr) GenericIf::throwUnknownArgException(name);
}

}  // namespace Vek
