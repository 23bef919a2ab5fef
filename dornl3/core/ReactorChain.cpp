#include "dornl3/core/ReactorChain.h"

namespace Vek {

void ReactorChain::insert(Member& member) noexcept {
  Member* const reactor = member.vekRawReactor();
  if (reactor != nullptr && reactor->isStreamAdapter()) {
    member.next_ = head_;
    head_ = &member;
    if (tail_ == nullptr) tail_ = &member;
  } else {
    member.next_ = nullptr;
    if (tail_ != nullptr) {
      tail_->next_ = &member;
    } else {
      head_ = &member;
    }
    tail_ = &member;
  }
  ++version_;
  ++count_;
}

bool ReactorChain::remove(Member& member) noexcept {
  Member* before = nullptr;
  for (Member* at = head_; at != nullptr; before = at, at = at->next_) {
    if (at != &member) continue;
    if (before != nullptr) {
      before->next_ = member.next_;
    } else {
      head_ = member.next_;
    }
    if (tail_ == &member) tail_ = before;
    ++version_;
    --count_;
    return true;
  }
  return false;
}

void ReactorChain::deleteAll() noexcept {
  Ptr<Member> member = std::exchange(head_, nullptr);
  tail_ = nullptr;
  while (member) {
    Ptr<Member> next = member->next_;
    member->next_ = nullptr;
    member->letNotifierGo();
    member = std::move(next);
  }
  ++version_;
  count_ = 0;
}

}  // namespace Vek
