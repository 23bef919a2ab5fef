#include "apps/show/JsonForm.h"

#include <nlohmann/json.hpp>

namespace Apps::Show {

namespace {

using Json = nlohmann::ordered_json;

struct ToJson {
  Json operator()(bool value) const { return value; }
  Json operator()(std::uint64_t value) const { return value; }
  Json operator()(Time const& value) const { return value.seconds; }
  Json operator()(std::vector<Field> const& fields) const {
    Json record = Json::object();
    for (Field const& field : fields) record[std::string{field.name}] = field.value;
    return record;
  }
  Json operator()(std::vector<Member> const& members) const {
    Json collection = Json::object();
    for (Member const& member : members) collection[std::to_string(member.key)] = std::visit(*this, member.value);
    return collection;
  }
};

// The object of the entity with that full name, inside those of its parents.
Json& objectOf(Json& all, std::string_view entity) {
  Json* object = &all;
  std::size_t dot = entity.find('.');
  for (; dot != std::string_view::npos; dot = entity.find('.')) {
    object = &(*object)[std::string{entity.substr(0, dot)}];
    entity.remove_prefix(dot + 1);
  }
  return (*object)[std::string{entity}];
}

}  // namespace

std::string jsonForm(std::vector<Figure> const& figures) {
  Json json = Json::object();
  for (Figure const& figure : figures) {
    objectOf(json, figure.entity)[std::string{figure.attribute}] = std::visit(ToJson{}, figure.value);
  }
  return json.dump(2) + '\n';
}

}  // namespace Apps::Show
