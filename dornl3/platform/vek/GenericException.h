// GenericException: what the generic interface raises. Each names the attribute, argument or type concerned.
// Owner: an exception is a value. Thread: any.
#pragma once

#include "dornl3/core/Exception.h"

namespace Vek {

/// Root of the exceptions of the generic interface.
class GenericException : public Exception {
 public:
  GenericException(String8 message, String8 subject, Id id);
  GenericException(GenericException const&) noexcept = default;
  GenericException& operator=(GenericException const&) noexcept = default;
  ~GenericException() override;

  /// The attribute, argument or type that does not fit, by its bare name.
  [[nodiscard]] String8 const& subject() const noexcept { return subject_; }

 private:
  String8 subject_;
};

/// A value is missing, or of another type than the one named.
class TypeException : public GenericException {
 public:
  static constexpr Id id = 14;
  explicit TypeException(String8 const& subject);
  TypeException(TypeException const&) noexcept = default;
  ~TypeException() override;
};

/// An instance that may only be read was to be changed.
class ConstException : public GenericException {
 public:
  static constexpr Id id = 15;
  explicit ConstException(String8 const& message);
  ConstException(ConstException const&) noexcept = default;
  ~ConstException() override;
};

/// A key was given where the attribute takes none.
class BadIndexAttrException : public GenericException {
 public:
  static constexpr Id id = 16;
  explicit BadIndexAttrException(String8 const& attribute);
  BadIndexAttrException(BadIndexAttrException const&) noexcept = default;
  ~BadIndexAttrException() override;
};

/// The attribute does not have that operation.
class OpNotSupportedException : public GenericException {
 public:
  static constexpr Id id = 17;
  OpNotSupportedException(String8 const& attribute, int code);
  OpNotSupportedException(OpNotSupportedException const&) noexcept = default;
  ~OpNotSupportedException() override;

  [[nodiscard]] int code() const noexcept { return code_; }

 private:
  int code_;
};

/// More arguments were given than are taken.
class UnknownArgException : public GenericException {
 public:
  static constexpr Id id = 18;
  explicit UnknownArgException(String8 const& subject);
  UnknownArgException(UnknownArgException const&) noexcept = default;
  ~UnknownArgException() override;
};

}  // namespace Vek
