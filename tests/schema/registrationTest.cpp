// What the types say of themselves when the library is loaded.
#include "dornl3/platform/vek/Builtin.h"
#include "dornl3/platform/vek/IntrospectionReactor.h"
#include "dornl3/schema/AclIntf.h"
#include "dornl3/schema/AuditStatus.h"
#include "dornl3/schema/DornL3CliConfig.h"
#include "dornl3/schema/Status.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace Hardware::DornL3Unicast;
using Flags = Vek::VekAttr::AttrFlags;

constexpr std::string_view ours = "Hardware::DornL3Unicast::";

std::vector<Vek::VekType*> ourTypes() {
  std::vector<Vek::VekType*> types = Vek::VekType::registered();
  std::erase_if(types, [](Vek::VekType* type) { return std::string_view(type->fullName()).substr(0, 25) != ours; });
  return types;
}

// "name Vek::Name, fapName Vek::String".
template <class Arguments>
std::string told(Arguments const& arguments) {
  std::ostringstream all;
  char const* before = "";
  for (auto const& argument : arguments)
    all << std::exchange(before, ", ") << argument.name << ' ' << argument.typeName;
  return all.str();
}

TEST(Registration, EveryAttributeHasTheNumberThatPeersKnow) {
  std::ifstream golden(DORNL3_SOURCE_DIR "/tests/schema/attributes.golden");
  std::vector<std::string> expected;
  for (std::string line; std::getline(golden, line);) {
    if (!line.empty() && line[0] != '#') expected.push_back(line);
  }
  std::vector<std::string> found;
  for (Vek::VekType* type : ourTypes()) {
    for (auto const& attr : type->attributes()) {
      if (!Vek::isOwn(*type, *attr)) continue;
      std::ostringstream line;
      line << type->fullName() << ' ' << attr->id() << ' ' << attr->name() << ' ' << attr->valueType()->fullName();
      if (attr->keyType() != nullptr) line << ' ' << attr->keyType()->fullName();
      found.push_back(line.str());
    }
  }
  EXPECT_EQ(found, expected);
}

TEST(Registration, KindsFlagsBasesAndConstructorArgumentsFitEachOther) {
  for (Vek::VekType* type : ourTypes()) {
    SCOPED_TRACE(std::string(type->fullName()));
    EXPECT_NE(type->isValue(), type->isEntity());
    EXPECT_TRUE(type->hasGenericIfSupport());
    EXPECT_EQ(type->base(), type->isEntity() ? Vek::Entity::_fwkType() : nullptr);
    EXPECT_EQ(Vek::VekType::find(type->fullName()), type);
    std::string_view const full = type->fullName();
    EXPECT_EQ(std::string_view(type->name()), full.substr(full.rfind(':') + 1));
    std::ostringstream fields;
    char const* before = "";
    for (auto const& attr : type->attributes()) {
      fields << std::exchange(before, ", ") << attr->name() << ' ' << attr->valueType()->fullName();
    }
    std::string expected = type->isEntity() ? "name Vek::Name" : fields.str();
    if (type == TableFapAuditInfo::_fwkType()) expected += ", fapName Vek::String";
    EXPECT_EQ(told(type->constructorArgs()), expected);
  }
  EXPECT_EQ(Request::_fwkType()->size(), sizeof(Request));
  EXPECT_EQ(RouteStats::_fwkType()->size(), sizeof(RouteStats));
  EXPECT_THROW(Vek::VekType::typeNodeIs(Request::_fwkType(), "Hardware::DornL3Unicast::Status"),
               Vek::InternalException);
}

TEST(Registration, AnEntitysQueueOpensWithTheFrameworksAttributesAndTheMarkerAndEndsWithItsKey) {
  auto const& base = Vek::Entity::_fwkType()->attributes();
  ASSERT_FALSE(base.empty());
  for (Vek::VekType* type : ourTypes()) {
    if (!type->isEntity()) continue;
    SCOPED_TRACE(std::string(type->fullName()));
    auto const& queue = type->attributes();
    ASSERT_GT(queue.size(), base.size());
    for (std::size_t i = 0; i < base.size(); ++i) {
      EXPECT_EQ(queue[i]->name(), base[i]->name());
      EXPECT_NE(queue[i], base[i]) << "a copy of its own";
      EXPECT_EQ(queue[i]->owner(), type);
    }
    auto const& marker = *queue[base.size()];
    EXPECT_EQ(marker.name(), "vekHasAttrLogInterface");
    EXPECT_EQ(marker.id(), 154U);
    EXPECT_EQ(marker.flags(), (Flags{0x00022001, 0x00000400}));
    EXPECT_EQ(marker.introspectionFlags(), 8U);
    EXPECT_EQ(marker.valueType(), Vek::Builtin<bool>::_fwkType());
    Vek::VekAttr const& last = *queue[queue.size() - 1];
    bool const isMember = type == TableFapAuditInfo::_fwkType() || type == TableAuditInfo::_fwkType() ||
                          type == ShadowAuditInfo::_fwkType();
    EXPECT_EQ(last.name() == "fwkKey" && last.id() == 0, isMember);
    EXPECT_EQ(last.valueType() == Vek::Name::_fwkType(), isMember && type != TableFapAuditInfo::_fwkType());
  }
}

