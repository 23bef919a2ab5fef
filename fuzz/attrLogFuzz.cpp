// Tells an open connection any bytes as records. Whatever they say: it stays open or gives a reason, what the peer may
// only read stays as it is, and memory stays within the limits. Of the first two bytes, one is how many bytes the
// stream moves at a time, the other how much the peer reads.
#include "dornl3/generic/Digest.h"
#include "dornl3/schema/AclIntf.h"
#include "dornl3/schema/AuditStatus.h"
#include "dornl3/schema/DornL3CliConfig.h"
#include "dornl3/schema/Status.h"
#include "tests/attrlog/RawPeer.h"

#include <cstdlib>

namespace {

using namespace Hardware::DornL3Unicast;
using namespace LogTest;
using Vek::NboAttrLog::Access;

void require(bool holds) {
  if (!holds) std::abort();
}

constexpr Vek::NboAttrLog::Limits limits{
    .outBytes = 4096, .recordBytes = 4096, .messageBytes = 512, .textBytes = 2048, .entities = 8, .waitingMounts = 4};
constexpr std::size_t roomForAnswers = 4096;

std::string_view nameOf(Vek::VekType const* type) { return type->fullName().view(); }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  if (size < 2) return 0;
  auto const dir = Vek::make<Vek::Dir>();
  auto const config = AclRoute::configFactory("config");
  auto const audit = auditStatusFactory("audit");
  auto const request = auditRequestFactory("request");
  auto const shown = AclRoute::statusFactory("shown");
  RawPeer peer{limits};
  auto& connection = *peer.connection;
  connection.exports().exportIs(config, Access::writable);
  connection.exports().exportIs(audit, Access::writable);
  connection.exports().exportIs(request, Access::writable);
  connection.exports().exportIs(shown, Access::readOnly);
  connection.mounts().mountIs(Vek::make<Vek::NboAttrLog::Mount>("status", *Status::_fwkType(), Access::readOnly, dir));
  connection.mounts().mountIs(Vek::make<Vek::NboAttrLog::Mount>("cli", *CliConfig::_fwkType(), Access::writable, dir));
  // The ids that the corpus speaks of: 1 to 4 of the connection's, 1 and 2 of the peer's.
  peer.says(greeting(RawPeer::tag, limits) + mountOf("config", nameOf(config->fwkType()), true) +
            mountOf("audit", nameOf(audit->fwkType()), true) + mountOf("request", nameOf(request->fwkType()), true) +
            mountOf("shown", nameOf(shown->fwkType()), false) +
            orphan(idOf(RawPeer::tag, 1), nameOf(Status::_fwkType()), "status") +
            orphan(idOf(RawPeer::tag, 2), nameOf(CliConfig::_fwkType()), "cli"));
  require(connection.state() == Vek::NboAttrLog::open && dir->entity("status") && dir->entity("cli"));

  Vek::U64 const before = digest(*shown);
  peer.near.sliceIs(std::size_t{data[0]} + 1);
  peer.near.capacityIs(std::size_t{data[1]} * 64);
  peer.says({reinterpret_cast<char const*>(data + 2), size - 2});
  require(connection.state() == Vek::NboAttrLog::open || !connection.closeReason().empty());
  require(digest(*shown) == before);
  require(connection.demuxer().adapters().foreign() <= limits.entities);
  require(connection.out()->unsent() <= limits.outBytes + 2 * limits.recordBytes + roomForAnswers);
  return 0;
}
