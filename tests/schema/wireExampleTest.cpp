// The worked example of docs/wire-format.md is what a real pair says.
#include "dornl3/schema/AclIntf.h"
#include "tests/attrlog/LogPair.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace {

using namespace Hardware::DornL3Unicast;
using LogTest::Access;

// What an end said, one after the other, as "owner 444c33".
using Session = std::vector<std::string>;

// The block of the page: a line with the name of an end, then its bytes, with what they mean two spaces behind them.
Session sessionOnThePage() {
  std::ifstream page(DORNL3_SOURCE_DIR "/docs/wire-format.md");
  Session session;
  bool isInside = false;
  for (std::string line; std::getline(page, line);) {
    if (line.starts_with("```")) isInside = line == "```bytes";
    if (!isInside || line.starts_with("```")) continue;
    if (line == "owner" || line == "reader") {
      session.push_back(line + ' ');
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

TEST(WireExample, IsWhatARealPairSays) { EXPECT_EQ(sessionOnThePage(), sessionOfAPair()); }

}  // namespace
