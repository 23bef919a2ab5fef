#include "dornl3/platform/vek/ScalarText.h"

#include "dornl3/platform/vek/TextReader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace Vek {

void writeText(TextBuffer& out, U64 value) {
  constexpr std::size_t longest = std::numeric_limits<U64>::digits10 + 1;
  char* const at = out.room(longest);
  out.advance(static_cast<std::size_t>(std::to_chars(at, at + longest, value).ptr - at));
}

void writeText(TextBuffer& out, bool value) { out.append(value ? "True" : "False"); }

namespace {

// Digits d1 d2 d3 ... and an exponent: the number is d1.d2d3... times ten to that power.
struct Decimal {
  std::array<char, 24> digits;
  int count = 0;
  int exponent = 0;
};

Decimal shortestDecimal(double magnitude) {
  std::array<char, 40> text;
  char const* const end =
      std::to_chars(text.data(), text.data() + text.size(), magnitude, std::chars_format::scientific).ptr;
  Decimal decimal;
  char const* at = text.data();
  for (; *at != 'e'; ++at) {
    if (*at != '.') decimal.digits[static_cast<std::size_t>(decimal.count++)] = *at;
  }
  ++at;
  if (*at == '+') ++at;
  std::from_chars(at, end, decimal.exponent);
  return decimal;
}

void writeFixed(TextBuffer& out, Decimal const& decimal) {
  std::string_view const digits{decimal.digits.data(), static_cast<std::size_t>(decimal.count)};
  if (decimal.exponent < 0) {
    out.append("0.");
    for (int zeros = decimal.exponent + 1; zeros < 0; ++zeros) out.append('0');
    out.append(digits);
    return;
  }
  auto const whole = static_cast<std::size_t>(decimal.exponent) + 1;
  out.append(digits.substr(0, whole));
  for (std::size_t zeros = digits.size(); zeros < whole; ++zeros) out.append('0');
  out.append('.');
  out.append(digits.size() > whole ? digits.substr(whole) : "0");
}

void writeScientific(TextBuffer& out, Decimal const& decimal) {
  std::string_view const digits{decimal.digits.data(), static_cast<std::size_t>(decimal.count)};
  out.append(digits.substr(0, 1));
  if (digits.size() > 1) {
    out.append('.');
    out.append(digits.substr(1));
  }
  out.append(decimal.exponent < 0 ? "e-" : "e+");
  int const power = std::abs(decimal.exponent);
  if (power < 10) out.append('0');
  writeText(out, static_cast<U64>(power));
}

}  // namespace

void writeText(TextBuffer& out, double value) {
  if (std::isnan(value)) {
    out.append("nan");
    return;
  }
  if (std::signbit(value)) out.append('-');
  if (std::isinf(value)) {
    out.append("inf");
    return;
  }
  Decimal const decimal = shortestDecimal(std::abs(value));
  bool const fixed = decimal.exponent >= -4 && decimal.exponent < 16;
  fixed ? writeFixed(out, decimal) : writeScientific(out, decimal);
}

namespace {

constexpr std::string_view hexDigits = "0123456789abcdef";

// The letter behind the backslash of an escape, or 0 where the byte has no letter of its own.
constexpr char escapeLetter(char byte) noexcept {
  switch (byte) {
  case '\n': return 'n';
  case '\r': return 'r';
  case '\t': return 't';
  case '\\': return '\\';
  case '\'': return '\'';
  default: return '\0';
  }
}

}  // namespace

void writeText(TextBuffer& out, String8 const& value) {
  out.append('\'');
  for (char const byte : value.view()) {
    auto const code = static_cast<U8>(byte);
    if (char const letter = escapeLetter(byte); letter != '\0') {
      out.append('\\');
      out.append(letter);
    } else if (code < 0x20 || code > 0x7e) {
      out.append("\\x");
      out.append(hexDigits[code >> 4]);
      out.append(hexDigits[code & 0xf]);
    } else {
      out.append(byte);
    }
  }
  out.append('\'');
}

namespace {

template <class T>
String8 textOf(T const& value) {
  TextBuffer out;
  writeText(out, value);
  return out.text();
}

}  // namespace

String8 valueToStrep(unsigned long long value) { return textOf(value); }
String8 valueToStrep(bool value) { return textOf(value); }
String8 valueToStrep(double value) { return textOf(value); }
String8 valueToStrep(String8 const& value) { return textOf(value); }

namespace {

using Cursor = String8::IteratorConst;

int hexValue(char digit) noexcept {
  if (digit >= 'A' && digit <= 'F') digit = static_cast<char>(digit - 'A' + 'a');
  auto const place = hexDigits.find(digit);
  return place == std::string_view::npos ? -1 : static_cast<int>(place);
}

// Reads what stands behind a backslash, at least one byte; appends the byte meant and returns how many were read,
// or 0 for an escape that is none.
std::size_t readEscape(std::string_view text, TextBuffer& out) {
  switch (text.front()) {
  case 'n': out.append('\n'); return 1;
  case 'r': out.append('\r'); return 1;
  case 't': out.append('\t'); return 1;
  case '\\':
  case '\'':
  case '"': out.append(text.front()); return 1;
  case 'x': break;
  default: return 0;
  }
  if (text.size() < 3) return 0;
  int const high = hexValue(text[1]);
  int const low = hexValue(text[2]);
  if (high < 0 || low < 0) return 0;
  out.append(static_cast<char>(high * 16 + low));
  return 3;
}

}  // namespace

