#include "dornl3/text/ValueText.h"

#include "tests/core/LeakCheck.h"
#include "tests/frame/Toy.h"
#include "tests/platform/ReadText.h"

#include <cmath>
#include <limits>
#include <random>
#include <sstream>

using Toys::ToyPoint;
using Vek::String8;

namespace {

struct ValueText : LeakCheck {};

auto read(std::string_view text, int length = -1) {
  return readText(
      text, [](auto& it, auto const& end) { return ToyPoint(it, end); }, length);
}

std::string const head = "Value('Toys::ToyPoint', ** {";

TEST_F(ValueText, NamesTheTypeAndAllAttributesInNumberOrder) {
  EXPECT_TRUE(valueToStrep(ToyPoint{}) == "Value('Toys::ToyPoint', ** {'x': 0, 'y': 0.0, 'label': ''})");
  ToyPoint const point{7, -0.25, "it's"};
  EXPECT_TRUE(valueToStrep(point) == "Value('Toys::ToyPoint', ** {'x': 7, 'y': -0.25, 'label': 'it\\'s'})");
}

TEST_F(ValueText, GoesToAStreamAsItIs) {
  std::ostringstream os;
  os.width(200);
  os.fill('#');
  os << ToyPoint{};
  EXPECT_EQ(os.str(), std::string{std::string_view{valueToStrep(ToyPoint{})}});
}

TEST_F(ValueText, IsReadWithAnySpacingOrderAndOmission) {
  struct {
    std::string text;
    ToyPoint value;
  } const cases[] = {
      {head + "'x': 1, 'y': 2.5, 'label': 'a'})", {1, 2.5, "a"}},
      {" \n Value ( 'Toys::ToyPoint' ,\t** { 'x' : 1 , 'y' :2.5,'label':'a' } )  ", {1, 2.5, "a"}},
      {"Value('Toys::ToyPoint',**{'x':1,'y':2.5,'label':'a'})", {1, 2.5, "a"}},
      {head + "'label': 'a', 'y': 2.5, 'x': 1})", {1, 2.5, "a"}},
      {head + "\"x\": 1, 'y': 2, \"label\": \"it's\"})", {1, 2, "it's"}},
      {head + "'y': 3})", {0, 3, ""}},
      {head + "})", {}},
      {head + "  }  )", {}},
      {head + "'x': 1, 'x': 2})", {2, 0, ""}},
      {head + "'label': 'a', 'label': ''})", {0, 0, ""}},
      {head + "'x': 4294967301})", {5, 0, ""}},
      {head + "'x': -4294967295})", {1, 0, ""}},
      {head + "'x': 101, 'x': 100})", {100, 0, ""}},
      {head + "'y': inf})", {0, std::numeric_limits<double>::infinity(), ""}},
  };
  for (auto const& c : cases) {
    SCOPED_TRACE(c.text);
    auto const got = read(c.text);
    ASSERT_TRUE(got.value) << got.message;
    EXPECT_TRUE(*got.value == c.value) << *got.value;
    EXPECT_EQ(got.column, static_cast<int>(c.text.size()));
  }
}

TEST_F(ValueText, IsRefusedWithAMessageAndTheCursorAtThePlace) {
  int const in = static_cast<int>(head.size());
  std::string const premature = "premature end of value type ToyPoint";
  struct {
    std::string text;
    std::string message;  // "" where it is long and another case shows it
    int column;
  } const cases[] = {
      {"", "expected Value at column 0, found the end of the text", 0},
      {"  Valve", "", 5},
      {"value('Toys::ToyPoint', ** {})", "", 0},
      {"Value 'Toys::ToyPoint', ** {})", "expected ( at column 6, found '\\'Toys::ToyPoint\\', ** {})'", 6},
      {"Value('Toys::ToyPoints', ** {})", "expected 'Toys::ToyPoint' at column 21, found 's\\', ** {})'", 21},
      {"Value('ToyPoint', ** {})", "", 10},
      {"Value(\"Toys::ToyPoint\", ** {})", "", 6},
      {"Value('Toys::ToyPoint' ** {})", "", 23},
      {"Value('Toys::ToyPoint', * * {})", "", 25},
      {"Value('Toys::ToyPoint', ** [])", "", 27},
      {head, premature, in},
      {head + "  ", premature, in + 2},
      {head + "'x': 1", premature, in + 6},
      {head + "'x': 1   ", premature, in + 9},
      {head + "'x': 1,", "expected a string in quotes at column 35, found the end of the text", in + 7},
      {head + "'x': 1,})", "expected a string in quotes at column 35, found '})'", in + 7},
      {head + "'x': 1 , })", "", in + 9},
      {head + ", 'x': 1})", "expected a string in quotes at column 28, found ', \\'x\\': 1})'", in},
      {head + "'x': 1 'y': 2})", "expected , at column 35, found '\\'y\\': 2})'", in + 7},
      {head + "'x': 1; 'y': 2})", "", in + 6},
      {head + "'x' 1})", "expected : at column 32, found '1})'", in + 4},
      {head + "x: 1})", "", in},
      {head + "'x", "expected a string with its closing quote at column 28, found '\\'x'", in},
      {head + "'z': no value at all", "ToyPoint has no such attribute: z", in + 5},
      {head + "'X': 1})", "ToyPoint has no such attribute: X", in + 5},
      {head + "'': 1})", "ToyPoint has no such attribute: ", in + 4},
      {head + "'x\\x00': 1})", std::string("ToyPoint has no such attribute: x\0", 34), in + 9},
      {head + "'x': 'a'})", "x: expected a whole number at column 33, found '\\'a\\'})'", in + 5},
      {head + "'x': })", "", in + 5},
      {head + "'x': 1.5})", "expected , at column 34, found '.5})'", in + 6},
      {head + "'x': 99999999999999999999})", "", in + 5},
      {head + "'y': ten})", "y: expected a number at column 33, found 'ten})'", in + 5},
      {head + "'label': a})", "label: expected a string in quotes at column 37, found 'a})'", in + 9},
      {head + "'label' : 'a\\q'})", "", in + 10},
      {head + "'x': 1}", "expected ) at column 35, found the end of the text", in + 7},
      {head + "'x': 1})", "", -1},
      // Limits are looked at when the text is complete and right.
      {head + "'x': 101})", "ToyPoint::x < 0 or > 100 not allowed", in + 10},
      {head + "'x': -1})  ", "ToyPoint::x < 0 or > 100 not allowed", in + 11},
      {head + "'x': 101}", "expected ) at column 37, found the end of the text", in + 9},
      {head + "'x': 101, 'y': ten})", "y: expected a number at column 43, found 'ten})'", in + 15},
  };
  for (auto const& c : cases) {
    SCOPED_TRACE(c.text);
    auto const got = read(c.text);
    if (c.column < 0) {
      EXPECT_TRUE(got.value) << "the good text among the bad ones";
      continue;
    }
    EXPECT_FALSE(got.value);
    EXPECT_EQ(got.column, c.column);
    EXPECT_FALSE(got.message.empty());
    EXPECT_TRUE(c.message.empty() || c.message == got.message) << got.message << "\nnot:\n" << c.message;
  }
}

TEST_F(ValueText, CanBeReadOutOfALongerText) {
  std::string const one{std::string_view{valueToStrep(ToyPoint{1, 2, "a"})}};
  auto const got = read(one + "  rest");
  ASSERT_TRUE(got.value);
  EXPECT_EQ(got.column, static_cast<int>(one.size()) + 2) << "the blanks behind it belong to it";

  for (std::size_t length = 0; length < one.size(); ++length) {
    auto const cut = read(one, static_cast<int>(length));
    EXPECT_FALSE(cut.value) << length;
    EXPECT_LE(cut.column, static_cast<int>(length));
  }
  EXPECT_TRUE(read(one + one, static_cast<int>(one.size())).value);
}

TEST_F(ValueText, AWholeTextMayHaveBlanksBehindItAndNothingElse) {
  std::string const one{std::string_view{valueToStrep(ToyPoint{1, 2, "a"})}};
  auto const whole = [](std::string const& text) {
    return readText(text,
                    [&](auto&, auto const&) { return Vek::valueFromText<ToyPoint>(String8{std::string_view{text}}); });
  };
  EXPECT_TRUE((whole(one + " \n").value == ToyPoint{1, 2, "a"}));
  EXPECT_EQ(whole(one + "  x").message,
            "junk at column " + std::to_string(one.size() + 2) + " deserializing " + one + "  x");
  EXPECT_EQ(whole(one + one).message, "junk at column " + std::to_string(one.size()) + " deserializing " + one + one);
  EXPECT_EQ(whole(one + std::string("\0x", 2)).message,
            "junk at column " + std::to_string(one.size()) + " deserializing " + one)
      << "a message shows a text up to its first zero byte";
}

TEST_F(ValueText, ABareValueHasTheTextOfItsOneAttribute) {
  EXPECT_TRUE(valueToStrep(Toys::ToyVlan{Bridging::VlanIdOrNone{4094}}) == "4094");
  auto const readVlan = [](std::string_view text) {
    return readText(text, [](auto& it, auto const& end) { return Toys::ToyVlan(it, end); });
  };
  EXPECT_EQ(readVlan("17 ").value->vlan().value(), 17);
  EXPECT_EQ(readVlan("17 ").column, 2) << "no blank belongs to it";
  EXPECT_EQ(readVlan("4095").message, "vlan: VlanIdOrNone::value > 4094 not allowed");
  EXPECT_EQ(readVlan("4095").column, 0);
  EXPECT_EQ(readVlan("Value(").message, "vlan: expected a whole number at column 0, found 'Value('");
}

// Texts broken in every way: each is read or refused, the cursor stays inside, and what is read can be written again.
TEST_F(ValueText, NoTextIsTooStrange) {
  std::mt19937 random{4711};  // NOLINT(cert-msc51-cpp): the same texts in each run
  auto const below = [&random](std::size_t limit) { return static_cast<std::size_t>(random()) % limit; };
  std::string const pieces[] = {"Value",   "(",
                                ")",       "'Toys::ToyPoint'",
                                ",",       "**",
                                "{",       "}",
                                "'x'",     "'y'",
                                "'label'", ":",
                                " ",       "'",
                                "\\",      "\\x",
                                "-",       "1",
                                "99",      "1e400",
                                "nan",     "inf",
                                "\xff",    "0.5",
                                "\"",      "\n",
                                "True",    "None",
                                "\\'",     std::string(1, '\0')};
  int accepted = 0;
  for (int i = 0; i < 200000; ++i) {
    std::string text{std::string_view{valueToStrep(ToyPoint{static_cast<Vek::U32>(below(120)), 0.5, "it's\n"})}};
    for (std::size_t edits = below(5); edits > 0; --edits) {
      std::size_t const at = below(text.size() + 1);
      switch (below(4)) {
      case 0: text.insert(at, pieces[below(std::size(pieces))]); break;
      case 1: text.erase(at, 1 + below(8)); break;
      case 2: text.insert(at, text.substr(below(text.size() + 1), below(20))); break;
      default:
        if (at < text.size()) text[at] = static_cast<char>(random());
      }
    }
    auto const got = read(text);
    ASSERT_GE(got.column, 0);
    ASSERT_LE(got.column, static_cast<int>(text.size()));
    ASSERT_NE(got.value.has_value(), !got.message.empty());
    if (!got.value || std::isnan(got.value->y())) continue;
    ++accepted;
    ASSERT_TRUE(Vek::valueFromText<ToyPoint>(valueToStrep(*got.value)) == *got.value) << text;
  }
  EXPECT_GT(accepted, 20000) << "texts that are read are among them";
}

}  // namespace
