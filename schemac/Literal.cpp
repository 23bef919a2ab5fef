#include "schemac/Literal.h"

#include <fmt/format.h>

#include <charconv>
#include <type_traits>

namespace Schemac {

namespace {

// The shortest digits that read back the same, and always a floating-point literal.
std::string ofDouble(double value) {
  std::string text = fmt::format("{}", value);
  if (text.find_first_of(".en") == std::string::npos) text += ".0";  // 'n': inf and nan
  return text;
}

// '?' is escaped too: two in a row may begin a trigraph.
std::string cppString(std::string const& text) {
  std::string out = "\"";
  for (char const c : text) {
    auto const byte = static_cast<unsigned char>(c);
    bool const plain = byte >= 0x20 && byte < 0x7f && c != '"' && c != '\\' && c != '?';
    out += plain ? std::string(1, c) : fmt::format("\\{:03o}", byte);
  }
  return out + '"';
}

template <class StringForm>
std::string write(Literal const& literal, StringForm const& stringForm) {
  return std::visit(
      [&](auto const& value) -> std::string {
        using T = std::decay_t<decltype(value)>;
        if constexpr (std::is_same_v<T, bool>) return value ? "true" : "false";
        if constexpr (std::is_same_v<T, std::int64_t>) return std::to_string(value);
        if constexpr (std::is_same_v<T, double>) return ofDouble(value);
        if constexpr (std::is_same_v<T, std::string>) return stringForm(value);
      },
      literal);
}

}  // namespace

std::optional<std::uint64_t> unsignedOf(Literal const& literal) noexcept {
  if (auto const* const integer = std::get_if<std::int64_t>(&literal)) {
    return *integer < 0 ? std::nullopt : std::optional{static_cast<std::uint64_t>(*integer)};
  }
  auto const* const text = std::get_if<std::string>(&literal);
  if (text == nullptr || text->empty() || text->front() == '0') return std::nullopt;
  std::uint64_t number = 0;  // and stays so where the digits are too many
  char const* const end = text->data() + text->size();
  char const* const stop = std::from_chars(text->data(), end, number).ptr;
  return stop == end && number > maxOfToml ? std::optional{number} : std::nullopt;
}

std::string cppLiteral(Literal const& literal) { return write(literal, cppString); }

std::string schemaLiteral(Literal const& literal) {
  return write(literal, [](std::string const& text) { return fmt::format("\"{}\"", text); });
}

}  // namespace Schemac
