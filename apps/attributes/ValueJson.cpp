#include "apps/attributes/ValueJson.h"

#include "dornl3/core/String8.h"
#include "dornl3/platform/vek/ScalarText.h"

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>

namespace Apps::Attributes {

using Json = nlohmann::ordered_json;

namespace {

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

}  // namespace

Json valueJson(Vek::GenericIf& value) {
  Vek::VekType const& type = *value.type();
  if (!isRecord(type)) return literal(value.strRep());
  Json record = Json::object();
  for (auto const& attr : type.attributes()) {
    Generic const field = value.attributeOp({attr->id(), Vek::GenericIf::OpGet}, nullptr, nullptr);
    record[std::string{attr->name().view()}] = valueJson(*field);
  }
  return record;
}

}  // namespace Apps::Attributes
