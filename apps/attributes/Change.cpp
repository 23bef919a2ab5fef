#include "apps/attributes/Change.h"

#include "apps/LocalTime.h"
#include "apps/attributes/ValueJson.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace Apps::Attributes {

namespace {

std::string textLine(Change const& change) {
  if (!change.value) return change.path + ": gone\n";
  return fmt::format("{} = {}\n", change.path, change.value->strRep().view());
}

std::string jsonLine(Change const& change, double time) {
  nlohmann::ordered_json line{{"time", time}, {"path", change.path}};
  if (change.value) {
    line["value"] = valueJson(*change.value);
  } else {
    line["gone"] = true;
  }
  return line.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + '\n';
}

}  // namespace

std::string linesOf(std::vector<Change> const& changes, double time, Form form, Stamp stamp) {
  std::string const ahead = stamp == Stamp::time && form == Form::text ? localTime(time) + ' ' : "";
  std::string lines;
  for (Change const& change : changes) lines += form == Form::json ? jsonLine(change, time) : ahead + textLine(change);
  return lines;
}

}  // namespace Apps::Attributes
