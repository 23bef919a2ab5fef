#include "platform/siblings/Fapmask.h"

#include "platform/vek/NamedType.h"

namespace Kiln {

Vek::VekType* Fapmask::_fwkType() {
  static Vek::VekType* const type = Vek::namedValueType(vekDeclaredName, sizeof(Fapmask));
  return type;
}

}  // namespace Kiln
