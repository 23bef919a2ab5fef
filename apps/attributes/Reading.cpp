#include "apps/attributes/Reading.h"

#include "apps/attributes/ValueJson.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace Apps::Attributes {

namespace {

using Json = nlohmann::ordered_json;

std::string stepOf(Place const& place) {
  if (place.isMember()) return keyName(*place.key);
  return place.attr == nullptr ? place.path : std::string{place.attr->name().view()};
}

Reading open(Place const& place, Depth depth);

Reading closed(Place const& place) {
  if (place.isCollection()) return {.path = place.path, .step = stepOf(place), .members = countAt(place)};
  return {.path = place.path, .step = stepOf(place), .value = valueAt(place)};
}

Reading part(Place const& place, Depth depth) { return depth == Depth::all ? open(place, depth) : closed(place); }

Reading openCollection(Place const& collection, Depth depth) {
  Reading reading{.path = collection.path, .step = stepOf(collection)};
  forEachMember(collection, [&](Place const& member) { reading.parts.push_back(part(member, depth)); });
  return reading;
}

Reading open(Place const& place, Depth depth) {
  if (place.isCollection()) return openCollection(place, depth);
  // Only a child is followed: what an attribute merely refers to may lead back up.
  bool const isEntity = place.attr == nullptr || place.attr->flags().isInstantiating();
  Generic const here = valueAt(place);
  if (!isEntity || !entityOf(*here)) return {.path = place.path, .step = stepOf(place), .value = here};
  Reading reading{.path = place.path, .step = stepOf(place)};
  for (auto const& attr : here->type()->attributes()) {
    if (isOwn(*here->type(), *attr)) reading.parts.push_back(part(attributeOf(place, here, *attr), depth));
  }
  return reading;
}

Json toJson(Reading const& reading) {
  if (reading.value) return valueJson(*reading.value);
  if (reading.members) return *reading.members;
  Json object = Json::object();
  for (Reading const& part : reading.parts) object[part.step] = toJson(part);
  return object;
}

// Texts may hold any bytes; JSON holds characters.
std::string dump(Json const& json) { return json.dump(2, ' ', false, Json::error_handler_t::replace) + '\n'; }

}  // namespace

Reading read(Place const& place, Depth depth) { return open(place, depth); }

std::string linesOf(Reading const& reading) {
  if (reading.value) return fmt::format("{} = {}\n", reading.path, reading.value->strRep().view());
  if (reading.members) {
    return fmt::format("{}: {} {}\n", reading.path, *reading.members, *reading.members == 1 ? "member" : "members");
  }
  std::string lines;
  for (Reading const& part : reading.parts) lines += linesOf(part);
  return lines;
}

std::string jsonOf(Reading const& reading) { return dump(toJson(reading)); }

std::string jsonOf(std::vector<Reading> const& readings) {
  Json object = Json::object();
  for (Reading const& reading : readings) object[reading.path] = toJson(reading);
  return dump(object);
}

}  // namespace Apps::Attributes
