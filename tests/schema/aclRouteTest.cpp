// The two types of routed egress ACLs, which are the same but for their names: one body over both.
#include "schema/AclIntf.h"
#include "tests/core/LeakCheck.h"

#include <string>
#include <vector>

namespace {

using namespace Hardware::DornL3Unicast::AclRoute;
using Bridging::VlanIdOrNone;
using Kiln::Fapmask;
using Vek::Ptr;

template <class X>
struct AclRoutes : LeakCheck {
  struct Trace : X::Notifiee {
    using X::Notifiee::onEgrRaclVlanToFapmask;
    using X::Notifiee::onIpv4EgAclLabel;
    using X::Notifiee::onIpv6EgrAclOnVlan;
    void onIpv6EgrAclOnVlan(VlanIdOrNone key) override { called("ipv6EgrAclOnVlan", key); }
    void onEgrRaclVlanToFapmask(VlanIdOrNone key) override { called("egrRaclVlanToFapmask", key); }
    void onIpv4EgAclLabel(VlanIdOrNone key) override { called("ipv4EgAclLabel", key); }
    void onEgressRaclSharingConfigured() override { heard.emplace_back("egressRaclSharingConfigured"); }
    void called(char const* attribute, VlanIdOrNone key) {
      heard.push_back(attribute + (' ' + std::to_string(key.value())));
    }
    std::vector<std::string> heard;
  };

  AclRoutes() {
    trace->isRegisteredNotifieeIs(true);
    trace->notifierIs(entity);
  }
  // What the reactor has heard since the last time.
  std::vector<std::string> heard() { return std::exchange(trace->heard, {}); }

  Ptr<X> const entity = Vek::make<X>("acl");
  Ptr<Trace> const trace = Vek::make<Trace>();
};

using Both = testing::Types<Config, Status>;
TYPED_TEST_SUITE(AclRoutes, Both);

using Heard = std::vector<std::string>;

TYPED_TEST(AclRoutes, AbsentReadsAsTheDefault) {
  auto const& acl = *this->entity;
  EXPECT_FALSE(acl.ipv6EgrAclOnVlan(VlanIdOrNone(1)));
  EXPECT_EQ(acl.egrRaclVlanToFapmask(VlanIdOrNone(1)), Fapmask());
  EXPECT_EQ(acl.ipv4EgAclLabel(VlanIdOrNone(1)), Ipv4EgressAclLabel());
  EXPECT_FALSE(acl.egressRaclSharingConfigured());
  EXPECT_EQ(acl.readCount(), 4U);
  EXPECT_EQ(this->entity->ipv4EgAclLabelDel(VlanIdOrNone(1)), Ipv4EgressAclLabel());
  EXPECT_EQ(acl.writeCount(), 0U);
  EXPECT_EQ(this->heard(), Heard{});
}

TYPED_TEST(AclRoutes, EachCollectionIsKeyedByVlan) {
  auto& acl = *this->entity;
  VlanIdOrNone const none;
  VlanIdOrNone const last(4094);
  Fapmask const mask({1, 2, 3, 4});
  Ipv4EgressAclLabel const label(last);
  acl.ipv6EgrAclOnVlanIs(none, false);
  acl.egrRaclVlanToFapmaskIs(last, mask);
  acl.ipv4EgAclLabelIs(last, label);
  acl.egressRaclSharingConfiguredIs(true);
  EXPECT_EQ(this->heard(), (Heard{"ipv6EgrAclOnVlan 0", "egrRaclVlanToFapmask 4094", "ipv4EgAclLabel 4094",
                                  "egressRaclSharingConfigured"}));
  acl.ipv6EgrAclOnVlanIs(none, false);
  acl.egrRaclVlanToFapmaskIs(last, Fapmask({1, 2, 3, 4}));
  acl.ipv4EgAclLabelIs(last, Ipv4EgressAclLabel(last));
  EXPECT_EQ(acl.writeCount(), 4U) << "equal values change nothing";
  EXPECT_EQ(acl.ipv6EgrAclOnVlanCount(), 1U);
  EXPECT_EQ(acl.egrRaclVlanToFapmaskDel(last), mask);
  auto it = acl.ipv4EgAclLabelIterator();
  EXPECT_EQ(acl.ipv4EgAclLabelDel(it), label);
  acl.ipv6EgrAclOnVlanDelAll();
  EXPECT_EQ(this->heard(), (Heard{"egrRaclVlanToFapmask 4094", "ipv4EgAclLabel 4094", "ipv6EgrAclOnVlan 0"}));
}

struct AclRoute : LeakCheck {};

TEST_F(AclRoute, ConfigAndStatusAreMadeByTheirFactoriesAndKeepApart) {
  Ptr<Config> const config = configFactory("acl");
  Ptr<Status> const status = statusFactory("acl");
  config->ipv6EgrAclOnVlanIs(VlanIdOrNone(7), true);
  EXPECT_EQ(status->ipv6EgrAclOnVlanCount(), 0U);
}

}  // namespace
