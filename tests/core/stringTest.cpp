#include "dornl3/core/Exception.h"
#include "dornl3/core/Name.h"
#include "tests/core/LeakCheck.h"

#include <random>
#include <sstream>
#include <string>
#include <unordered_set>

using namespace Vek;
using Cursor = String8::IteratorConst;

namespace {

struct Strings : LeakCheck {};

String8 bytes(std::string const& text) { return String8{std::string_view{text}}; }

TEST_F(Strings, NullAndEmptyAreTheEmptyText) {
  String8 const empties[] = {String8{}, String8{static_cast<char const*>(nullptr)}, String8{""}, bytes("")};
  for (String8 const& empty : empties) {
    EXPECT_TRUE(empty == "");
    EXPECT_TRUE(empty == static_cast<char const*>(nullptr));
    EXPECT_TRUE(empty.empty());
    EXPECT_STREQ(empty.charPtr(), "");
    EXPECT_EQ(empty.hash(), String8{}.hash());
  }
  auto const before = String8::nullStringData_.references();
  { String8 const empty{""}; }
  EXPECT_EQ(String8::nullStringData_.references(), before);
}

TEST_F(Strings, CopyingSharesTheBytesAndTheLastReleaseFreesThem) {
  String8 first{"shared"};
  EXPECT_EQ(first.data().references(), 1U);
  {
    String8 const second = first;
    Name const name{second};
    EXPECT_EQ(&second.data(), &first.data());
    EXPECT_EQ(&name.data(), &first.data());
    EXPECT_EQ(first.data().references(), 3U);
  }
  EXPECT_EQ(first.data().references(), 1U);
  String8 const moved = std::move(first);
  EXPECT_EQ(moved.data().references(), 1U);
  EXPECT_TRUE(first.empty());  // NOLINT(bugprone-use-after-move): a moved-from string is the empty text
}

TEST_F(Strings, ACursorKeepsTheTextOfAStringThatHasGoneAndStaysInIt) {
  struct {
    int position;
    bool eot;
    bool inside;
    char const* rest;
    char const* string;
  } const cases[] = {{-1, false, false, "", "ab"},
                     {1, false, true, "b", "b"},
                     {2, true, false, "", ""},
                     {2147483647, true, false, "", ""}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.position);
    Cursor const cursor{String8{"ab"}, c.position};
    EXPECT_EQ(cursor.eot(), c.eot);
    EXPECT_EQ(cursor.inside(), c.inside);
    EXPECT_EQ(cursor.rest(), c.rest);
    EXPECT_EQ(std::string_view{String8{cursor}}, c.string);
    EXPECT_EQ(cursor.end().position(), 2);
  }
  EXPECT_TRUE(Cursor{}.eot());
}

TEST_F(Strings, SubstringsStayInTheText) {
  String8 const text{"0123456789"};
  struct {
    long long position;
    unsigned length;
    char const* expected;
  } const cases[] = {{3, 4, "3456"}, {3, ~0U, "3456789"}, {10, 1, ""}, {1LL << 40, 5, ""}, {-5, 2, "01"}, {5, 0, ""}};
  for (auto const& c : cases) EXPECT_EQ(std::string_view{text.substr(c.position, c.length)}, c.expected) << c.position;
  EXPECT_EQ(&text.substr(-(1LL << 40), ~0U).data(), &text.data()) << "the whole text is shared, not copied";
}

TEST_F(Strings, JoiningMakesANewTextAndLeavesTheOperands) {
  String8 const head{"head"};
  EXPECT_TRUE(head + "-tail" == "head-tail");
  EXPECT_TRUE("the " + head == "the head");
  EXPECT_TRUE(head + static_cast<char const*>(nullptr) == "head");
  String8 grown;
  String8 const before = grown += "ab";
  grown += grown;
  grown += String8{"c"};
  EXPECT_TRUE(grown == "ababc");
  EXPECT_TRUE(before == "ab");
  grown = static_cast<char const*>(nullptr);
  EXPECT_TRUE(grown == "");
}

TEST_F(Strings, ComparisonIsByBytesAsUnsignedNumbers) {
  std::string const rising[] = {"", std::string(1, '\0'), "A", "AB", "B", "a", "\x7f", "\x80", "\xff", "\xff\xff"};
  for (std::size_t i = 0; i < std::size(rising); ++i) {
    for (std::size_t j = 0; j < std::size(rising); ++j) {
      EXPECT_EQ(bytes(rising[i]) == bytes(rising[j]), i == j) << i << ' ' << j;
      EXPECT_EQ(bytes(rising[i]) < bytes(rising[j]), i < j) << i << ' ' << j;
      EXPECT_EQ(Name{bytes(rising[i])} < Name{bytes(rising[j])}, i < j) << i << ' ' << j;
    }
  }
  EXPECT_FALSE(bytes(std::string("a\0b", 3)) == "a") << "a zero byte ends no text";
}

TEST_F(Strings, EqualBytesHashAlikeInEveryClassAndBlock) {
  std::mt19937 random{7};  // NOLINT(cert-msc51-cpp): the same texts in each run
  std::unordered_set<Vek::U32> hashes;
  int distinct = 0;
  for (std::size_t length = 1; length < 40; ++length) {
    for (int i = 0; i < 25; ++i) {
      std::string text(length, '\0');
      for (char& c : text) c = static_cast<char>(random());
      EXPECT_EQ(bytes(text).hash(), Name{std::string_view{text}}.hash());
      EXPECT_EQ(bytes(text).hash(), bytes("x" + text).substr(1, ~0U).hash());
      hashes.insert(bytes(text + "#").hash());
      ++distinct;
    }
  }
  EXPECT_EQ(hashes.size(), static_cast<std::size_t>(distinct)) << "some 1,000 texts, 32 bits: a collision is a fault";
  EXPECT_NE(bytes(std::string(1, '\0')).hash(), String8{}.hash());
  EXPECT_NE(bytes(std::string(8, '\0')).hash(), bytes(std::string(16, '\0')).hash());
}

TEST_F(Strings, ATextLongerThanACursorCanCountIsRefused) {
  EXPECT_THROW(static_cast<void>(String8::Data::create(String8::maxLength + std::size_t{1})), Vek::RangeException);
  std::string const wide = "%2147483648s";  // wider than an int can count, which is known before anything is written
  EXPECT_THROW(static_cast<void>(Vek::format(wide.c_str(), "")), Vek::RangeException);
}

}  // namespace
