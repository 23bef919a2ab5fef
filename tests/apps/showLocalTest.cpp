// The printed forms, of a host made of recorded messages.
#include "apps/show/ShowLocal.h"

#include "apps/LocalTime.h"
#include "apps/show/Figures.h"
#include "apps/show/JsonForm.h"
#include "tests/apps/RecordedSource.h"
#include "tests/core/LeakCheck.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace Apps::Show {
namespace {

using namespace Kernel;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class ShowLocal : public LeakCheck {
 protected:
  ShowLocal() {
    kernel_.messages(RTM_GETLINK, {link(1, IFF_UP)});
    kernel_.messages(RTM_GETROUTE, {routeVia(1, "10.0.0.7"), route(AF_INET, RTN_BLACKHOLE)});
  }

  RecordedSource kernel_;
};

TEST_F(ShowLocal, PrintsTheSameFiguresInEachForm) {
  EXPECT_THAT(showLocal(kernel_, Form::json, Style::plain).output,
              HasSubstr("\"ipv4RouteStats\": {\n      \"routes\": 2,"));
  EXPECT_THAT(showLocal(kernel_, Form::text, Style::plain).output,
              HasSubstr("ipv4RouteStats = Value('Hardware::DornL3"));
  EXPECT_THAT(showLocal(kernel_, Form::table, Style::plain).output,
              AllOf(HasSubstr("\nroutes                                 2           0           0\n"),
                    HasSubstr("IN USE                               ARP  IP tunnels   MPLS pops MPLS pushes\n"
                              "FAP 0                                  0           0           0           0\n"),
                    HasSubstr("ROUTES BY PREFIX LENGTH      IPv4 in LEM IPv4 routes IPv6 in LEM IPv6 routes\n"
                              "hosts                                 no           0          no           0\n"
                              "/0                                   yes           2           -           -\n"
                              "\n"
                              "FAP   forwarding processor; "),
                    HasSubstr("\nLEM   "), Not(HasSubstr("\nFEC   "))));
}

TEST_F(ShowLocal, SaysWhenATableNeverSettled) {
  kernel_.answer(RTM_GETNEIGH, {.interrupted = true});
  Shown const shown = showLocal(kernel_, Form::table, Style::plain);
  EXPECT_EQ(shown.notices,
            std::vector<std::string>{"The kernel's neighbours kept changing while they were read: the figures may mix "
                                     "several states. Run the command again for others."});
  EXPECT_NE(shown.output.find("first dump complete         no\n"), std::string::npos) << shown.output;
}

TEST_F(ShowLocal, PassesOnWhyTheKernelCouldNotBeRead) {
  kernel_.answer(RTM_GETLINK, {.error = EACCES});
  kernel_.answer(RTM_GETNEIGH, {.error = EACCES});
  EXPECT_THROW((void)showLocal(kernel_, Form::json, Style::plain), KernelError);
}

// Scalars, records side by side, and collections with different keys in an entity and in a child of it.
std::vector<Figure> const someFigures{
    {"status", "statusUpdatedTime", "HOST", "updated", Time{1700000000.25}, "1700000000.25"},
    {"vxlan", "enabled", "HOST", "VXLAN routing", true, "True"},
    {"status", "ipFecs", "SETS", "IP",
     std::vector<Field>{{"one", "single", 18446744073709551615U}, {"all", "in all", 0}}, "V1"},
    {"status", "mplsFecs", "SETS", "MPLS", std::vector<Field>{{"one", "single", 2}, {"all", "in all", 3}}, "V2"},
    {"status", "hosts", "ROUTES", "IPv4", std::uint64_t{7}, "7", "hosts"},
    {"status", "banks", "ROUTES", "IPv4", std::vector<Member>{{2, true, "True"}, {10, false, "False"}}, "", "/"},
    {"status.child.grandchild", "faps", "ROUTES", "IPv6", std::vector<Member>{{0, std::uint64_t{5}, "5"}}, "", "/"},
    {"status.child", "none", "ROUTES", "none", std::vector<Member>{}, "", "/"},
};

TEST(TableForm, PutsFiguresOfAGroupSideBySideAndADashWhereThereIsNone) {
  EXPECT_EQ(tableForm(someFigures, Style::plain),
            "HOST\n"
            "updated                     " +
                localTime(1700000000.25) +
                "\n"
                "VXLAN routing               yes\n"
                "\n"
                "SETS                                  IP        MPLS\n"
                "single                      18446744073709551615           2\n"
                "in all                                 0           3\n"
                "\n"
                "ROUTES                              IPv4        IPv6        none\n"
                "hosts                                  7           -           -\n"
                "/0                                     -           5           -\n"
                "/2                                   yes           -           -\n"
                "/10                                   no           -           -\n");
  EXPECT_EQ(tableForm(someFigures, Style::terminal).find("\x1b[1mHOST\x1b[0m\n"), 0U);
  EXPECT_EQ(tableForm({}, Style::plain), "");
}

TEST(TableForm, StandsOutWhereTheTerminalCanAndItsUserWantsIt) {
  EXPECT_EQ(styleFor(nullptr, nullptr), Style::terminal);
  EXPECT_EQ(styleFor("xterm", ""), Style::terminal) << "an empty wish is none";
  EXPECT_EQ(styleFor("xterm", "0"), Style::plain);
  EXPECT_EQ(styleFor("dumb", nullptr), Style::plain);
}

TEST(JsonForm, KeepsTheOrderAndWholeNumbersWholeAndPutsChildrenIntoTheirParents) {
  EXPECT_EQ(nlohmann::ordered_json::parse(jsonForm(someFigures)).dump(),
            R"({"status":{"statusUpdatedTime":1700000000.25,"ipFecs":{"one":18446744073709551615,"all":0},)"
            R"("mplsFecs":{"one":2,"all":3},"hosts":7,"banks":{"2":true,"10":false},)"
            R"("child":{"grandchild":{"faps":{"0":5}},"none":{}}},"vxlan":{"enabled":true}})");
}

}  // namespace
}  // namespace Apps::Show
