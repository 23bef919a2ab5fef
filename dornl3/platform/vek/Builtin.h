// Builtin: the run-time type records of the attribute types that are not classes of their own.
// Owner: the process. Thread: any.
#pragma once

#include "dornl3/core/Name.h"

namespace Vek {

class VekType;

template <class T>
struct Builtin {
  /// The record; the same one in the whole process.
  static VekType* _fwkType();
};

template <>
VekType* Builtin<U8>::_fwkType();
template <>
VekType* Builtin<U32>::_fwkType();
template <>
VekType* Builtin<U64>::_fwkType();
template <>
VekType* Builtin<bool>::_fwkType();
template <>
VekType* Builtin<Seconds>::_fwkType();
template <>
VekType* Builtin<String8>::_fwkType();

}  // namespace Vek
