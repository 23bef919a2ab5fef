#include "apps/attributes/Docs.h"

#include "dornl3/platform/vek/Entity.h"

#include <algorithm>
#include <iterator>

namespace Apps::Attributes {

namespace {

struct Row {
  std::string_view type;
  std::string_view attribute;  // empty: of the type itself
  std::string_view doc;
};

constexpr Row rows[] = {
#include "apps/attributes/docRows.inc"
    // what every entity has
    {"Vek::Entity", "name", "what it is called by what holds it"},
    {"Vek::Entity", "fullName", "its path"},
    {"Vek::Entity", "parent", "the entity that holds it"},
    {"Vek::Entity", "parentAttrId", "number of the attribute by which that holds it"},
    {"Vek::Entity", "writeCount", "changes to it so far"},
    {"Vek::Entity", "readCount", "reads of it so far"},
    {"Vek::Entity", "vekHasAttrLogInterface", "its changes can be logged"},
};

std::string_view find(std::string_view type, std::string_view attribute) {
  auto const row = std::find_if(std::begin(rows), std::end(rows),
                                [&](Row const& one) { return one.type == type && one.attribute == attribute; });
  return row == std::end(rows) ? std::string_view{} : row->doc;
}

}  // namespace

std::string_view docOf(Vek::VekType const& type) { return find(type.fullName().view(), ""); }

std::string_view docOf(Vek::VekType const& owner, Vek::VekAttr const& attr) {
  Vek::VekType const& described = isOwn(owner, attr) ? owner : *Vek::Entity::_fwkType();
  return find(described.fullName().view(), attr.name().view());
}

}  // namespace Apps::Attributes
