// FapId: the number of a fabric access processor, the chip that an entry lies on.
// Owner: it is a plain value. Thread: its owner's.
#pragma once

#include "dornl3/platform/attrlog/Out.h"
#include "dornl3/platform/vek/TextReader.h"

namespace Vek {
class VekType;
}

namespace Hardware::Dorn {

class FapId {
 public:
  static constexpr unsigned short min = 0;
  static constexpr unsigned short null = 2048;
  static constexpr char const* vekDeclaredName = "Hardware::Dorn::FapId";

  /// The null id.
  FapId() : FapId(null) {}
  /// Throws RangeException above 2048, having stored the number.
  FapId(unsigned short v) : value_(v) {
    if (value_ > null) throwOutOfRange();
  }
  /// Reads a number.
  FapId(Vek::String8::IteratorConst& it, Vek::String8::IteratorConst const& end);

  [[nodiscard]] unsigned short value() const noexcept { return value_; }
  [[nodiscard]] bool operator==(FapId other) const noexcept { return value_ == other.value_; }
  [[nodiscard]] bool operator!=(FapId other) const noexcept { return value_ != other.value_; }
  [[nodiscard]] bool operator<(FapId other) const noexcept { return value_ < other.value_; }

  static Vek::VekType* _fwkType();

 private:
  [[noreturn]] static void throwOutOfRange();

  unsigned short value_;
};

[[nodiscard]] Vek::String8 valueToStrep(FapId const& id);

inline Vek::NboAttrLog::OutPtr const& operator<<(Vek::NboAttrLog::OutPtr const& out, FapId id) {
  return out << id.value();
}

}  // namespace Hardware::Dorn
