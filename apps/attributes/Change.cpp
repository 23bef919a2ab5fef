#include "apps/attributes/Change.h"

#include "apps/attributes/ValueJson.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <ctime>

namespace Apps::Attributes {

namespace {

// "2026-11-25T00:53:13.042"
std::string localTime(double time) {
  long long const milliseconds = std::llround(time * 1000);
  long long const rest = ((milliseconds % 1000) + 1000) % 1000;
  auto const seconds = static_cast<std::time_t>((milliseconds - rest) / 1000);
  std::tm parts{};
  localtime_r(&seconds, &parts);
  return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}.{:03}", parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday,
                     parts.tm_hour, parts.tm_min, parts.tm_sec, rest);
}

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
