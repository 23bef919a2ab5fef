#include "dornl3/platform/vek/ScalarText.h"

#include "tests/core/LeakCheck.h"
#include "tests/platform/ReadText.h"

#include <bit>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <sstream>

using namespace Vek;

namespace {

struct ScalarText : LeakCheck {
  std::mt19937_64 random{20240229};  // NOLINT(cert-msc51-cpp): the same cases in each run
  U64 below(U64 limit) { return random() % limit; }
};

template <class T>
std::string textOf(T const& value) {
  if constexpr (std::is_same_v<T, long double>)
    return textOf(static_cast<double>(value));
  else if constexpr (std::is_same_v<T, long long>)
    return textOf(static_cast<U64>(value));
  else
    return std::string{std::string_view{valueToStrep(value)}};
}

TEST_F(ScalarText, DoublesAreWrittenInTheFewestDigits) {
  std::istringstream texts(
      "0.0 -0.0 1.0 -17.0 0.5 0.1 0.3333333333333333 123456.789 1000000000000000.0 9999999999999998.0 1e+16 -1.5e+16 "
      "1.2345678901234568e+17 1e+100 0.0001 0.00012345 1e-05 1.25e-10 5e-324 2.2250738585072014e-308 "
      "1.7976931348623157e+308 inf -inf nan");
  for (std::string text; texts >> text;) EXPECT_EQ(textOf(std::strtod(text.c_str(), nullptr)), text);
}

TEST_F(ScalarText, EveryDoubleReadsBackTheSame) {
  for (int i = 0; i < 300000; ++i) {
    auto const value = std::bit_cast<double>(i < 4096 ? static_cast<U64>(i) << 52 : random());
    auto const text = textOf(value);
    auto const read = readScalar<long double>(text);
    ASSERT_TRUE(read.value) << text << ' ' << read.message;
    ASSERT_EQ(read.column, static_cast<int>(text.size())) << text;
    auto const back = static_cast<double>(*read.value);
    if (std::isnan(value)) {
      ASSERT_TRUE(std::isnan(back));
    } else {
      ASSERT_EQ(std::bit_cast<U64>(back), std::bit_cast<U64>(value)) << text;
    }
  }
}

TEST_F(ScalarText, ANumberIsRoundedOnceToTheNearestDouble) {
  std::pair<std::string, double> const cases[] = {
      // Just beside the middle of two doubles, nearer than the extended type can tell: rounding twice gets them wrong.
      {"9007199254740993.00000000000000000000001", 9007199254740994.0},
      {"1.00000000000000011102230246251565404236316680908203126", 1.0000000000000002},
      {"1.00000000000000033306690738754696212708950042724609374", 1.0000000000000002},
      {"2.4703282292062327208e-324", 0.0},
      {"2.4703282292062327209e-324", 5e-324},
      // At the ends of the range.
      {"2.2250738585072011e-308", 2.225073858507201e-308},
      {"1.7976931348623158e308", 1.7976931348623157e308},
      {"1.7976931348623159e308", std::numeric_limits<double>::infinity()},
      {"-1e309", -std::numeric_limits<double>::infinity()},
      {"1e99999999999999999999", std::numeric_limits<double>::infinity()},
      {"1e-99999999999999999999", 0.0},
      {"0e99999999999999999999", 0.0},
      {"0." + std::string(350, '0') + "1e5", 0.0},
      {"-1e-400", -0.0},
      // Other ways to write one.
      {".5", 0.5},
      {"5.", 5},
      {"+5e0", 5},
      {"5E+1", 50},
      {"007.25", 7.25},
      {"+inf", std::numeric_limits<double>::infinity()},
  };
  for (auto const& [text, value] : cases) {
    auto const read = readScalar<long double>(text);
    ASSERT_TRUE(read.value) << text;
    EXPECT_EQ(std::bit_cast<U64>(static_cast<double>(*read.value)), std::bit_cast<U64>(value)) << text;
    EXPECT_EQ(read.column, static_cast<int>(text.size())) << text;
  }
}

// Each text is read up to its bar, and as what `value` makes of that part.
template <class T, class Value>
void expectReads(Value const& value, std::initializer_list<std::string_view> texts) {
  for (std::string_view const text : texts) {
    SCOPED_TRACE(text);
    std::string const front{text.substr(0, text.find('|'))};
    auto const read = readScalar<T>(front + std::string{text.substr(front.size() + 1)});
    ASSERT_TRUE(read.value) << read.message;
    EXPECT_EQ(textOf(*read.value), textOf(value(front.c_str())));
    EXPECT_EQ(read.column, static_cast<int>(front.size()));
  }
}

// Each text is refused for want of `wanted`, with the cursor where it was.
template <class T>
void expectRefuses(std::string const& wanted, std::initializer_list<std::string_view> texts) {
  for (std::string_view const text : texts) {
    SCOPED_TRACE(text);
    auto const read = readScalar<T>(text);
    EXPECT_FALSE(read.value);
    EXPECT_EQ(read.column, 0);
    std::string const found = text.empty() ? "the end of the text" : textOf(String8(text));
    EXPECT_EQ(read.message, "expected " + wanted + " at column 0, found " + found);
  }
}

TEST_F(ScalarText, ADoubleEndsWhereTheNumberDoes) {
  expectReads<long double>([](char const* text) { return std::strtod(text, nullptr); },
                           {"1|e", "1|e+", "1.5|.5", "0|x10", "1|_0", "inf|inity", "nan|o", "-nan|", "3|, 'y'"});
  expectRefuses<long double>("a number", {"", "-", ".", "e5", "+-1", " 1", "in", "NaN"});
}

TEST_F(ScalarText, AWholeNumberIsDecimalWithAnOptionalSign) {
  auto const bits = [](char const* text) {
    return *text == '-' ? static_cast<U64>(std::strtoll(text, nullptr, 10)) : std::strtoull(text, nullptr, 10);
  };
  expectReads<long long>(bits, {"-0|", "+17|", "0017|", "17|.5", "0|x1f", "1|e3", "9223372036854775808|",
                                "18446744073709551615|", "-9223372036854775808|"});
  EXPECT_EQ(textOf(~U64{0}), "18446744073709551615");
  expectRefuses<long long>("a whole number", {"", "-", "+-5", " 5", "x"});
  expectRefuses<long long>("a number of at most 64 bits", {"18446744073709551616", "-9223372036854775809"});
}

TEST_F(ScalarText, AStringIsQuotedAndWhatDoesNotPrintIsEscaped) {
  std::pair<std::string_view, char const*> const cases[] = {
      {"", "''"},
      {" plain text~", "' plain text~'"},
      {"it's", "'it\\'s'"},
      {"\"quoted\"", "'\"quoted\"'"},
      {"a\\b", "'a\\\\b'"},
      {"\n\r\t", "'\\n\\r\\t'"},
      {std::string_view{"\0\x1f\x7f\x80\xff", 5}, "'\\x00\\x1f\\x7f\\x80\\xff'"},
  };
  for (auto const& [value, text] : cases) EXPECT_EQ(textOf(String8{value}), text);
}

TEST_F(ScalarText, EveryByteStringReadsBackTheSame) {
  auto const expectBack = [](std::string const& bytes) {
    auto const text = textOf(String8{std::string_view{bytes}});
    for (char const c : text) ASSERT_TRUE(c >= 0x20 && c <= 0x7e);
    auto const read = readScalar<String8>(text + "'");
    ASSERT_TRUE(read.value) << text << read.message;
    ASSERT_EQ(std::string_view{*read.value}, bytes) << text;
    ASSERT_EQ(read.column, static_cast<int>(text.size()));
  };
  for (int pair = 0; pair < 0x10000; ++pair) expectBack({static_cast<char>(pair >> 8), static_cast<char>(pair)});
  for (int i = 0; i < 3000; ++i) {
    std::string bytes(below(i % 100 == 0 ? 3000 : 40), '\0');
    for (char& c : bytes) c = "'\"\\xn0a\n\t \x80"[below(12)];
    expectBack(bytes);
  }
}

TEST_F(ScalarText, AStringEndsAtItsOwnQuote) {
  auto const content = [](std::string_view value) { return [value](char const*) { return String8{value}; }; };
  expectReads<String8>(content("it's"), {"\"it's\"|", "'it\\'s'|'", "\"it\\'s\"|\"", "'\\x69t\\x27s'|"});
  expectReads<String8>(content("a"), {"'a'|b'", "\"a\"|"});
  expectReads<String8>(content(""), {"''|", "''|''"});
  expectReads<String8>(content("\xaf\n"), {"'\\xaF\n'|", "'\\xAf\\n'|"});
  expectRefuses<String8>("a string in quotes", {"", "a", " 'a'", "`a`"});
  expectRefuses<String8>("a string with its closing quote", {"'", "'a", "'a\"", "'a\\'"});
  expectRefuses<String8>("a string whose escapes are \\n \\r \\t \\\\ \\' \\\" or \\xHH",
                         {"'\\", "'\\q'", "'\\x4'", "'\\xg0'", "'\\x"});
}

TEST_F(ScalarText, NoReaderLooksBehindTheEnd) {
  EXPECT_EQ(readScalar<long long>("12345", 3).value, 123);
  EXPECT_EQ(readScalar<long double>("12.545", 4).value, 12.5L);
  EXPECT_EQ(readScalar<long double>("1e55", 3).value, 1e5L);
  EXPECT_FALSE(readScalar<bool>("True", 3).value);
  EXPECT_FALSE(readScalar<String8>("'abc'", 4).value);
  EXPECT_EQ(readScalar<String8>("'abc'd'", 5).column, 5);
  EXPECT_FALSE(readScalar<long long>("123", 0).value);
}

}  // namespace
