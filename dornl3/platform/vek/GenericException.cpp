#include "dornl3/platform/vek/GenericException.h"

#include <array>
#include <utility>

namespace Vek {

namespace {

Exception::IdBitArray only(Exception::Id id) noexcept {
  Exception::IdBitArray ids;
  ids.add(id);
  return ids;
}

String8 operationName(int code) {
  struct Named {
    int code;
    char const* name;
  };
  constexpr std::array names{Named{0, "get"},      Named{1, "count"}, Named{2, "version"}, Named{3, "contains"},
                             Named{100, "equals"}, Named{128, "set"}, Named{129, "del"}};
  for (Named const& named : names) {
    if (named.code == code) return named.name;
  }
  return format("operation %d", code);
}

}  // namespace

GenericException::GenericException(String8 message, String8 subject, Id id)
    : Exception(std::move(message), only(id), true), subject_(std::move(subject)) {}
GenericException::~GenericException() = default;

TypeException::TypeException(String8 const& subject)
    : GenericException(subject + ": a value is missing, or is of another type", subject, id) {}
TypeException::~TypeException() = default;

ConstException::ConstException(String8 const& message) : GenericException(message, message, id) {}
ConstException::~ConstException() = default;

BadIndexAttrException::BadIndexAttrException(String8 const& attribute)
    : GenericException(attribute + " takes no key here", attribute, id) {}
BadIndexAttrException::~BadIndexAttrException() = default;

OpNotSupportedException::OpNotSupportedException(String8 const& attribute, int code)
    : GenericException(attribute + " does not support " + operationName(code), attribute, id), code_(code) {}
OpNotSupportedException::~OpNotSupportedException() = default;

UnknownArgException::UnknownArgException(String8 const& subject)
    : GenericException(subject + ": more arguments are given than it takes", subject, id) {}
UnknownArgException::~UnknownArgException() = default;

}  // namespace Vek
