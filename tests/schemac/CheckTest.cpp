// What a check says of several files, and how much a file may hold.
#include "tests/schemac/Schemas.h"

#include <fmt/format.h>

namespace Schemac::Test {
namespace {

std::vector<std::string> told(Complaints const& complaints) {
  std::vector<std::string> lines;
  for (Complaint const& c : complaints) lines.push_back(toString(c));
  return lines;
}

using Told = std::vector<std::string>;

File read(std::string const& path, std::string_view text) { return *readText(path, text).file; }

TEST(Check, SeesAllFilesTogether) {
  constexpr std::string_view first = R"(namespace = "Acme::Net"
[[entity]]
name = "Fan"
factory = "fanFactory"
doc = "a fan"
attributes = [ { number = 258, name = "speed", type = "U32", doc = "its speed" } ]
)";
  std::string const second =
      acme + typed("value", "Net", R"({ number = 2, name = "size", type = "U32", doc = "a size" })");
  Told const expected = {
      "Third.toml:3:8: error: type 'Acme::Net::Fan' is defined already in One.toml:3; choose another name",
      "Third.toml:4:11: error: factory 'Acme::Net::fanFactory' is defined already in One.toml:4; choose another name",
      "two/Two.toml:3:8: error: type 'Acme::Net' is a namespace of One.toml; choose another name",
  };
  EXPECT_EQ(told(check({read("One.toml", first), read("two/Two.toml", second), read("Third.toml", first)})), expected);
}

TEST(Check, SaysOneThingOfAFileName) {
  std::string const isBad =
      "bad-name.toml:1:1: error: file name 'bad-name' is not in upper camel case; write a capital "
      "letter, then letters and digits: 'RouteStats'";
  Told const expected = {
      "b/Toy.toml:1:1: error: file name 'Toy' is defined already in a/Toy.toml:1; choose another name", "a/" + isBad,
      "b/" + isBad};
  EXPECT_EQ(told(checkFileNames({read("a/Toy.toml", ""), read("b/Toy.toml", ""), read("a/bad-name.toml", ""),
                                 read("b/bad-name.toml", "")})),
            expected);
}

std::string schema(std::string const& attributes, std::string const& nameSpace = "Acme") {
  return fmt::format("namespace = \"{}\"\n", nameSpace) + typed("value", "Toy", attributes);
}

std::string attribute(std::string const& keys, std::size_t number = 2, std::string const& doc = "d") {
  return fmt::format("{{ number = {}, doc = \"{}\", {} }},\n", number, doc, keys);
}

std::string some(char c, std::size_t count) { return std::string(count, c); }

// A schema with so much of something.
struct Limit {
  std::size_t most;
  std::string (*with)(std::size_t);
  char const* beyond;  // the complaint about one more
};

Limit const limits[] = {
    {256,
     [](std::size_t n) {
       std::string text = acme;
       for (std::size_t i = 0; i < n; ++i)
         text += typed("value", fmt::format("T{}", i), attribute("name = 'a', type = 'U8'"));
       return text;
     },
     "the file has 257 types; write at most 256"},
    {512,
     [](std::size_t n) {
       std::string all;
       for (std::size_t i = 2; i < n + 2; ++i) all += attribute(fmt::format("name = 'a{}', type = 'U8'", i), i);
       return schema(all);
     },
     "'Toy' has 513 attributes; write at most 512"},
    {8,
     [](std::size_t n) {
       std::string parts = "A";
       for (std::size_t i = 1; i < n; ++i) parts += fmt::format("::A{}", i);
       return schema(attribute("name = 'a', type = 'U8'"), parts);
     },
     "namespace has 9 parts; write at most 8"},
    {64, [](std::size_t n) { return schema(attribute(fmt::format("name = '{}', type = 'U8'", some('a', n)))); },
     "attribute has a name of 65 letters; write at most 64"},
    {200, [](std::size_t n) { return schema(attribute("name = 'a', type = 'U8'", 2, some('d', n))); },
     "doc has 201 bytes; say it in at most 200"},
    {200,
     [](std::size_t n) {
       return schema(attribute(fmt::format("name = 'a', type = 'Vek::String', default = '{}'", some('t', n))));
     },
     "default has 201 bytes; write at most 200"},
    {255, [](std::size_t n) { return schema(attribute(fmt::format("name = 'a', type = 'U8', default = {}", n))); },
     "'default' of a U8 is an integer from 0 to 255; 256 is not"},
    {255, [](std::size_t n) { return schema(attribute(fmt::format("name = 'a', type = 'U8', min = 0, max = {}", n))); },
     "'max' is 256, and a U8 holds 0 to 255"},
    {7,
     [](std::size_t n) {
       return schema(attribute(fmt::format("name = 'a', type = 'U8', min = 7, max = 7, default = {}", n)));
     },
     "default 8 lies outside the range 7 to 7; write default = 7"},
    {2000, [](std::size_t n) { return '#' + some('x', n - 1) + '\n' + schema(attribute("name = 'a', type = 'U8'")); },
     "line is longer than 2000 bytes; break it"},
    {1024 * 1024,
     [](std::size_t n) {
       std::string text = schema(attribute("name = 'a', type = 'U8'"));
       while (text.size() < n) text += '#' + some('x', std::min<std::size_t>(n - text.size() - 1, 1000)) + '\n';
       return text.substr(0, n);
     },
     "the file is longer than 1048576 bytes; split it"},
};

TEST(Check, AllowsAsMuchAsItSaysAndNoMore) {
  for (Limit const& limit : limits) {
    EXPECT_EQ(told(complaintsOf("Toy.toml", limit.with(limit.most))), Told{}) << limit.beyond;
    Complaints const found = complaintsOf("Toy.toml", limit.with(limit.most + 1));
    ASSERT_EQ(found.size(), 1u) << limit.beyond;
    EXPECT_EQ(found[0].text, limit.beyond);
  }
}

}  // namespace
}  // namespace Schemac::Test
