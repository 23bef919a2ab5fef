#include "dornl3/platform/siblings/VlanIdOrNone.h"

#include "dornl3/core/Throwers.h"
#include "dornl3/platform/siblings/Number16.h"
#include "dornl3/platform/vek/PlainGeneric.h"

namespace Bridging {

VlanIdOrNone::VlanIdOrNone(Vek::String8::IteratorConst& it, Vek::String8::IteratorConst const& end)
    : VlanIdOrNone(Vek::readNumber16(it, end, max, throwOutOfRange)) {}

void VlanIdOrNone::throwOutOfRange() { Vek::throwRangeException("VlanIdOrNone::value > 4094 not allowed"); }

Vek::VekType* VlanIdOrNone::_fwkType() {
  static Vek::VekType* const type = Vek::plainType<VlanIdOrNone>(vekDeclaredName);
  return type;
}

Vek::String8 valueToStrep(VlanIdOrNone const& id) { return Vek::valueToStrep(Vek::U64{id.value()}); }

}  // namespace Bridging
