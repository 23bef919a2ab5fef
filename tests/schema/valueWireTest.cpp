// The wire form of every value type, held against what the registry says of its attributes: the fields in order of
// their numbers and nothing between them, wherever the bytes end.
#include "dornl3/schema/AclIntf.h"
#include "dornl3/schema/AuditStatus.h"
#include "dornl3/schema/DornL3CliConfig.h"
#include "dornl3/schema/Status.h"
#include "dornl3/text/ValueText.h"
#include "tests/attrlog/RawPeer.h"
#include "tests/schema/Inventor.h"

#include <gtest/gtest.h>

namespace {

using namespace Hardware::DornL3Unicast;
using LogTest::number;

template <class T>
T scalar(std::string const& text) {
  Vek::String8 const held = std::string_view(text);
  Vek::String8::IteratorConst it(held);
  return Vek::readScalar<T>(it, Vek::String8::IteratorConst(held, static_cast<int>(held.length())));
}

// A field by the name of its type and its text.
std::string fieldBytes(Vek::VekType const& type, std::string const& text) {
  std::string_view const name = type.fullName();
  if (name == "bool") return number(static_cast<Vek::U8>(scalar<bool>(text)));
  if (name == "U8") return number(scalar<Vek::U8>(text));
  if (name == "U32") return number(scalar<Vek::U32>(text));
  if (name == "U64") return number(scalar<Vek::U64>(text));
  if (name == "Vek::Seconds") return number(std::bit_cast<Vek::U64>(scalar<double>(text)));
  if (name == "Bridging::VlanIdOrNone") return number(scalar<unsigned short>(text));
  return LogTest::text(scalar<Vek::String8>(text).view());
}

// The text of a value with its first attributes alone.
std::string textOf(Vek::VekType const& type, std::vector<std::string> const& fields, std::size_t count) {
  if (type.valAttr() != nullptr) return count == 0 ? "0" : fields[0];
  std::string all = "Value('" + std::string(type.fullName().view()) + "', ** {";
  for (std::size_t at = 0; at < count; ++at) {
    all += (at == 0 ? "'" : ", '") + std::string(type.attributes()[at]->name().view()) + "': " + fields[at];
  }
  return all + "})";
}

template <class V>
std::string written(V const& value) {
  auto const out = Vek::make<Vek::NboAttrLog::Out>(nullptr, Vek::NboAttrLog::Limits{});
  out->nextHeaderIs({.entityId = Vek::connectionId, .variableSize = 1});
  out << Vek::Connection::Out::tokenOpen;
  EXPECT_EQ(&(out << value), &out);
  out << Vek::Connection::Out::tokenClose;
  std::string_view const record = out->view().substr(Vek::NboAttrLog::headerSize + 1);
  return std::string(record.substr(0, record.size() - 1));
}

template <class V>
V readFrom(std::string bytes) {
  auto const in = Vek::make<Vek::NboAttrLog::In>();
  in->recordIs(bytes.data(), bytes.size());
  return V(in.ptr(), Vek::StreamBogon{});
}

template <class V>
struct ValueWire : testing::Test {};

using Values = testing::Types<RouteStats, SchanStats, JLpmStats, JLpmDetailStats, LpmStats, LpmDetailStats,
                              PetraFecStats, FecStats, FecQuarantineStats, LemCmdsStats, InternalState, FecCountStats,
                              Host6RouteStats, Host6RouteDetailStats, TimingMarkers, CmdRingStats, RestartHelperStats,
                              LpmLevelBits, AclRoute::Ipv4EgressAclLabel>;
TYPED_TEST_SUITE(ValueWire, Values);

TYPED_TEST(ValueWire, BytesAreTheFieldsInOrderAndMayEndBetweenThem) {
  Vek::VekType const& type = *TypeParam::_fwkType();
  Inventor inventor{type.attributes().size()};
  std::vector<std::string> fields;
  std::string bytes;
  std::vector<std::size_t> ends{0};
  for (auto const& attr : type.attributes()) {
    fields.push_back(inventor.text(*attr->valueType()));
    bytes += fieldBytes(*attr->valueType(), fields.back());
    ends.push_back(bytes.size());
  }
  auto const value = [&](std::size_t count) {
    return Vek::valueFromText<TypeParam>(std::string_view(textOf(type, fields, count)));
  };
  EXPECT_EQ(written(value(fields.size())), bytes);
  EXPECT_EQ(readFrom<TypeParam>(bytes + "fields of tomorrow"), value(fields.size()));
  for (std::size_t length = 0, whole = 0; length <= bytes.size(); ++length) {
    if (length == ends[whole]) {
      EXPECT_EQ(readFrom<TypeParam>(bytes.substr(0, length)), value(whole)) << length;
      ++whole;
    } else {
      EXPECT_THROW(readFrom<TypeParam>(bytes.substr(0, length)), Vek::ShortRecordException) << length;
    }
  }
}

TEST(ValueWireLimits, HoldForKeyTypesAlone) {
  EXPECT_THROW(readFrom<AclRoute::Ipv4EgressAclLabel>("\x0f\xff"), Vek::RangeException);
  EXPECT_EQ(readFrom<LpmLevelBits>("\xff\1\1\1\1\1").level0(), 255);
}

}  // namespace
