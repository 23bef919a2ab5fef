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
};

}  // namespace

std::string jsonForm(std::vector<Figure> const& figures) {
  Json json = Json::object();
  for (Figure const& figure : figures) {
    json[std::string{figure.entity}][std::string{figure.attribute}] = std::visit(ToJson{}, figure.value);
  }
  return json.dump(2) + '\n';
}

}  // namespace Apps::Show
