// Figures: what is shown of the entities, in order. The one list behind all printed forms.
#pragma once

#include "apps/show/Roots.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace Apps::Show {

/// One attribute of a record.
struct Field {
  std::string_view name;
  std::string_view label;  // what a table calls it
  std::uint64_t value;
};

struct Time {
  double seconds;  // since 1970
};

/// One member of a collection.
struct Member {
  std::uint64_t key;
  std::variant<bool, std::uint64_t> value;
  std::string text;  // the value's text form
};

struct Figure {
  std::string_view entity;     // its full name: "status", "status.lemV4RouteStats"
  std::string_view attribute;  // "ipv4RouteStats"
  std::string_view group;      // the heading under which a table has it
  std::string_view label;      // what a table calls it there: its line, or its column
  std::variant<bool, std::uint64_t, Time, std::vector<Field>, std::vector<Member>> value;  // members by rising key
  std::string text;           // the value's text form; of a collection empty, its members have their own
  std::string_view row = {};  // what a table calls its row; of a collection, the rows: the key follows
};

[[nodiscard]] std::vector<Figure> figuresOf(Roots const& roots);

}  // namespace Apps::Show
