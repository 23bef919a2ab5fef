#include "dornl3/platform/attrlog/MsgChannel.h"

namespace Vek {

namespace {

thread_local MsgChannel::Constrainer* present = nullptr;

}  // namespace

MsgChannel::Constrainer* MsgChannel::constrainer() noexcept { return present; }
void MsgChannel::constrainerIs(Constrainer* constrainer) noexcept { present = constrainer; }

MsgChannel::DeserializingEidAnchor::DeserializingEidAnchor(EntityId id, Ptr<Entity> const& parent) noexcept
    : constrainer_(constrainer()) {
  if (constrainer_ == nullptr) return;
  idBefore_ = constrainer_->deserializingEid();
  parentBefore_ = constrainer_->deserializingInParent();
  constrainer_->deserializingEidIs(id);
  constrainer_->deserializingInParentIs(parent);
}

MsgChannel::DeserializingEidAnchor::~DeserializingEidAnchor() {
  if (constrainer_ == nullptr) return;
  constrainer_->deserializingEidIs(idBefore_);
  constrainer_->deserializingInParentIs(parentBefore_);
}

}  // namespace Vek
