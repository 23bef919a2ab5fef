#include "dornl3/text/ValueText.h"

#include "tests/core/LeakCheck.h"
#include "tests/frame/Toy.h"
#include "tests/platform/ReadText.h"

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

TEST_F(ValueText, IsReadWithAnySpacingOrderAndOmission) {
  std::pair<std::string, ToyPoint> const cases[] = {
      {" \n\v\f\r Value ( 'Toys::ToyPoint' ,\t** { 'x' : 1 , 'y' :2.5,'label':'a' } )  ", {1, 2.5, "a"}},
      {"Value('Toys::ToyPoint',**{'x':1,'y':2.5,'label':'a'})", {1, 2.5, "a"}},
      {head + "'label': 'a', 'y': 2.5, 'x': 1})", {1, 2.5, "a"}},
      {head + "\"x\": 1, 'y': 2, \"label\": \"it's\"})", {1, 2, "it's"}},
      {head + "'y': 3})", {0, 3, ""}},
      {head + "})", {}},
      {head + "'x': 1, 'x': 2})", {2, 0, ""}},
      {head + "'x': 4294967301})", {5, 0, ""}},
      {head + "'x': 101, 'x': 100})", {100, 0, ""}},
  };
  for (auto const& [text, value] : cases) {
    SCOPED_TRACE(text);
    auto const got = read(text);
    ASSERT_TRUE(got.value) << got.message;
    EXPECT_TRUE(*got.value == value) << *got.value;
    EXPECT_EQ(got.column, static_cast<int>(text.size()));
  }
}

TEST_F(ValueText, IsRefusedWithAMessageAndTheCursorAtThePlace) {
  int const in = static_cast<int>(head.size());
  std::string const premature = "premature end of value type ToyPoint";
  struct {
    std::string text;
    std::string message;
    int column;
  } const cases[] = {
      {"", "expected Value at column 0, found the end of the text", 0},
      {"Value 'Toys::ToyPoint', ** {})", "expected ( at column 6, found '\\'Toys::ToyPoint\\', ** {})'", 6},
      {"Value('Toys::ToyPoints', ** {})", "expected 'Toys::ToyPoint' at column 21, found 's\\', ** {})'", 21},
      {"Value('Toys::ToyPoint' ** {})", "expected , at column 23, found '** {})'", 23},
      {"Value('Toys::ToyPoint', * * {})", "expected ** at column 25, found ' * {})'", 25},
      {head + "  ", premature, in + 2},
      {head + "'x': 1   ", premature, in + 9},
      {head + "'x': 1,})", "expected a string in quotes at column 35, found '})'", in + 7},
      {head + ", 'x': 1})", "expected a string in quotes at column 28, found ', \\'x\\': 1})'", in},
      {head + "'x': 1 'y': 2})", "expected , at column 35, found '\\'y\\': 2})'", in + 7},
      {head + "'x' 1})", "expected : at column 32, found '1})'", in + 4},
      {head + "'x", "expected a string with its closing quote at column 28, found '\\'x'", in},
      {head + "'z': no value at all", "ToyPoint has no such attribute: z", in + 5},
      {head + "'x\\x00': 1})", std::string("ToyPoint has no such attribute: x\0", 34), in + 9},
      {head + "'x': 'a'})", "x: expected a whole number at column 33, found '\\'a\\'})'", in + 5},
      {head + "'x': 1.5})", "expected , at column 34, found '.5})'", in + 6},
      {head + "'y': ten})", "y: expected a number at column 33, found 'ten})'", in + 5},
      {head + "'label': a})", "label: expected a string in quotes at column 37, found 'a})'", in + 9},
      {head + "'x': 1}", "expected ) at column 35, found the end of the text", in + 7},
      // Limits are looked at when the text is complete and right.
      {head + "'x': 101})", "ToyPoint::x < 0 or > 100 not allowed", in + 10},
      {head + "'x': -1})  ", "ToyPoint::x < 0 or > 100 not allowed", in + 11},
      {head + "'x': 101}", "expected ) at column 37, found the end of the text", in + 9},
      {head + "'x': 101, 'y': ten})", "y: expected a number at column 43, found 'ten})'", in + 15},
  };
  for (auto const& c : cases) {
    SCOPED_TRACE(c.text);
    auto const got = read(c.text);
    EXPECT_FALSE(got.value);
    EXPECT_EQ(got.column, c.column);
    EXPECT_EQ(got.message, c.message);
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
}

}  // namespace
