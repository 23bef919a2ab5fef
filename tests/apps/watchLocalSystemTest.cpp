// The program that follows a host, from the kernel's change to the printed line.
#include "tests/apps/Command.h"
#include "tests/apps/OwnNetwork.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>

namespace Apps {
namespace {

void watchRoutes() {
  ASSERT_TRUE(ip("link set lo up\nlink add a0 type veth peer name a1\nlink set a0 addrgenmode none\n"
                 "link set a0 up\nlink set a1 up\naddr add 10.0.0.1/24 dev a0\n"));
  EXPECT_EQ(Command{"dornl3 show --local --text | grep numVrfs"}.line(), "status.numVrfs = 1\n");
  Command watch{"dornl3 watch --local -n 04 status.ipv4RouteStats.routes 'status.lemV4RouteStats.routeCount[16]'"};
  ASSERT_EQ(watch.line(), "status.ipv4RouteStats.routes = 1\n");
  ASSERT_TRUE(ip("route add 20.0.0.0/16 via 10.0.0.2\n"));
  EXPECT_EQ(watch.line(), "status.ipv4RouteStats.routes = 2\n");
  EXPECT_EQ(watch.line(), "status.lemV4RouteStats.routeCount[16] = 1\n") << "a member that was not there";
  ASSERT_TRUE(ip("route replace 20.0.0.0/16 via 10.0.0.3\n"));  // what is followed stays the same
  ASSERT_TRUE(ip("route del 20.0.0.0/16\n"));
  EXPECT_EQ(watch.line(), "status.ipv4RouteStats.routes = 1\n");
  EXPECT_EQ(watch.line(), "status.lemV4RouteStats.routeCount[16]: gone\n");
  EXPECT_EQ(watch.finish(), 0) << "four changes were wanted";
}

TEST(WatchLocal, TellsWhatTheKernelTells) { inOwnNetwork(watchRoutes); }

TEST(WatchLocal, EndsWhenNobodyReadsOrASignalComes) {
  auto const start = std::chrono::steady_clock::now();
  Command reader{"dornl3 watch --local status.numVrfs | head -n 1"};
  EXPECT_EQ(reader.line(), "status.numVrfs = 1\n");
  EXPECT_EQ(reader.finish(), 0);
  Command interrupted{"timeout --preserve-status -s INT 0.5 " DORNL3_PROGRAM " watch --local status.numVrfs"};
  EXPECT_EQ(interrupted.finish(), 0);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::minutes{1});
}

TEST(WatchLocal, WaitsForASlowReaderButNotAgainstASignal) {
  std::string const much = "dornl3 watch --local $(yes status | head -n 60)";  // more than a pipe holds
  Command slow{much + " 2> /dev/null | (sleep 0.3; head -n 3000 | wc -l)"};
  EXPECT_EQ(slow.line(), "3000\n");
  EXPECT_EQ(slow.finish(), 0);
  Command stuck{"{ timeout --preserve-status -s TERM 0.5 " DORNL3_PROGRAM
                " watch --local $(yes status | head -n 60); echo status $? >&2; } | sleep 2"};
  EXPECT_EQ(stuck.line(), "status 0\n");
}

TEST(WatchLocal, EndsOnATerminalThatNobodyReads) {
  int const master = posix_openpt(O_RDWR | O_NOCTTY);
  ASSERT_GE(master, 0);
  ASSERT_EQ(grantpt(master), 0);
  ASSERT_EQ(unlockpt(master), 0);
  Command stuck{"timeout --preserve-status -s TERM 0.5 " DORNL3_PROGRAM " watch --local $(yes status | head -n 60) > " +
                std::string{ptsname(master)} + "; echo status $?"};
  EXPECT_EQ(stuck.line(), "status 0\n");
  close(master);
}

TEST(Help, FitsEightyColumnsAndTellsWhatTheRootsAre) {
  Command wide{
      "for command in '' agent request show watch get count ls types set del; do dornl3 $command --help; done | "
      "awk 'length > 80'"};
  EXPECT_EQ(wide.line(), "");
  Command get{"dornl3 get --help | grep -A 1 '^  cliConfig '"};
  EXPECT_EQ(get.line(), "  cliConfig                 Configuration from the command line; the forwarding\n");
}

TEST(WatchLocal, SaysWhatIsWrongWithTheCommandLine) {
  struct {
    char const* line;
    int status;
    char const* complaint;
  } const cases[] = {
      {"dornl3 watch --local --agent unix:/a status", 2, nullptr},
      {"dornl3 count --local", 2, "dornl3: PATH is required. Type 'dornl3 count --help' to see what there is.\n"},
      {"dornl3 wach --local", 2,
       "dornl3: There is no command 'wach'; did you mean 'watch'? Type 'dornl3 --help' to see what there is.\n"},
      {"dornl3 get --lcoal status", 2,
       "dornl3: 'dornl3 get' has no option '--lcoal'; did you mean '--local'? Type 'dornl3 get --help' to see what "
       "there is.\n"},
      {"dornl3 watch --local -n 0 status", 2,
       "dornl3: --changes: '0' is no whole number from 1 to 18446744073709551615. Type 'dornl3 watch --help' to "
       "see what there is.\n"},
      {"dornl3 watch --local --json -t status", 2, nullptr},
      {"dornl3 watch --local status.numVrf", 1,
       "dornl3: status has no attribute 'numVrf'; did you mean 'numVrfs'? 'dornl3 types "
       "Hardware::DornL3Unicast::Status' lists what it has.\n"},
  };
  for (auto const& one : cases) {
    Command command{one.line};
    std::string const complaint = command.line();
    if (one.complaint != nullptr) {
      EXPECT_EQ(complaint, one.complaint);
    }
    EXPECT_EQ(command.finish(), one.status) << one.line;
  }
}

}  // namespace
}  // namespace Apps
