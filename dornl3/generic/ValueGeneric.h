// ValueGeneric: the generic of a value of type X, X::GenericIf_: its own copy of the value, read by attribute number,
// compared, and built from lists and texts. What depends on X's attributes stands in ValueOps.
// Owner: whoever holds a reference. Thread: any, one at a time.
#pragma once

#include "dornl3/platform/vek/GenericIf.h"
#include "dornl3/platform/vek/VekType.h"

namespace Vek {

/// `Passed` is how an X travels as an argument: `X const&`, or X itself where that is as narrow.
template <class X, class Passed>
class ValueGeneric : public GenericIf {
 public:
  ValueGeneric(Passed value, bool isConst) : GenericIf(isConst), value_(value) {
    GenericIf::isRegisteredNotifieeIs(true);  // of every fresh one, though a value has no list
  }

  [[nodiscard]] X const& value() const noexcept { return value_; }
  /// Overwrites the value, of a const generic too, and tells nobody.
  virtual void valIs(Passed value) { value_ = value; }

  [[nodiscard]] VekType const* type() const override { return X::_fwkType(); }
  [[nodiscard]] void const* voidPtrIs(Ptr<VekType const> const& t) const override {
    if (t.ptr() != X::_fwkType()) throwTypeException(String8(X::_fwkType()->name()));
    return &value_;
  }
  [[nodiscard]] String8 strRep() const override { return valueToStrep(value_); }
  using GenericIf::clone;
  [[nodiscard]] Ptr<GenericIf> clone() override { return X::GenericIf_::GenericIf_Is(value_, isConst()); }

 private:
  X value_;
};

}  // namespace Vek
