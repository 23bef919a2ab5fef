// VlanIdOrNone: the number of a VLAN, or 0 for none.
// Owner: it is a plain value. Thread: its owner's.
#pragma once

#include "dornl3/platform/attrlog/Out.h"
#include "dornl3/platform/vek/TextReader.h"

namespace Vek {
class VekType;
}

namespace Bridging {

class VlanIdOrNone {
 public:
  static constexpr unsigned short max = 4094;
  static constexpr char const* vekDeclaredName = "Bridging::VlanIdOrNone";

  /// None.
  constexpr VlanIdOrNone() noexcept = default;
  /// Throws RangeException above 4094.
  explicit VlanIdOrNone(unsigned short v) : value_(v) {
    if (value_ > max) throwOutOfRange();
  }
  /// Reads a number, 0 for none. Throws RangeException on bad text.
  VlanIdOrNone(Vek::String8::IteratorConst& it, Vek::String8::IteratorConst const& end);

  [[nodiscard]] constexpr unsigned short value() const noexcept { return value_; }
  [[nodiscard]] constexpr bool operator==(VlanIdOrNone const&) const noexcept = default;
  [[nodiscard]] constexpr bool operator<(VlanIdOrNone other) const noexcept { return value_ < other.value_; }

  /// The hash of a key; the number itself spreads best, since VLANs come in ranges.
  [[nodiscard]] constexpr Vek::U32 hash() const noexcept { return value_; }

  static Vek::VekType* _fwkType();

 private:
  [[noreturn]] static void throwOutOfRange();

  unsigned short value_ = 0;
};

[[nodiscard]] Vek::String8 valueToStrep(VlanIdOrNone const& id);

inline Vek::NboAttrLog::OutPtr const& operator<<(Vek::NboAttrLog::OutPtr const& out, VlanIdOrNone id) {
  return out << id.value();
}

}  // namespace Bridging
