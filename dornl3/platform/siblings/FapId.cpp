#include "dornl3/platform/siblings/FapId.h"

#include "dornl3/core/Throwers.h"
#include "dornl3/platform/siblings/Number16.h"
#include "dornl3/platform/vek/PlainGeneric.h"

namespace Hardware::Dorn {

FapId::FapId(Vek::String8::IteratorConst& it, Vek::String8::IteratorConst const& end)
    : FapId(Vek::readNumber16(it, end, null, throwOutOfRange)) {}

void FapId::throwOutOfRange() { Vek::throwRangeException("FapId::value < FapId::min or > FapId::null not allowed"); }

Vek::VekType* FapId::_fwkType() {
  static Vek::VekType* const type = Vek::plainType<FapId>(vekDeclaredName);
  return type;
}

Vek::String8 valueToStrep(FapId const& id) { return Vek::valueToStrep(Vek::U64{id.value()}); }

}  // namespace Hardware::Dorn