String8 sequenceToValue(Cursor& it, Cursor const& end, String8*) {
  std::string_view const text = between(it, end);
  if (text.empty() || (text.front() != '\'' && text.front() != '"')) throwExpected("a string in quotes", it, end);
  char const quote = text.front();
  TextBuffer out;
  std::size_t at = 1;
  while (true) {
    std::size_t plainEnd = at;
    while (plainEnd < text.size() && text[plainEnd] != quote && text[plainEnd] != '\\') ++plainEnd;
    if (plainEnd == text.size()) throwExpected("a string with its closing quote", it, end);
    std::string_view const plain = text.substr(at, plainEnd - at);
    at = plainEnd + 1;
    if (text[plainEnd] == quote && out.view().empty()) {
      it += static_cast<int>(at);
      return String8(plain);
    }
    out.append(plain);
    if (text[plainEnd] == quote) break;
    std::size_t const escape = at < text.size() ? readEscape(text.substr(at), out) : 0;
    if (escape == 0) throwExpected("a string whose escapes are \\n \\r \\t \\\\ \\' \\\" or \\xHH", it, end);
    at += escape;
  }
  it += static_cast<int>(at);
  return out.text();
}

long long sequenceToValue(Cursor& it, Cursor const& end, long long*) {
  std::string_view const text = between(it, end);
  bool const negative = !text.empty() && text.front() == '-';
  bool const hasSign = negative || (!text.empty() && text.front() == '+');
  char const* const first = text.data() + (hasSign ? 1 : 0);
  U64 magnitude = 0;
  auto const [last, error] = std::from_chars(first, text.data() + text.size(), magnitude);
  if (error == std::errc::invalid_argument) throwExpected("a whole number", it, end);
  constexpr U64 largestNegative = U64{1} << 63;
  if (error != std::errc{} || (negative && magnitude > largestNegative)) {
    throwExpected("a number of at most 64 bits", it, end);
  }
  it += static_cast<int>(last - text.data());
  return static_cast<long long>(negative ? U64{0} - magnitude : magnitude);
}

namespace {

// What a number that from_chars finds out of range rounds to: its first digit that counts stands far left or far right
// of the point.
double roundedOutOfRange(std::string_view number) {
  long long point = 0;
  bool afterPoint = false;
  bool counts = false;
  std::size_t at = 0;
  for (; at < number.size() && number[at] != 'e' && number[at] != 'E'; ++at) {
    if (number[at] == '.') {
      afterPoint = true;
      continue;
    }
    counts = counts || number[at] != '0';
    if (!afterPoint && counts) ++point;
    if (afterPoint && !counts) --point;
  }
  long long exponent = 0;
  if (at < number.size()) {
    std::string_view digits = number.substr(at + 1);
    bool const negative = digits.front() == '-';
    if (negative || digits.front() == '+') digits.remove_prefix(1);
    constexpr long long beyondAll = 1LL << 40;  // more than any text has digits
    auto const error = std::from_chars(digits.data(), digits.data() + digits.size(), exponent).ec;
    exponent = error == std::errc{} ? std::min(exponent, beyondAll) : beyondAll;
    if (negative) exponent = -exponent;
  }
  return point + exponent > 0 ? std::numeric_limits<double>::infinity() : 0.0;
}

}  // namespace

long double sequenceToValue(Cursor& it, Cursor const& end, long double*) {
  std::string_view const text = between(it, end);
  bool const negative = !text.empty() && text.front() == '-';
  bool const hasSign = negative || (!text.empty() && text.front() == '+');
  std::string_view const unsignedText = text.substr(hasSign ? 1 : 0);
  double magnitude = 0;
  std::size_t length = 3;
  if (unsignedText.substr(0, 3) == "inf") {
    magnitude = std::numeric_limits<double>::infinity();
  } else if (unsignedText.substr(0, 3) == "nan") {
    magnitude = std::numeric_limits<double>::quiet_NaN();
  } else {
    constexpr std::string_view starts = "0123456789.";
    if (unsignedText.empty() || starts.find(unsignedText.front()) == std::string_view::npos) {
      throwExpected("a number", it, end);
    }
    char const* const first = unsignedText.data();
    auto const [last, error] = std::from_chars(first, first + unsignedText.size(), magnitude);
    if (error == std::errc::invalid_argument) throwExpected("a number", it, end);
    length = static_cast<std::size_t>(last - first);
    if (error == std::errc::result_out_of_range) magnitude = roundedOutOfRange(unsignedText.substr(0, length));
  }
  it += static_cast<int>(length + (hasSign ? 1 : 0));
  return negative ? -magnitude : magnitude;
}

bool sequenceToValue(Cursor& it, Cursor const& end, bool*) {
  std::string_view const text = between(it, end);
  for (bool const value : {true, false}) {
    std::string_view const word = value ? "True" : "False";
    if (text.substr(0, word.size()) != word) continue;
    it += static_cast<int>(word.size());
    return value;
  }
  throwExpected("True or False", it, end);
}

}  // namespace Vek
