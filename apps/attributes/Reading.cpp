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

Reading open(Place const& place, Look const& look);

Reading readValue(Place const& place, Generic const& value, Look const& look) {
  Reading reading{.path = place.path, .step = stepOf(place)};
  if (isInOnePiece(*value->type(), look)) {
    reading.value = value;
    return reading;
  }
  for (auto const& attr : value->type()->attributes()) {
    Place const field = attributeOf(place, value, *attr);
    Filled const& filled = look.filled->at(attr->name().view());
    if (!filled.isNone())
      reading.parts.push_back(readValue(field, valueAt(field), {look.depth, look.records, &filled}));
  }
  return reading;
}

Reading closed(Place const& place, Look const& look) {
  if (place.isCollection()) return {.path = place.path, .step = stepOf(place), .members = countAt(place)};
  return readValue(place, valueAt(place), look);
}

Reading part(Place const& place, Look const& look) {
  return look.depth == Depth::all ? open(place, look) : closed(place, look);
}

Reading openCollection(Place const& collection, Look const& look) {
  Reading reading{.path = collection.path, .step = stepOf(collection)};
  forEachMember(collection, [&](Place const& member) { reading.parts.push_back(part(member, look)); });
  return reading;
}

Reading open(Place const& place, Look const& look) {
  if (place.isCollection()) return openCollection(place, look);
  // Only a child is followed: what an attribute merely refers to may lead back up.
  bool const isEntity = place.attr == nullptr || place.attr->flags().isInstantiating();
  Generic const here = valueAt(place);
  if (!isEntity || !entityOf(*here)) return readValue(place, here, look);
  Reading reading{.path = place.path, .step = stepOf(place)};
  for (auto const& attr : here->type()->attributes()) {
    Filled const& filled = look.filled->at(attr->name().view());
    if (!isOwn(*here->type(), *attr) || filled.isNone()) continue;
    reading.parts.push_back(part(attributeOf(place, here, *attr), {look.depth, look.records, &filled}));
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

bool isInOnePiece(Vek::VekType const& type, Look const& look) {
  return !isRecord(type) || (look.records == Records::whole && look.filled->isAll());
}

Reading read(Place const& place, Look const& look) { return open(place, look); }

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
