#include "schemac/Rules.h"

#include <fmt/format.h>

#include <map>

namespace Schemac {

namespace {

constexpr std::uint32_t firstOfValue = 2;     // 0 and 1 are the framework's
constexpr std::uint32_t firstOfEntity = 258;  // below are the framework's, on every entity

}  // namespace

void checkNumbers(Subject const& subject, Type const& type) {
  std::uint32_t expected = type.isEntity() ? firstOfEntity : firstOfValue;
  std::map<std::uint32_t, SourcePosition> seen;
  for (Attribute const& a : type.attributes) {
    SourcePosition const at = a.where("number");
    std::uint32_t const number = a.number == 0 ? expected : a.number;  // 0: Read has spoken about it
    if (auto const [earlier, isNew] = seen.emplace(number, at); !isNew) {
      subject.complain(
          at, fmt::format("number {} stands already in line {}; write {}", number, earlier->second.line, expected));
    } else if (seen.size() == 1 && number != expected) {
      subject.complain(at, fmt::format("numbers of {0} start at {1}; write {1}",
                                       type.isEntity() ? "an entity" : "a value", expected));
    } else if (number > expected) {
      subject.complain(at, fmt::format("number {0} leaves a gap; write {1}, or hold the places of what was there: "
                                       "{{ number = {1}, retired = true }}",
                                       number, expected));
    } else if (number < expected) {
      subject.complain(at, fmt::format("number {} stands behind a greater one; write {}", number, expected));
    }
    expected = number + 1;
  }
}

}  // namespace Schemac
