#include "apps/kernel/NextHopMessage.h"

#include "apps/kernel/Attributes.h"

#include <linux/nexthop.h>
#include <linux/rtnetlink.h>

namespace Apps::Kernel {

namespace {

bool readMembers(Bytes payload, std::vector<std::uint32_t>& members) {
  for (; !payload.empty(); payload = payload.subspan(sizeof(nexthop_grp))) {
    nexthop_grp member{};
    if (!readFront(payload, member)) return false;
    members.push_back(member.id);
  }
  return true;
}

}  // namespace

bool readNextHop(Bytes body, NextHopObject& object) {
  nhmsg header{};
  if (!readFront(body, header)) return false;
  object.id = 0;
  object.discards = false;
  object.isGroup = false;
  object.path = Path{};
  object.path.flags = static_cast<std::uint8_t>(header.nh_flags);
  object.members.clear();
  bool const whole = walkAttributes(afterHeader<nhmsg>(body), [&](Attribute const& a) {
    switch (a.type) {
    case NHA_ID: return a.read(object.id);
    case NHA_BLACKHOLE: object.discards = true; return true;
    case NHA_GROUP: object.isGroup = true; return readMembers(a.payload, object.members);
    case NHA_OIF: return a.read(object.path.adjacency.link);
    case NHA_GATEWAY: return object.path.adjacency.gateway.set(header.nh_family, a.payload);
    case NHA_ENCAP_TYPE: return a.read(object.path.encapsulationType);
    case NHA_ENCAP: object.path.encapsulation = a.payload; return true;
    default: return true;
    }
  });
  return whole && object.id != 0;
}

}  // namespace Apps::Kernel
