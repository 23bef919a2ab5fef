#include "dornl3/core/PtrInterface.h"

#include "dornl3/core/CountedHeap.h"
#include "dornl3/core/PtrTrack.h"

#include <cassert>

namespace Vek {

bool VFPtrInterface::enableThreadSafePointers = false;

void VFPtrInterface::operator delete(void* block, std::size_t size) noexcept { CountedHeap::release(block, size); }

void* PtrInterface::operator new(std::size_t size) {
  void* const block = CountedHeap::allocate(size);
  Birth::allocated(block, size);
  return block;
}

void PtrInterface::operator delete(void* block, std::size_t size) noexcept {
  VFPtrInterface::operator delete(block, size);
}

namespace {

// Asked for by each object that is made.
[[gnu::tls_model("initial-exec")]] constinit thread_local Birth* innermostBirth = nullptr;

}  // namespace

Birth::Birth() noexcept : outer_(innermostBirth) { innermostBirth = this; }

Birth::~Birth() { innermostBirth = outer_; }

void Birth::done() noexcept {
  if (object_ != nullptr) object_->heldIs(false);
}

void Birth::allocated(void const* block, std::size_t size) noexcept {
  Birth* const birth = innermostBirth;
  if (birth == nullptr || birth->block_ != nullptr) return;
  birth->block_ = block;
  birth->size_ = size;
}

bool Birth::holds(PtrInterface const* object) noexcept {
  Birth* const birth = innermostBirth;
  if (birth == nullptr || birth->object_ != nullptr) return false;
  auto const* const begin = static_cast<unsigned char const*>(birth->block_);
  auto const* const at = reinterpret_cast<unsigned char const*>(object);
  if (begin == nullptr || at < begin || at >= begin + birth->size_) return false;
  birth->object_ = object;
  return true;
}

PtrInterface::PtrInterface() noexcept : VFPtrInterface(Birth::holds(this) ? heldBit : 0) {
  if (ptrifTrackOn_) PtrTrack::ptrifAdd(this);
}

PtrInterface::~PtrInterface() {
  if (ptrifTrackOn_) PtrTrack::ptrifDel(this);
  assert(references() == 0 && "object destroyed while somebody still holds it");
}

void PtrInterface::referencesLeak() const noexcept {
  referencesInc();
  if (ptrifTrackOn_) PtrTrack::ptrifDel(this);
}

void PtrInterface::hasNotificationActiveIs(bool on) { stateBitIs(notificationActiveBit, on); }

U32 PtrInterface::vekAuditErrors(U32) const { return 0; }

U32 PtrInterface::auditErrors(U32 level) const { return static_cast<int>(level) < 0 ? 0 : vekAuditErrors(level); }

void PtrInterface::zeroReferencesIs(bool) {}

VekType* PtrInterface::fwkType() const { return nullptr; }

void PtrInterface::handleZeroRef() const noexcept {
  auto* const self = const_cast<PtrInterface*>(this);
  heldIs(true);
  try {
    self->zeroReferencesIs(true);
  } catch (...) {
    // A reactor's last word cannot keep the object from going.
  }
  if (references() == 0) {
    delete self;  // still held: destructors may call reactors that take and drop references
    return;
  }
  if ((heldIs(false) & zeroMask) == 0) handleZeroRef();  // the keeper let go on another thread meanwhile
}

}  // namespace Vek
