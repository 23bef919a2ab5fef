#include "platform/vek/Builtin.h"

#include "platform/vek/NamedType.h"

namespace Vek {

template <>
VekType* Builtin<U8>::_fwkType() {
  static VekType* const type = namedValueType("U8", sizeof(U8));
  return type;
}

template <>
VekType* Builtin<U32>::_fwkType() {
  static VekType* const type = namedValueType("U32", sizeof(U32));
  return type;
}

template <>
VekType* Builtin<U64>::_fwkType() {
  static VekType* const type = namedValueType("U64", sizeof(U64));
  return type;
}

template <>
VekType* Builtin<bool>::_fwkType() {
  static VekType* const type = namedValueType("bool", sizeof(bool));
  return type;
}

template <>
VekType* Builtin<Seconds>::_fwkType() {
  static VekType* const type = namedValueType("Vek::Seconds", sizeof(Seconds));
  return type;
}

template <>
VekType* Builtin<String8>::_fwkType() {
  static VekType* const type = namedValueType("Vek::String", sizeof(String8));
  return type;
}

VekType* Name::_fwkType() {
  static VekType* const type = namedValueType("Vek::Name", sizeof(Name));
  return type;
}

}  // namespace Vek
