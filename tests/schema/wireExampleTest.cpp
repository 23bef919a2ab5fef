// The worked example of docs/wire-format.md is what a real pair says.
#include "dornl3/schema/AclIntf.h"
#include "dornl3/schema/AuditStatus.h"
#include "tests/attrlog/LogPair.h"
#include "tests/attrlog/RawPeer.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace {

using namespace Hardware::DornL3Unicast;
using LogTest::Access;

// What an end said, one after the other, as "owner 444c33".
using Session = std::vector<std::string>;

// A block of the page: lines with the name of an end, where there is more than one, and bytes, with what they mean two
// spaces behind them.
Session onThePage(std::string const& block) {
  std::ifstream page(DORNL3_SOURCE_DIR "/docs/wire-format.md");
  Session session;
  bool isInside = false;
  for (std::string line; std::getline(page, line);) {
    if (line.starts_with("```")) isInside = line == "```" + block;
    if (!isInside) continue;
    if (line == "owner" || line == "reader") {
      session.push_back(line + ' ');
    } else if (line.starts_with("```")) {
      if (block != "bytes") session.emplace_back();
    } else if (!session.empty()) {
      session.back() += LogTest::hex(LogTest::bytes(line.substr(0, line.find("  "))));
    }
  }
  return session;
}

Session sessionOfAPair() {
  LogTest::LogPair pair;
  Session session;
  auto const ownerSays = [&] {
    pair.owner().writable();
    session.push_back("owner " + LogTest::hex(pair.readerTransport().incoming()));
    pair.reader().readable();
  };
  auto const readerSays = [&] {
    pair.reader().writable();
    session.push_back("reader " + LogTest::hex(pair.ownerTransport().incoming()));
    pair.owner().readable();
  };

  auto const config = AclRoute::configFactory("acl");
  config->egressRaclSharingConfiguredIs(true);
  config->ipv4EgAclLabelIs(Bridging::VlanIdOrNone{100}, AclRoute::Ipv4EgressAclLabel(Bridging::VlanIdOrNone{7}));
  pair.owner().exports().exportIs(config, Access::writable);
  auto const dir = Vek::make<Vek::Dir>();
  auto const mount = Vek::make<LogTest::Mount>("acl", *AclRoute::Config::_fwkType(), Access::writable, dir);
  pair.reader().mounts().mountIs(mount);
  ownerSays();
  readerSays();
  ownerSays();
  config->ipv4EgAclLabelDel(Bridging::VlanIdOrNone{100});
  ownerSays();
  Vek::NboAttrLog::mountedWritable<AclRoute::Config>(*mount)->egressRaclSharingConfiguredIs(false);
  readerSays();
  EXPECT_FALSE(config->egressRaclSharingConfigured());
  pair.owner().closeIs("maintenance");
  ownerSays();
  return session;
}

TEST(WireExample, IsWhatARealPairSays) { EXPECT_EQ(onThePage("bytes"), sessionOfAPair()); }

TEST(WireExample, OfAStateIsWhatARelaySays) {
  LogTest::LogPair above;
  LogTest::LogPair below;
  auto const config = AclRoute::configFactory("acl");
  LogTest::Mounted<AclRoute::Config> const middle(above, config, Access::readOnly);
  below.owner().exports().exportIs(middle.replica(), Access::readOnly);
  below.reader().mounts().mountIs(Vek::NboAttrLog::mountOf<AclRoute::Config>("acl", Access::readOnly));
  below.owner().writable(), below.reader().readable();
  below.reader().writable(), below.owner().readable();
  std::string const said = LogTest::hex(below.owner().out()->view());
  EXPECT_NE(said.find(onThePage("state")[0]), std::string::npos) << said;
}

TEST(WireExample, OfAWrapperBindsAChild) {
  LogTest::RawPeer peer;
  auto const dir = Vek::make<Vek::Dir>();
  auto const mount = Vek::NboAttrLog::mountOf<AuditStatus>("audit", Access::readOnly, dir);
  peer.connection->mounts().mountIs(mount);
  peer.says(LogTest::greeting(LogTest::RawPeer::tag) +
            LogTest::orphan(LogTest::idOf(LogTest::RawPeer::tag, 1), "Hardware::DornL3Unicast::AuditStatus", "audit") +
            LogTest::bytes(onThePage("wrapper")[0]));
  ASSERT_NE(mount->entity(), nullptr);
  EXPECT_NE(Vek::ptrCast<AuditStatus>(dir->entity("audit"))->auditInfo("t"), nullptr) << peer.connection->closeReason();
  EXPECT_EQ(peer.connection->demuxer().skipped(), 0U);
}

}  // namespace
