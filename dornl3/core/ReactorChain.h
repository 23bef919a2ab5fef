// ReactorChain: the untyped half of a reactor list. Log adapters stand first, the newest ahead, then the others as they
// came. Owner: the entity. Members: not owned; a reactor leaves the list before it dies.
// Thread: the entity's. Re-entrancy: walk it only by a snapshot, see SnapshotIterator.
#pragma once

#include "dornl3/core/NotifieeConst.h"

namespace Vek {

class ReactorChain {
 public:
  using Member = PtrInterface::NotifieeConst const;

  ReactorChain() noexcept = default;
  ReactorChain(ReactorChain const&) = delete;
  ReactorChain& operator=(ReactorChain const&) = delete;
  ~ReactorChain() = default;

  /// Changes with each insertion, each removal and each deleteAll.
  [[nodiscard]] U32 version() const noexcept { return version_; }
  [[nodiscard]] U32 count() const noexcept { return count_; }
  [[nodiscard]] Member* head() const noexcept { return head_; }
  [[nodiscard]] Member* tail() const noexcept { return tail_; }
  [[nodiscard]] static Member* next(Member& member) noexcept { return member.next_; }

  /// Links a member that is on no list; takes no reference. A log adapter goes to the head, every other to the tail:
  /// a failing reactor must not leave a replica behind.
  void insert(Member& member) noexcept;

  /// Unlinks the member; one that is not on this list changes nothing. The member's own link stays as it is.
  bool remove(Member& member) noexcept;

  /// Clears every member's link and tells nobody; for the end of the entity. Weak members follow nobody afterwards.
  void deleteAll() noexcept;

 private:
  U32 version_ = 0;
  U32 count_ = 0;
  Member* head_ = nullptr;
  Member* tail_ = nullptr;
};

}  // namespace Vek
