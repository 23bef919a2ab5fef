// HashIndex: finds the number under which an element stands in a table that keeps the elements itself. Eight bytes a
// slot, no node per element: the tables of next hops stay as small as what they hold.
#pragma once

#include <cassert>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace Apps::Kernel {

using HashValue = std::uint32_t;

/// The hash of some bytes.
[[nodiscard]] inline HashValue hashOf(std::string_view bytes) noexcept {
  std::size_t const whole = std::hash<std::string_view>{}(bytes);
  return static_cast<HashValue>(whole ^ (whole >> 32U));
}

class HashIndex {
 public:
  static constexpr std::uint32_t none = 0xffffffff;

  /// The number of the element with `hash` of which `same(number)` is true; `none` if there is none.
  template <class Same>
  [[nodiscard]] std::uint32_t find(HashValue hash, Same&& same) const {
    if (slots_.empty()) return none;
    for (std::size_t i = hash & mask();; i = (i + 1) & mask()) {
      Slot const& slot = slots_[i];
      if (slot.number == none) return none;
      if (slot.hash == hash && same(slot.number)) return slot.number;
    }
  }

  /// Enters an element that is not there yet. `number` is not `none`.
  void add(HashValue hash, std::uint32_t number) {
    assert(number != none && "the number that stands for no element");
    if ((used_ + 1) * 4 > slots_.size() * 3) grow();
    place({hash, number});
    ++used_;
  }

  void clear() noexcept {
    slots_.clear();
    used_ = 0;
  }

 private:
  struct Slot {
    HashValue hash = 0;
    std::uint32_t number = none;
  };

  // Invariant: the number of slots is 0 or a power of two, and at least a quarter of them is free.
  [[nodiscard]] std::size_t mask() const noexcept { return slots_.size() - 1; }

  void place(Slot const& slot) noexcept {
    std::size_t i = slot.hash & mask();
    while (slots_[i].number != none) i = (i + 1) & mask();
    slots_[i] = slot;
  }

  void grow() {
    std::vector<Slot> old(slots_.empty() ? 16 : slots_.size() * 2);
    old.swap(slots_);
    for (Slot const& slot : old) {
      if (slot.number != none) place(slot);
    }
  }

  std::vector<Slot> slots_;
  std::size_t used_ = 0;
};

}  // namespace Apps::Kernel
