// VFPtrInterface: the reference word of a counted object, in a class without virtual functions.
// Thread: the count may be shared between threads when enableThreadSafePointers is set; the two state bits belong to
// the thread that owns the object and are changed by plain read and write.
// Owner: whoever holds a reference. Re-entrancy: it calls nobody; what ends an object stands in PtrInterface.
#pragma once

#include "dornl3/core/Integers.h"

#include <atomic>
#include <cstddef>

namespace Vek {

class VFPtrInterface {
 public:
  // Layout of the reference word.
  static constexpr U32 countMask = 0x1fffffff;
  static constexpr U32 notificationActiveBit = 0x20000000;
  static constexpr U32 heldBit = 0x40000000;  // not released while it stands: the object is being built, or is going
  static constexpr U32 markedForDeletionBit = 0x80000000;
  static constexpr U32 zeroMask = countMask | heldBit;

  /// True: every change of a reference word is an atomic add. False: a plain read and write. Read at each change, so
  /// set it before a second thread touches a counted object.
  static bool enableThreadSafePointers;

  VFPtrInterface(VFPtrInterface const&) = delete;
  VFPtrInterface& operator=(VFPtrInterface const&) = delete;

  /// Takes one reference.
  void referencesInc() const noexcept { add(1); }

  /// How many references are held, without the state bits.
  [[nodiscard]] U32 references() const noexcept { return load() & countMask; }

  /// Gives a block back to the counted heap.
  static void operator delete(void* block, std::size_t size) noexcept;

 protected:
  constexpr VFPtrInterface() noexcept = default;
  constexpr explicit VFPtrInterface(U32 word) noexcept : word_(word) {}
  ~VFPtrInterface() = default;

  /// Gives back one reference. Returns what is left of the word under zeroMask: 0 says that the object is to go.
  U32 drop() const noexcept { return add(~U32{0}) & zeroMask; }

  [[nodiscard]] bool stateBit(U32 bit) const noexcept { return (load() & bit) != 0; }
  void stateBitIs(U32 bit, bool on) const noexcept { word_ = on ? word_ | bit : word_ & ~bit; }

  /// Sets or clears the held bit in the manner of a count. Returns the whole word afterwards.
  U32 heldIs(bool on) const noexcept { return add(on ? heldBit : ~heldBit + 1); }

 private:
  U32 load() const noexcept {
    return enableThreadSafePointers ? std::atomic_ref<U32>(word_).load(std::memory_order_acquire) : word_;
  }

  U32 add(U32 delta) const noexcept {
    if (enableThreadSafePointers) {
      return std::atomic_ref<U32>(word_).fetch_add(delta, std::memory_order_acq_rel) + delta;
    }
    return word_ += delta;
  }

  mutable U32 word_ = 0;
};

}  // namespace Vek
