// Where a process listens, and who may have it.
#include "dornl3/platform/link/Listener.h"

#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

namespace {

using namespace Vek::Link;

std::string complaint(std::string const& text) {
  try {
    static_cast<void>(Address::parse(text));
    return {};
  } catch (AddressError const& error) {
    return error.what();
  }
}

TEST(Address, IsRefusedWithWhatIsWrong) {
  using Case = std::pair<char const*, char const*>;  // and a part of the complaint; empty: it is one
  std::string const longest = "unix:/" + std::string(106, 'p');
  for (auto const& [text, wanted] :
       {Case{"unix:/run/l3.sock", ""}, Case{"tcp:127.0.0.1:0", ""}, Case{"tcp:[::1]:65535", ""},
        Case{longest.c_str(), ""}, Case{"unix:", "no path"}, Case{"/run/l3.sock", "neither unix: nor tcp:"},
        Case{"tcp:7700", "no host and port"}, Case{"tcp::7700", "no host and port"},
        Case{"tcp:127.0.0.1:65536", "is no port"}, Case{"tcp:127.0.0.1:", "is no port"},
        Case{"tcp:127.0.0.1:1x", "is no port"}}) {
    std::string const got = complaint(text);
    EXPECT_EQ(got.empty(), *wanted == '\0') << text << ": " << got;
    EXPECT_NE(got.find(wanted), std::string::npos) << text << ": " << got;
  }
  EXPECT_NE(complaint(longest + "p").find("longer than 107 bytes"), std::string::npos);
}

class ListenerTest : public testing::Test {
 protected:
  ListenerTest() { std::filesystem::create_directory(directory); }
  ~ListenerTest() override { std::filesystem::remove_all(directory); }

  [[nodiscard]] mode_t modeOfPath() const {
    struct stat found {};
    return lstat(path.c_str(), &found) == 0 ? found.st_mode & 0777 : 0;
  }
  [[nodiscard]] std::string refusal() const {
    try {
      Listener const refused{address, 0600};
      return {};
    } catch (AddressError const& error) {
      return error.what();
    }
  }

  std::string const directory = testing::TempDir() + "listener" + std::to_string(getpid());
  std::string const path = directory + "/l3.sock";
  Address const address = Address::parse("unix:" + path);
};

TEST_F(ListenerTest, HasItsModeWhateverTheMaskAndTakesItsFileAway) {
  for (mode_t const mask : {0U, 0777U}) {
    mode_t const before = umask(mask);
    Socket const events{inotify_init1(IN_NONBLOCK)};
    ASSERT_GE(inotify_add_watch(events.descriptor(), directory.c_str(), IN_ATTRIB), 0);
    {
      Listener const listener{address, 0660};
      EXPECT_EQ(modeOfPath(), 0660U);
    }
    std::array<char, 4096> event{};
    EXPECT_LT(read(events.descriptor(), event.data(), event.size()), 0) << "its mode came after it";
    EXPECT_EQ(umask(before), mask);
    EXPECT_EQ(modeOfPath(), 0U);
  }
}

TEST_F(ListenerTest, TakesThePlaceOfTheDeadAlone) {
  {
    Socket left = Socket::of(address);
    ASSERT_EQ(bind(left.descriptor(), address.socketAddress(), address.length()), 0);
  }
  {
    Listener const listener{address, 0600};
    EXPECT_NE(refusal().find("another process listens there"), std::string::npos);
    // Somebody has put another file there: it is not ours to take away.
    unlink(path.c_str());
    std::ofstream{path} << "mine";
  }
  EXPECT_NE(modeOfPath(), 0U);
  EXPECT_NE(refusal().find("no socket"), std::string::npos);
}

TEST_F(ListenerTest, KnowsWhoConnects) {
  Listener listener{address, 0600};
  Socket taken;
  EXPECT_EQ(listener.accept(taken), Listener::Taken::none);
  Socket caller = Socket::of(address);
  EXPECT_TRUE(caller.connect(address));
  ASSERT_EQ(listener.accept(taken), Listener::Taken::one);
  ASSERT_TRUE(taken.peer());
  EXPECT_EQ(taken.peer()->process, getpid());
  EXPECT_EQ(taken.peer()->user, getuid());
}

}  // namespace
