// PlainGeneric: generics of values that have no attributes: builtin scalars, strings, names and the ids from outside.
// Owner: whoever holds a reference. Thread: any, one at a time.
#pragma once

#include "dornl3/platform/vek/GenericIf.h"
#include "dornl3/platform/vek/NamedType.h"
#include "dornl3/platform/vek/TextReader.h"

namespace Vek {

/// The text of a plain value.
template <class T>
[[nodiscard]] String8 plainText(T const& value) {
  if constexpr (std::is_same_v<T, Name>) {
    return valueToStrep(String8(value));
  } else if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>) {
    return valueToStrep(static_cast<unsigned long long>(value));
  } else {
    return valueToStrep(value);
  }
}

/// Reads a plain value; `it` is left behind it.
template <class T>
[[nodiscard]] T readPlain(String8::IteratorConst& it, String8::IteratorConst const& end) {
  if constexpr (std::is_same_v<T, Name>) {
    return Name(sequenceToValue(it, end, static_cast<String8*>(nullptr)));
  } else {
    return readScalar<T>(it, end);
  }
}

/// A copy of a value.
template <class T>
class PlainGeneric final : public GenericIf {
 public:
  PlainGeneric(T value, bool isConst, VekType const* type)
      : GenericIf(isConst), value_(std::move(value)), type_(type) {}

  [[nodiscard]] VekType const* type() const override { return type_; }
  [[nodiscard]] void const* voidPtrIs(Ptr<VekType const> const& t) const override {
    if (t.ptr() != type_) throwTypeException(String8(type_->name()));
    return &value_;
  }
  [[nodiscard]] String8 strRep() const override { return plainText(value_); }
  using GenericIf::clone;
  [[nodiscard]] Ptr<GenericIf> clone() override { return make<PlainGeneric>(value_, isConst(), type_); }

  /// Compares with another generic of the same type; there is nothing else to ask of a plain value.
  Ptr<GenericIf> attributeOp(AttributeOp const& op, Ptr<GenericIf const> const& key,
                             Ptr<GenericIf> const& value) override;

 private:
  T value_;
  VekType const* type_;
};

/// The record of such a type.
template <class T>
class PlainType final : public VekType {
 public:
  using VekType::genericIf;

  explicit PlainType(char const* fullName) : VekType(shortTypeName(fullName), nullptr, nullptr, {}) {}

  [[nodiscard]] Ptr<GenericIf> genericIf(void const* value, bool isConst) const override {
    return make<PlainGeneric<T>>(value == nullptr ? T() : *static_cast<T const*>(value), isConst, this);
  }
  [[nodiscard]] Ptr<GenericIf> genericIf(String8 const& text, bool isConst) const override {
    String8::IteratorConst it{text};
    String8::IteratorConst const end = it.end();
    T const value = readPlain<T>(it, end);
    needEnd(it, end);
    return genericIf(&value, isConst);
  }
};

/// A registered record of that type.
template <class T>
[[nodiscard]] VekType* plainType(char const* fullName) {
  return registerValueType(make<PlainType<T>>(fullName), fullName, sizeof(T));
}

/// The answer to a question, as a generic.
[[nodiscard]] Ptr<GenericIf> boolGeneric(bool value, bool isConst);

template <class T>
Ptr<GenericIf> PlainGeneric<T>::attributeOp(AttributeOp const& op, Ptr<GenericIf const> const& key,
                                            Ptr<GenericIf> const& value) {
  needMutable(op);
  if (op.attribute != 0 || op.op != OpEquals) return GenericIf::attributeOp(op, key, value);
  if (!key) throwTypeException("vekOpArg");
  return boolGeneric(*static_cast<T const*>(key->voidPtrIs(type_)) == value_, isConst());
}

}  // namespace Vek
