// TextReader: what the parsers of values and entity references share.
// Thread: any; a cursor belongs to who reads. Re-entrancy: it calls nobody but the readers given to it.
#pragma once

#include "dornl3/core/Exception.h"
#include "dornl3/core/String8.h"
#include "dornl3/platform/vek/ScalarText.h"

#include <typeinfo>

namespace Vek {

/// Moves `it` past `pattern`, in which a blank stands for any run of white space, also an empty one. Throws
/// RangeException and leaves `it` at the first byte that does not match.
void needString(String8::IteratorConst& it, String8::IteratorConst const& end, char const* pattern);

/// The text from `it` up to `end`.
[[nodiscard]] inline std::string_view between(String8::IteratorConst const& it,
                                              String8::IteratorConst const& end) noexcept {
  auto const length = static_cast<long long>(end.position()) - it.position();
  return length <= 0 ? std::string_view{} : it.rest().substr(0, static_cast<std::size_t>(length));
}

/// Throws RangeException: what was expected, at which column, and what stands there.
[[noreturn]] void throwExpected(char const* what, String8::IteratorConst const& it, String8::IteratorConst const& end);

/// Throws RangeException "junk at column ... deserializing ..." where `it` has not reached `end`.
void needEnd(String8::IteratorConst const& it, String8::IteratorConst const& end);

/// Throws RangeException: the text names something that is no `wanted`.
[[noreturn]] void cannotConvert(String8::IteratorConst const& it, String8::IteratorConst const& end,
                                std::type_info const& wanted);

/// Raises the exception again with the attribute's name ahead of its message.
[[noreturn]] void rethrowFromDeserializeAttr(RangeException const& exception, String8& attrName);

/// Runs a reader for the attribute of that name; a RangeException out of it names the attribute.
template <class Reader>
auto deserializeNamed(String8 attrName, Reader const& reader) {
  try {
    return reader();
  } catch (RangeException const& exception) {
    RangeException const copy = exception;
    rethrowFromDeserializeAttr(copy, attrName);
  }
}

/// Reads a value of type T: a builtin scalar, or one that has a reading constructor. All integers come through the
/// signed 64-bit reader, and narrowing cuts bits.
template <class T>
[[nodiscard]] T readScalar(String8::IteratorConst& it, String8::IteratorConst const& end) {
  if constexpr (std::is_same_v<T, double>) {
    return static_cast<double>(sequenceToValue(it, end, static_cast<long double*>(nullptr)));
  } else if constexpr (std::is_same_v<T, bool> || std::is_same_v<T, String8>) {
    return sequenceToValue(it, end, static_cast<T*>(nullptr));
  } else if constexpr (std::is_integral_v<T>) {
    return static_cast<T>(sequenceToValue(it, end, static_cast<long long*>(nullptr)));
  } else {
    return T(it, end);
  }
}

/// Reads the value of an attribute; `tag` only selects the type.
template <class T>
[[nodiscard]] T deserializeAttr(String8::IteratorConst& it, String8::IteratorConst const& end, T* /*tag*/,
                                String8 attrName) {
  return deserializeNamed(std::move(attrName), [&it, &end] { return readScalar<T>(it, end); });
}

}  // namespace Vek
