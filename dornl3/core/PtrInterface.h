// PtrInterface: root of all counted objects that have virtual operations.
// Owner: whoever holds a reference. The object is born with none; the first Ptr takes one, the last to go ends it.
// Thread: the object's own, but for the count, see VFPtrInterface.
// Re-entrancy: while an object goes, its last callbacks may take and drop references on it; if one is kept, it lives
// on.
#pragma once

#include "dornl3/core/VFPtrInterface.h"

namespace Vek {

class VekType;

class PtrInterface : public VFPtrInterface {
 public:
  class NotifieeConst;
  class Notifiee;

  [[nodiscard]] static void* operator new(std::size_t size);
  static void operator delete(void* block, std::size_t size) noexcept;

  /// Gives back one reference; with the last, the object goes. Returns the word under zeroMask. Lets no exception out.
  U32 referencesDec() const noexcept {
    U32 const left = drop();
    if (left == 0) handleZeroRef();
    return left;
  }

  /// Adds one reference that is never given back: for objects that live until the process ends.
  void referencesLeak() const noexcept;

  /// Whether events are delivered to this object: bit 29 of the reference word.
  [[nodiscard]] bool hasNotificationActive() const noexcept { return stateBit(notificationActiveBit); }
  virtual void hasNotificationActiveIs(bool on);

  /// How many inconsistencies an audit of this object finds, at the depth `level`.
  virtual U32 vekAuditErrors(U32 level) const;
  /// As vekAuditErrors; a level that is negative as a signed number audits nothing and gives 0.
  virtual U32 auditErrors(U32 level) const;

  /// Called when the last reference has gone, before the destructor: the place for last words to reactors.
  virtual void zeroReferencesIs(bool);

  /// The run-time type record of the object's class; null for classes that have none.
  [[nodiscard]] virtual VekType* fwkType() const;
  /// The record that stands for any object at all.
  static VekType* _fwkType();

  virtual ~PtrInterface();

  /// Bit 31: the object lives on, but what it forwards is no longer wanted.
  [[nodiscard]] bool vekMarkedForDeletion() const noexcept { return stateBit(markedForDeletionBit); }
  void vekMarkedForDeletionIs(bool on) noexcept { stateBitIs(markedForDeletionBit, on); }

 protected:
  PtrInterface() noexcept;

 private:
  friend class Birth;
  void handleZeroRef() const noexcept;
};

/// Holds a new object while its constructor runs: a reference that the constructor hands out and takes back does not
/// end it. make() uses it; `new` alone serves where a constructor hands out no reference to the object.
class Birth {
 public:
  /// The next object that this thread makes is the one to hold.
  Birth() noexcept;
  ~Birth();
  Birth(Birth const&) = delete;
  Birth& operator=(Birth const&) = delete;

  /// The constructor has returned, and the maker holds a reference: from here on the object lives by its count.
  void done() noexcept;

 private:
  friend class PtrInterface;
  static void allocated(void const* block, std::size_t size) noexcept;
  static bool holds(PtrInterface const* object) noexcept;

  void const* block_ = nullptr;
  std::size_t size_ = 0;
  PtrInterface const* object_ = nullptr;
  Birth* outer_;
};

}  // namespace Vek
