// Fapmask: a set of fabric access processors, opaque to those who pass it on.
#pragma once

#include <array>

#include "core/Integers.h"

namespace Vek {
class VekType;
}

namespace Kiln {

class [[gnu::visibility("default")]] Fapmask {
 public:
  using Words = std::array<Vek::U32, 4>;
  static constexpr char const* vekDeclaredName = "Kiln::Fapmask";

  /// The empty set.
  constexpr Fapmask() noexcept = default;
  constexpr explicit Fapmask(Words const& words) noexcept : words_(words) {}

  [[nodiscard]] constexpr Words const& words() const noexcept { return words_; }
  [[nodiscard]] bool operator==(Fapmask const& other) const noexcept = default;

  static Vek::VekType* _fwkType();

 private:
  Words words_{};
};

static_assert(sizeof(Fapmask) == 16);

}  // namespace Kiln
