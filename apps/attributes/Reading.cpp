#include "apps/attributes/Reading.h"

#include "core/String8.h"
#include "platform/vek/ScalarText.h"

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

// The text of every plain value is that of a literal.
Json literal(Vek::String8 const& text) {
  std::string_view const view = text;
  if (view == "True" || view == "False") return view == "True";
  if (view == "None") return nullptr;
  if (!view.empty() && view.front() == '\'') {
    Vek::String8::IteratorConst it{text};
    return std::string{Vek::sequenceToValue(it, it.end(), static_cast<Vek::String8*>(nullptr)).view()};
  }
  Json const number = Json::parse(view, nullptr, false);
  return number.is_number() ? number : Json(std::string{view});
}

Json jsonOfValue(Vek::GenericIf& value) {
  Vek::VekType const& type = *value.type();
  bool const isRecord = type.isValue() && !type.attributes().empty() && type.valAttr() == nullptr;
  if (!isRecord) return literal(value.strRep());
  Json record = Json::object();
  for (auto const& attr : type.attributes()) {
    Generic const field = value.attributeOp({attr->id(), Vek::GenericIf::OpGet}, nullptr, nullptr);
    record[std::string{attr->name().view()}] = jsonOfValue(*field);
  }
  return record;
}

Json toJson(Reading const& reading) {
  if (reading.value) return jsonOfValue(*reading.value);
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
