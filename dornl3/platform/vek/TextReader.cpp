#include "dornl3/platform/vek/TextReader.h"

#include "dornl3/core/Throwers.h"

#include <cxxabi.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace Vek {

namespace {

using Cursor = String8::IteratorConst;

constexpr bool isBlank(char byte) noexcept { return byte == ' ' || (byte >= '\t' && byte <= '\r'); }

}  // namespace

void needString(Cursor& it, Cursor const& end, char const* pattern) {
  std::string_view const text = between(it, end);
  std::size_t at = 0;
  for (char const* wanted = pattern; *wanted != '\0'; ++wanted) {
    if (*wanted == ' ') {
      while (at < text.size() && isBlank(text[at])) ++at;
    } else if (at < text.size() && text[at] == *wanted) {
      ++at;
    } else {
      it += static_cast<int>(at);
      throwExpected(pattern, it, end);
    }
  }
  it += static_cast<int>(at);
}

void throwExpected(char const* what, Cursor const& it, Cursor const& end) {
  std::string_view expected = what;
  while (!expected.empty() && expected.front() == ' ') expected.remove_prefix(1);
  while (!expected.empty() && expected.back() == ' ') expected.remove_suffix(1);
  constexpr std::size_t shown = 24;
  std::string_view const rest = between(it, end);
  String8 const found = rest.empty() ? String8("the end of the text") : valueToStrep(String8(rest.substr(0, shown)));
  throwRangeException(format("expected %.*s at column %d, found %s", static_cast<int>(expected.size()), expected.data(),
                             it.position(), found.charPtr()));
}

void needEnd(Cursor const& it, Cursor const& end) {
  if (it == end) return;
  throwRangeException(
      format("junk at column %lld deserializing %s", static_cast<long long>(it.position()), it.data().bytes()));
}

void cannotConvert(Cursor const& it, Cursor const& /*end*/, std::type_info const& wanted) {
  std::unique_ptr<char, void (*)(void*)> const name{abi::__cxa_demangle(wanted.name(), nullptr, nullptr, nullptr),
                                                    std::free};
  throwRangeException(format("cannot convert %s to %s", it.data().bytes(), name ? name.get() : wanted.name()));
}

void rethrowFromDeserializeAttr(RangeException const& exception, String8& attrName) {
  throw RangeException(attrName + ": " + exception.message(), exception.ids());
}

}  // namespace Vek
