// The file of the types library, as tools see it that do not run it: the names of its types, what it needs, and what it
// offers, which is all that the schema files tell of and nothing else.
#include "schemac/Names.h"
#include "tests/schemac/Schemas.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <stdexcept>

namespace {

using namespace Schemac;
using Names = std::set<std::string>;

// What one of the linker's companions writes about the library.
std::istringstream toldBy(std::string const& tool) {
  std::string text;
  std::FILE* const pipe = ::popen((tool + " '" DORNL3_TYPES_LIBRARY "'").c_str(), "r");
  if (pipe == nullptr) throw std::runtime_error("cannot start a shell");
  char block[4096];
  while (std::size_t const length = std::fread(block, 1, sizeof block, pipe)) text.append(block, length);
  if (::pclose(pipe) != 0) throw std::runtime_error("no answer of " + tool);
  return std::istringstream(text);
}

constexpr bool isSanitized = std::string_view(DORNL3_SANITIZE) != "";

// File by file, in each the type defined last stands first.
constexpr char const* typeNames[] = {
    "RestartCompletionStatus",
    "AradVxlanRoutingStatus",
    "Status",
    "RestartHelperStats",
    "CmdRingStats",
    "TimingMarkers",
    "Host6RouteDetailStats",
    "Host6RouteStats",
    "FecCountStats",
    "InternalState",
    "LemRouteStats",
    "LemCmdsStats",
    "FecQuarantineStats",
    "FecStats",
    "PetraFecStats",
    "LpmDetailStats",
    "LpmStats",
    "JLpmDetailStats",
    "JLpmStats",
    "SchanStats",
    "RouteStats",
    "Request",
    "AuditStatus",
    "ShadowAuditInfo",
    "TableAuditInfo",
    "TableFapAuditInfo",
    "AuditRequest",
    "CliConfig",
    "LpmLevelBits",
    "AclRoute::Status",
    "AclRoute::Config",
    "AclRoute::Ipv4EgressAclLabel",
};

TEST(LibraryFile, NamesItsTypes) {
  static_assert(std::size(typeNames) == 32);
  std::istringstream sections = toldBy("readelf -SW");
  std::string word;
  while (sections >> word && word != ".vek.type") continue;
  std::string type, address, offset, size, entrySize, flags, link, info, alignment;
  sections >> type >> address >> offset >> size >> entrySize >> flags >> link >> info >> alignment;
  EXPECT_EQ(type, "PROGBITS");
  EXPECT_EQ(flags, "WA");
  EXPECT_EQ(alignment, "32");

  // Each name begins on a boundary of 32 bytes, zeros fill the space between, and nothing stands behind the last.
  std::string expected;
  for (char const* name : typeNames) {
    expected.resize((expected.size() + 31) / 32 * 32);
    expected += std::string("Hardware::DornL3Unicast::") + name + '\0';
  }
  EXPECT_EQ(expected.size(), 2006U);
  if (isSanitized) GTEST_SKIP() << "sanitizers put space of their own behind each file's names";
  std::string content(std::stoul(size, nullptr, 16), '\0');
  std::ifstream file(DORNL3_TYPES_LIBRARY, std::ios::binary);
  file.seekg(std::stol(offset, nullptr, 16)).read(content.data(), static_cast<std::streamsize>(content.size()));
  EXPECT_EQ(content, expected);
}

TEST(LibraryFile, NeedsTheFrameworkAndTheLanguageAlone) {
  std::istringstream entries = toldBy("readelf -dW");
  int found = 0;
  for (std::string line; std::getline(entries, line);) {
    if (line.find("(NEEDED)") == std::string::npos) continue;
    ++found;
    constexpr std::string_view known[] = {"[libvek.so.",   "[libstdc++.so.", "[libm.so.",
                                          "[libgcc_s.so.", "[libc.so.",      "[ld-linux"};
    EXPECT_TRUE(std::any_of(std::begin(known), std::end(known), [&](auto name) {
      return line.find(name) != std::string::npos;
    })) << line;
  }
  EXPECT_GT(found, 1);
}

// The lookups of collections that are functions of the library; all others are inline.
constexpr std::string_view lookups[] = {
    "Status::inUseArpBanks",      "Status::inUseArpRemoteBanks", "Status::inUseIpTunnelBanks",
    "Status::inUseMplsTailBanks", "Status::inUseMplsHeadBanks",  "LemRouteStats::prefixLenInLem",
};

bool isCollection(Attribute const& a) { return a.shape == Shape::ordered || a.shape == Shape::hashed; }
bool isChild(Attribute const& a) { return a.shape == Shape::child || a.shape == Shape::childCollection; }

// A class that has virtual operations: the symbols that they bring.
void addClass(Names& names, std::string const& fullName) {
  for (char const* record : {"vtable for ", "typeinfo for ", "typeinfo name for "}) names.insert(record + fullName);
}

// The same, of a class whose destructor is the library's. `name` is the class in its scope.
void addDestroyed(Names& names, std::string const& scope, std::string const& name) {
  addClass(names, scope + "::" + name);
  names.insert(scope + "::" + name + "::~" + name);
}

void addValue(Names& names, File const& file, Type const& type) {
  std::string const full = fullName(file, type);
  for (std::string const& member : {type.name, std::string("_fwkType"), std::string("operator==")}) {
    names.insert(full + "::" + member);
  }
  names.insert(file.nameSpace + "::valueToStrep");
  names.insert(file.nameSpace + "::operator<<");
  addClass(names, full + "::_Type");
  addClass(names, full + "::GenericIf_");
  for (char const* member : {"GenericIf_Is", "genericIfListConstructor", "attributeOp"}) {
    names.insert(full + "::GenericIf_::" + member);
  }
}

void addAttribute(Names& names, std::string const& full, Attribute const& a) {
  std::vector<std::string> members;
  if (a.shape == Shape::scalar || a.shape == Shape::text) members = {setterName(a.name)};
  if (isChild(a) || isCollection(a)) members = {setterName(a.name), makerName(a.name), removerName(a.name)};
  if (a.increment) members.push_back(incrementerName(a.name));
  if (a.shape == Shape::childCollection || isCollection(a)) {
    members.push_back(allRemoverName(a.name));
    members.push_back(notifierName(a.name));
    members.push_back("GenericIf_::" + slotName(a.name));
  }
  for (std::string const& member : members) names.insert(full + "::" + member);
  if (isCollection(a)) addDestroyed(names, full, elementClassName(a.name));

  std::string const adapter = full + "::VekNboAttrLogSa::";
  if (a.shape == Shape::scalar || isCollection(a)) names.insert(adapter + slotName(a.name));
  if (!isCollection(a)) return;
  for (std::string const& member : {keySenderName(a.name), walkerName(a.name)}) names.insert(adapter + member);
  for (std::string const& member : {dirtyMakerName(a.name), dirtySetterName(a.name), dirtyRemoverName(a.name)}) {
    names.insert(adapter + "FlowOut::" + member);
  }
  addClass(names, adapter + "FlowOut::" + dirtyMemberName(a.name));
}

// What binds entities of the type to logs.
void addBinding(Names& names, std::string const& full, bool hasCollections) {
  std::string const adapter = full + "::VekNboAttrLogSa";
  addDestroyed(names, full, "VekNboAttrLogSa");
  addDestroyed(names, adapter, "FlowOut");
  addClass(names, adapter + "::VekNboAttrLogSaAdapter_");
  names.insert(adapter + "::FlowOut::hasDirtyAttributes");
  for (char const* member : {"VekNboAttrLogSa", "FlowOut::FlowOut", "flowOut", "handleAttrFlowOut", "doSerializeOrphan",
                             "handleAttrDeserialization", "flowOutIs", "doNotification"}) {
    names.insert(adapter + "::" + member);
  }
  for (char const* member : {"freeResyncState", "handleAttrTransaction", "syncModeIs"}) {
    if (hasCollections) names.insert(adapter + "::" + member);
  }
  for (char const* member : {"vekNboAttrLogSa", "vekNboAttrLogSaForMsgChannel", "vekNboAttrLogSaIs", "vekNboAttrLogSaDel"}) {
    names.insert(full + "::" + member);
  }
}

void addEntity(Names& names, File const& file, Type const& type) {
  std::string const full = fullName(file, type);
  addDestroyed(names, file.nameSpace, type.name);
  addDestroyed(names, full, "NotifieeConst");
  addDestroyed(names, full, "Notifiee");
  addDestroyed(names, full, "GenericIf_");
  addClass(names, full + "::GenericIf_::GenericIf_Adapter_");
  addClass(names, full + "::_Type");
  for (std::string const& member :
       {type.name, std::string("_fwkType"), std::string("attributeString"), std::string("zeroReferencesIs"),
        std::string("NotifieeConst::notifierIs"), std::string("NotifieeConst::isRegisteredNotifieeIs"),
        std::string("GenericIf_::GenericIf_"), std::string("GenericIf_::attributeOp")}) {
    names.insert(full + "::" + member);
  }
  if (!type.factory.empty()) {
    names.insert(file.nameSpace + "::" + type.factory);
    names.insert(full + "::GenericIf_::genericIfListConstructor");
  }
  bool const walks = std::any_of(type.attributes.begin(), type.attributes.end(), [](Attribute const& a) {
    return isCollection(a) || a.shape == Shape::childCollection;
  });
  if (walks) {
    names.insert(full + "::GenericIf_::attributeIteratorConst");
    names.insert(full + "::GenericIf_::attributeIteratorKeyConst");
  }
  for (Attribute const& a : type.attributes) addAttribute(names, full, a);
  addBinding(names, full, std::any_of(type.attributes.begin(), type.attributes.end(), isCollection));
}

// Everything that the library is to offer: functions without their arguments, and the records of classes.
Names intended() {
  Names names;
  for (std::string const& stem : Test::houseStems()) {
    File const file = Test::houseFile(stem);
    for (Type const& type : file.types) (type.isEntity() ? addEntity : addValue)(names, file, type);
  }
  for (std::string_view const lookup : lookups) names.insert("Hardware::DornL3Unicast::" + std::string(lookup));
  return names;
}

// Each line of symbols: an address, a letter, and the name as people write it.
Names offered() {
  Names names;
  std::istringstream symbols = toldBy("nm --dynamic --defined-only --demangle");
  for (std::string line; std::getline(symbols, line);) {
    std::size_t const begin = line.find(' ', line.find(' ') + 1) + 1;
    names.insert(line.substr(begin, line.find('(') - begin));
  }
  return names;
}

Names difference(Names const& a, Names const& b) {
  Names rest;
  std::set_difference(a.begin(), a.end(), b.begin(), b.end(), std::inserter(rest, rest.end()));
  return rest;
}

TEST(LibraryFile, OffersAllThatTheSchemaFilesTellOf) { EXPECT_EQ(difference(intended(), offered()), Names{}); }

TEST(LibraryFile, OffersNothingElse) {
  if (isSanitized) GTEST_SKIP() << "sanitizers have the compiler emit records of function types, and templates";
  EXPECT_EQ(difference(offered(), intended()), Names{});
}

}  // namespace
