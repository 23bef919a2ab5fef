// The agent and the commands that work on it, each a process of its own.
#include "dornl3/platform/link/PollLoop.h"
#include "dornl3/platform/link/Server.h"
#include "dornl3/schema/DornL3CliConfig.h"
#include "tests/apps/Command.h"
#include "tests/apps/OwnNetwork.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

namespace Apps {
namespace {

std::string rest(Command& command) {
  std::string all;
  for (std::string next = command.line(); !next.empty(); next = command.line()) all += next;
  return all;
}

// All that it prints, and its exit status in the last line.
std::string said(std::string const& line) {
  Command command{line + "; echo status $?"};
  return rest(command);
}

// The number of the process that a command prints first.
std::string processOf(Command& command) {
  std::string const line = command.line();
  return line.substr(0, line.find('\n'));
}

// Whether these processes sleep on for a second and a half together, as heartbeats let them.
bool sleep(std::string const& processes) {
  return said(
             "wakes() { for p in " + processes + "; do grep ^voluntary /proc/$p/status; done; }; " +
             "for try in 1 2 3 4; do before=$(wakes); sleep 1.5; [ \"$(wakes)\" = \"$before\" ] && exit; done; echo no")
      .empty();
}

bool ends(std::string const& text, std::string const& end) { return text.ends_with(end); }

void serve() {
  ASSERT_TRUE(ip("link set lo up\nlink add a0 type veth peer name a1\nlink set a0 addrgenmode none\n"
                 "link set a0 up\nlink set a1 up\naddr add 10.0.0.1/24 dev a0\nroute add 20.0.0.0/16 via 10.0.0.2\n"));
  std::string const path = testing::TempDir() + "agent" + std::to_string(getpid()) + ".sock";
  ASSERT_EQ(setenv("DORNL3_AGENT", ("unix:" + path).c_str(), 1), 0);
  EXPECT_TRUE(ends(said("dornl3 show; dornl3 show --wait --timeout 0.3"), "status 3\n")) << "nobody listens";

  std::string const figures = " --json | sed 's/\\(\"statusUpdatedTime\": \\)[0-9.]*/\\1TIME/'";
  Command waiting{"dornl3 show --wait" + figures};
  std::string const start = "exec " DORNL3_PROGRAM " agent";
  Command agent{"echo $$; " + start};
  std::string const process = processOf(agent);
  ASSERT_NE(agent.line().find("listens at unix:" + path), std::string::npos);
  std::string const second = said("dornl3 agent");
  EXPECT_NE(second.find("another process listens there"), std::string::npos) << second;
  EXPECT_TRUE(ends(second, "status 1\n")) << second;

  // The same figures by either road, but for the time.
  std::string const shown = rest(waiting);
  EXPECT_NE(shown.find("\"statusUpdatedTime\": TIME,"), std::string::npos) << shown;
  EXPECT_EQ(shown + "status 0\n", said("dornl3 show --local" + figures));

  Command watch{"echo $$; exec " DORNL3_PROGRAM
                " watch status.ipv4RouteStats.routes 'status.lemV4RouteStats.routeCount[16]'"};
  std::string const watcher = processOf(watch);
  EXPECT_EQ(watch.line(), "status.ipv4RouteStats.routes = 2\n");
  EXPECT_EQ(watch.line(), "status.lemV4RouteStats.routeCount[16] = 1\n");
  ASSERT_TRUE(ip("route add 20.1.0.0/16 via 10.0.0.2\n"));
  // Each of those who ask together sees what was there before they asked.
  EXPECT_EQ(said("for i in $(seq 50); do { dornl3 request --text && echo fine; } & done | "
                 "grep -c '^fine$\\|^status.ipv4RouteStats = .*routes.: 3,'"),
            "100\nstatus 0\n");
  EXPECT_EQ(watch.line(), "status.ipv4RouteStats.routes = 3\n");
  EXPECT_EQ(watch.line(), "status.lemV4RouteStats.routeCount[16] = 2\n");

  EXPECT_EQ(said("dornl3 set cliConfig.ecmpPreferLocal False; dornl3 get cliConfig.ecmpPreferLocal"),
            "cliConfig.ecmpPreferLocal = False\nFalse\nstatus 0\n");
  std::string const member = "aclRouteConfig.ipv6EgrAclOnVlan[7]";
  std::string const count = "; dornl3 count aclRouteConfig.ipv6EgrAclOnVlan";
  EXPECT_EQ(said("dornl3 set '" + member + "' True" + count), member + " = True\n1\nstatus 0\n");
  EXPECT_EQ(said("dornl3 del '" + member + "'" + count), member + " = True\n0\nstatus 0\n") << "what has gone";
  EXPECT_TRUE(ends(said("dornl3 del '" + member + "'"), "status 1\n")) << "nothing is there";
  EXPECT_TRUE(ends(said("dornl3 set status.numVrfs 4"), "status 1\n")) << "to read only";
  EXPECT_TRUE(sleep(process + " " + watcher)) << "they poll";
  EXPECT_TRUE(
      ends(said("kill -STOP " + process + "; dornl3 set --timeout 1 cliConfig.ecmpPreferLocal True"), "status 3\n"))
      << "nobody answers";

  ASSERT_EQ(said("kill -KILL " + process), "status 0\n");
  EXPECT_NE(watch.line().find("is stale since"), std::string::npos);
  ASSERT_TRUE(ip("route del 20.1.0.0/16\n"));
  Command next{"echo $$; " + start};
  std::string const nextProcess = processOf(next);
  EXPECT_EQ(watch.line(), "status.ipv4RouteStats.routes = 2\n");
  EXPECT_EQ(watch.line(), "status.lemV4RouteStats.routeCount[16] = 1\n");
  EXPECT_NE(watch.line().find("is current"), std::string::npos);
  ASSERT_EQ(said("kill " + nextProcess), "status 0\n");
  EXPECT_EQ(next.finish(), 0);
  EXPECT_NE(access(path.c_str(), F_OK), 0) << "the socket has gone with its agent";
  ASSERT_EQ(said("kill -INT " + watcher), "status 0\n");
  EXPECT_EQ(watch.finish(), 0);
}

TEST(Agent, ServesOtherProcesses) { inOwnNetwork(serve); }

// An owner that will not have one attribute changed, and dies of a change of the other.
class Obstinate final : public Hardware::DornL3Unicast::CliConfig::Notifiee {
 public:
  void onEcmpPreferLocal() override { notifier()->ecmpPreferLocalIs(true); }
  void onAradIp6HostRouteInLem() override { _exit(0); }
};

TEST(Set, TellsWhatTheOwnerMadeOfItAndNeverCallsDoneWhatIsUnknown) {
  std::string const address = "unix:" + testing::TempDir() + "owner" + std::to_string(getpid()) + ".sock";
  Vek::Link::PollLoop loop;
  Vek::Link::Server server{loop, Vek::Link::Address::parse(address), {.connection = {"owner", {}}, .mode = 0600}};
  auto const config = Hardware::DornL3Unicast::cliConfigFactory("cliConfig");
  config->ecmpPreferLocalIs(true);
  server.exportIs(config, Vek::NboAttrLog::Access::writable);
  pid_t const owner = fork();
  if (owner == 0) {
    auto const obstinate = Vek::make<Obstinate>();
    obstinate->notifierIs(config);
    obstinate->isRegisteredNotifieeIs(true);
    loop.runUntil([] { return false; }, 30);
    _exit(1);
  }
  std::string const set = "dornl3 set --agent " + address + " cliConfig.";
  EXPECT_EQ(said(set + "ecmpPreferLocal False"),
            "cliConfig.ecmpPreferLocal = True\n"
            "dornl3: cliConfig.ecmpPreferLocal is not as it was to be: its owner has made something else of it, as "
            "printed.\nstatus 1\n");
  std::string const cutOff =
      said(set + "aradIp6HostRouteInLem " + (config->aradIp6HostRouteInLem() ? "False" : "True"));
  EXPECT_NE(cutOff.find("Whether the change was made is unknown"), std::string::npos) << cutOff;
  EXPECT_TRUE(ends(cutOff, "\nstatus 3\n")) << cutOff;
  int status = -1;
  ASSERT_EQ(waitpid(owner, &status, 0), owner);
  EXPECT_EQ(status, 0) << "it died of the change";
}

}  // namespace
}  // namespace Apps
