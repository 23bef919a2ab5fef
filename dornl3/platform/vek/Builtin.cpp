#include "dornl3/platform/vek/Builtin.h"

#include "dornl3/platform/vek/PlainGeneric.h"

namespace Vek {

template <>
VekType* Builtin<U8>::_fwkType() {
  static VekType* const type = plainType<U8>("U8");
  return type;
}

template <>
VekType* Builtin<U32>::_fwkType() {
  static VekType* const type = plainType<U32>("U32");
  return type;
}

template <>
VekType* Builtin<U64>::_fwkType() {
  static VekType* const type = plainType<U64>("U64");
  return type;
}

template <>
VekType* Builtin<bool>::_fwkType() {
  static VekType* const type = plainType<bool>("bool");
  return type;
}

template <>
VekType* Builtin<Seconds>::_fwkType() {
  static VekType* const type = plainType<Seconds>("Vek::Seconds");
  return type;
}

template <>
VekType* Builtin<String8>::_fwkType() {
  static VekType* const type = plainType<String8>("Vek::String");
  return type;
}

VekType* Name::_fwkType() {
  static VekType* const type = plainType<Name>("Vek::Name");
  return type;
}

Ptr<GenericIf> boolGeneric(bool value, bool isConst) { return Builtin<bool>::_fwkType()->genericIf(&value, isConst); }

namespace {

// The registry knows them all from the start, whoever asks first.
[[maybe_unused]] bool const registered = [] {
  Builtin<U8>::_fwkType();
  Builtin<U32>::_fwkType();
  Builtin<U64>::_fwkType();
  Builtin<bool>::_fwkType();
  Builtin<Seconds>::_fwkType();
  Builtin<String8>::_fwkType();
  Name::_fwkType();
  PtrInterface::_fwkType();
  GenericIf::List::_fwkType();
  return true;
}();

}  // namespace

}  // namespace Vek
