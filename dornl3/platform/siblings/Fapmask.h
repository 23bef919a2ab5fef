// Fapmask: a set of fabric access processors, opaque to those who pass it on.
// Owner: it is a plain value. Thread: its owner's.
#pragma once

#include "dornl3/platform/attrlog/In.h"
#include "dornl3/platform/vek/TextReader.h"

#include <array>

namespace Vek {
class VekType;
}

namespace Kiln {

class Fapmask {
 public:
  using Words = std::array<Vek::U32, 4>;
  static constexpr char const* vekDeclaredName = "Kiln::Fapmask";

  /// The empty set.
  constexpr Fapmask() noexcept = default;
  constexpr explicit Fapmask(Words const& words) noexcept : words_(words) {}

  /// Reads the text that valueToStrep writes. Throws RangeException on bad text.
  Fapmask(Vek::String8::IteratorConst& it, Vek::String8::IteratorConst const& end);

  /// Reads the words from a log.
  Fapmask(Vek::NboAttrLog::In* in, Vek::StreamBogon);

  [[nodiscard]] constexpr Words const& words() const noexcept { return words_; }
  [[nodiscard]] bool operator==(Fapmask const& other) const noexcept = default;

  static Vek::VekType* _fwkType();

 private:
  Words words_{};
};

static_assert(sizeof(Fapmask) == 16);

/// The words in hexadecimal, in order: '0000000f:00000000:00000000:00000000'.
[[nodiscard]] Vek::String8 valueToStrep(Fapmask const& mask);

/// The words in order, 16 bytes.
Vek::NboAttrLog::OutPtr const& operator<<(Vek::NboAttrLog::OutPtr const& out, Fapmask const& mask);

}  // namespace Kiln
