// The real types on a log, where their numbers are not those of the toys: bits behind the first word, and first
// attributes that are not logged.
#include "dornl3/schema/AuditStatus.h"
#include "dornl3/schema/DornL3CliConfig.h"
#include "dornl3/schema/Status.h"
#include "tests/attrlog/BareLog.h"

namespace LogTest {
namespace {

using namespace Hardware::DornL3Unicast;

struct RealTypes : BareLog {
  RealTypes() : BareLog(PairOptions{}) {}
};

TEST_F(RealTypes, HaveABitEachAlsoBehindTheFirstWord) {
  auto const owed = Vek::make<Status::VekNboAttrLogSa::FlowOut>(
      Ptr<Vek::NboAttrLog::Out>(), nullptr, Vek::ConnectDesc{}, false, Vek::NboAttrLog::FlowOut::marksOnly);
  auto& bits = owed->vekDirtyBitSet0();
  U32 const synced[] = {0xfcccU << 16, 0x0000000fU};
  for (U32 const at : {0U, 1U}) EXPECT_EQ(bits.word(at), synced[at]);
  bits.vekIsStatusResponseIdDirtyIs(true);
  bits.vekInUseArpBanksHasSyncedIs(false);
  bits.vekInUseArpRemoteBanksHasSyncedIs(false);
  bits.vekIsEcmpPreferLocalDirtyIs(true);
  EXPECT_EQ(bits.word(0), 0x7ccc0002U);
  EXPECT_EQ(bits.word(1), 0x2000000eU);
}

TEST_F(RealTypes, BeginBehindAnAttributeThatIsNotLogged) {
  auto const config = Vek::make<CliConfig>("config");
  auto const info = Vek::make<TableFapAuditInfo>("info", "fap0");
  for (Ptr<Vek::Entity> const& entity : {Ptr<Vek::Entity>(config), Ptr<Vek::Entity>(info)}) {
    auto const adapter = entity->vekNboAttrLogSaIs({}, 1, log().out(), nullptr);
    adapter->doAssignEntityId();
    log().demuxer().createFlowOut(*adapter, {}, false, 0);
    EXPECT_EQ(adapter->flowOut()->slotBit(0), false);
    EXPECT_EQ(adapter->flowOut()->slotBit(1), true);
    EXPECT_EQ(adapter->handleAttrFlowOut(258), 0U) << "it counts among the framework's";
    auto const records = said();
    ASSERT_FALSE(records.empty());
    EXPECT_EQ(records.front().substr(0, 3), "259");
    adapter->doNotification(258, nullptr);
    EXPECT_EQ(said(), Records{});
  }
}

}  // namespace
}  // namespace LogTest