TEST(Registration, AttributesCarryTheFlagsOfTheirClassAndThoseThatMakeTheirTargetSayHow) {
  struct AttributeCase {
    Vek::VekType* type;
    char const* attribute;
    Flags flags;
    Vek::U32 introspectionFlags;
    std::string arguments = {};  // with their types
    char const* key = "";
  };
  for (AttributeCase const& c : {
           AttributeCase{Status::_fwkType(), "numVrfs", {0x00220143, 0x01000400}, 2},
           AttributeCase{Status::_fwkType(), "inUseArpEntries", {0x01a20143, 0x01000400}, 2},
           AttributeCase{AclRoute::Config::_fwkType(), "ipv4EgAclLabel", {0x01a20143, 0x01000400}, 2},
           AttributeCase{TableFapAuditInfo::_fwkType(), "fapName", {0x00220109, 0x40000400}, 2},
           AttributeCase{TableFapAuditInfo::_fwkType(), "fwkKey", {0x00200001, 0x00000400}, 0},
           AttributeCase{CliConfig::_fwkType(), "aradIp6HostRouteInLemDefault", {0x00220001, 0x40000410}, 0},
           AttributeCase{Status::_fwkType(), "lemV6RouteStats", {0x08220143, 0x11000400}, 2, "name Vek::Name"},
           AttributeCase{TableAuditInfo::_fwkType(),
                         "perFapInfo",
                         {0x09a20143, 0x11000400},
                         34,
                         "fapName Vek::String",
                         "fapName"},
           AttributeCase{AuditStatus::_fwkType(), "auditInfo", {0x09a20143, 0x11000400}, 34, "name Vek::Name", "name"},
       }) {
    SCOPED_TRACE(c.attribute);
    Vek::VekAttr const* const attr = c.type->type_Attr().attr(c.attribute);
    ASSERT_NE(attr, nullptr);
    EXPECT_EQ(attr->flags(), c.flags);
    EXPECT_EQ(attr->introspectionFlags(), c.introspectionFlags);
    EXPECT_EQ(told(attr->constructorArgs()), c.arguments);
    EXPECT_EQ(attr->keyAttrName(), c.key);
  }
  EXPECT_EQ(Status::_fwkType()->type_Attr().attr("noSuchAttribute"), nullptr);
}

TEST(Registration, EntitiesEnterTheirBaseFileByFileAndAlphabetically) {
  std::vector<std::string> names;
  for (Vek::VekType* type : Vek::Entity::_fwkType()->derivedTypes()) {
    if (std::string_view(type->fullName()).substr(0, 25) == ours)
      names.emplace_back(type->fullName().view().substr(25));
  }
  EXPECT_EQ(names,
            (std::vector<std::string>{"AradVxlanRoutingStatus", "LemRouteStats", "Request", "RestartCompletionStatus",
                                      "Status", "AuditRequest", "AuditStatus", "ShadowAuditInfo", "TableAuditInfo",
                                      "TableFapAuditInfo", "CliConfig", "AclRoute::Config", "AclRoute::Status"}));
}

TEST(Registration, LeavesNoScopeOpen) { EXPECT_TRUE(Vek::IntrospectionReactor::global()->openScopes().empty()); }

TEST(Registration, ABareValueNamesTheAttributeItStandsFor) {
  Vek::VekAttr const* const whole = AclRoute::Ipv4EgressAclLabel::_fwkType()->valAttr();
  ASSERT_NE(whole, nullptr);
  EXPECT_EQ(whole->name(), "value");
  EXPECT_EQ(RouteStats::_fwkType()->valAttr(), nullptr);
}

TEST(Registration, ARecordMakesAnEntityThatStandsByItselfAndNothingElse) {
  Vek::Ptr<Vek::Entity> const made = Status::_fwkType()->newEntity("made", nullptr);
  EXPECT_TRUE(Vek::ptrCast<Status>(made));
  EXPECT_EQ(made->name(), "made");
  EXPECT_EQ(made->references(), 1U);
  EXPECT_THROW(static_cast<void>(RouteStats::_fwkType()->newEntity("no", nullptr)), Vek::InternalException);
  EXPECT_THROW(static_cast<void>(LemRouteStats::_fwkType()->newEntity("no", nullptr)), Vek::InternalException);
}

}  // namespace
