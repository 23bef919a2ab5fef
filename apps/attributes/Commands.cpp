#include "apps/attributes/Commands.h"

#include "apps/attributes/Misfit.h"
#include "apps/attributes/TypedPath.h"
#include "dornl3/generic/Digest.h"
#include "dornl3/platform/vek/Path.h"
#include "dornl3/platform/vek/TextReader.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace Apps::Attributes {

namespace {

using Json = nlohmann::ordered_json;

std::string print(Reading const& reading, Form form) { return form == Form::json ? jsonOf(reading) : linesOf(reading); }

// JSON is for programs, which pick what they want: it goes into everything.
Look lookFor(Form form) { return {form == Form::json ? Depth::all : Depth::one}; }

// Whether a path names a value that is shown in one piece, so that it can be set in one.
bool isWhole(Place const& place, Filled const& filled) {
  return place.attr != nullptr && !place.isCollection() && place.attr->valueType()->isValue() && filled.isAll();
}

[[noreturn]] void refuse(Place const& place, std::string_view why) {
  throw Misfit(fmt::format("{} {}.", place.path, why));
}

std::string whyReadOnly(Place const& place) {
  if (place.holder->type()->isEntity()) return "is read only";
  return fmt::format("is part of a value, which is set as a whole: set {}",
                     place.path.substr(0, place.path.rfind('.')));
}

void needMember(Place const& place) {
  if (place.isCollection()) refuse(place, "is a collection: " + keyHint(place.path, *place.attr));
}

void setValue(Place const& place, std::optional<std::string> const& text) {
  Vek::VekType const& type = *place.attr->valueType();
  if (!text) refuse(place, fmt::format("needs a value: {}", wanted(type)));
  assign(place, fromText(type, *text, "The value of " + place.path));
}

void setChild(Place const& place, std::optional<std::string> const& text) {
  bool const isPresent = static_cast<bool>(entityOf(*valueAt(place)));
  if (isPresent && !text) return;
  std::optional<Vek::Name> name;
  if (text) {
    Vek::String8 const all{*text};
    Vek::String8::IteratorConst it{all};
    try {
      name = Vek::readPathComponent(it, it.end());
      Vek::needEnd(it, it.end());
    } catch (Vek::RangeException const& complaint) {
      refuse(place,
             fmt::format("is a child, whose value is its name; {} is none: {}", inQuotes(*text), complaint.what()));
    }
  }
  makeChild(place, name);
}

void setMemberChild(Place const& place, std::optional<std::string> const& text) {
  if (text) refuse(place, "is a child that is made by its key alone: leave out the value");
  makeChild(place, std::nullopt);
}

// Whether what the path names is there: a member, or a child; a value always is, where its entity is.
bool isThereAt(Vek::Dir const& roots, std::string const& path) {
  try {
    Place const place = resolve(roots, path);
    if (place.isMember()) return isThere(place);
    return place.kind() != Kind::child || static_cast<bool>(entityOf(*valueAt(place)));
  } catch (Misfit const&) {
    return false;  // nor is what would hold it
  }
}

}  // namespace

Answer get(Vek::Dir const& roots, std::vector<std::string> const& paths, Look const& look, Form form) {
  Selection const selection = select(roots, paths, *look.filled);
  bool const isJson = form == Form::json;
  Depth const depth = isJson || paths.empty() ? Depth::all : look.depth;
  std::vector<Reading> readings;
  readings.reserve(selection.places.size());
  for (Selected const& selected : selection.places) {
    Place const place = resolve(selected.path);
    Records const records = isWhole(place, *selected.filled) ? Records::whole : look.records;
    readings.push_back(read(place, {depth, records, selected.filled}));
  }
  if (isJson) return {paths.size() == 1 ? jsonOf(readings.front()) : jsonOf(readings), notesOf(selection)};
  if (readings.size() == 1 && readings.front().value) {
    return {fmt::format("{}\n", readings.front().value->strRep().view()), notesOf(selection)};
  }
  std::string lines;
  for (Reading const& reading : readings) lines += linesOf(reading);
  return {lines, notesOf(selection)};
}

std::string digests(Vek::Dir const& roots, std::vector<std::string> const& paths, Form form) {
  std::string lines;
  Json all = Json::object();
  for (Selected const& selected : select(roots, paths, Filled::everything()).places) {
    Place const place = resolve(selected.path);
    Vek::Ptr<Vek::Entity> const entity = place.isCollection() ? nullptr : entityOf(*valueAt(place));
    if (!entity) refuse(place, "is no entity: only an entity has a digest");
    std::string const digits = fmt::format("{:016x}", Vek::digest(*entity));
    lines += paths.size() == 1 ? digits + '\n' : fmt::format("{} = {}\n", place.path, digits);
    all[place.path] = digits;
  }
  if (form == Form::text) return lines;
  return (paths.size() == 1 ? all.front() : all).dump(2) + '\n';
}

Answer set(Vek::Dir const& roots, std::string const& path, std::optional<std::string> const& value, Missing missing,
           Form form, Confirm const& confirm) {
  Place const place = resolve(roots, path, missing);
  if (place.attr == nullptr) refuse(place, "is a root entity, which is there already: set one of its attributes");
  needMember(place);
  switch (place.kind()) {
  case Kind::readOnly: refuse(place, whyReadOnly(place));
  case Kind::scalar:
  case Kind::elements: setValue(place, value); break;
  case Kind::child: setChild(place, value); break;
  case Kind::children: setMemberChild(place, value); break;
  }
  bool const isValue = place.kind() == Kind::scalar || place.kind() == Kind::elements;
  std::string const asked = linesOf(read(place, {}));
  confirm();
  if (!isThereAt(roots, path)) return {"", {place.path + " is not there: its owner has removed it."}, false};
  Place const confirmed = resolve(roots, path);
  Answer answer{print(read(confirmed, lookFor(form)), form)};
  if (!isValue || linesOf(read(confirmed, {})) == asked) return answer;  // a child is there: what it holds is its own
  answer.notes.push_back(place.path + " is not as it was to be: its owner has made something else of it, as printed.");
  answer.isAsAsked = false;
  return answer;
}

Answer del(Vek::Dir const& roots, std::string const& path, Form form, Confirm const& confirm) {
  Place const place = resolve(roots, path);
  needMember(place);
  bool const isRemovable = place.isMember() || (place.attr != nullptr && place.kind() == Kind::child);
  if (!isRemovable) refuse(place, "is always there: only members of collections and children can be removed");
  if (!place.isMember() && !entityOf(*valueAt(place))) refuse(place, "is not there: there is nothing to remove");
  std::string const gone = print(read(place, {Depth::all}), form);
  remove(place);
  confirm();
  if (!isThereAt(roots, path)) return {gone};
  return {print(read(resolve(roots, path), {Depth::all}), form),
          {place.path + " is there: its owner has not let it go, or made it again, as printed."},
          false};
}

Answer count(Vek::Dir const& roots, std::string const& path, Filled const& filled, Form form) {
  Selection const selection = select(roots, {path}, filled);
  Place const place = resolve(selection.places.front().path);
  if (!place.isCollection()) refuse(place, "is no collection: only a collection has a count");
  std::string const members = form == Form::json ? Json(countAt(place)).dump() : fmt::format("{}", countAt(place));
  return {members + '\n', notesOf(selection)};
}

}  // namespace Apps::Attributes
