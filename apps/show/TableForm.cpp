#include "apps/show/TableForm.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <ctime>
#include <iterator>
#include <span>

namespace Apps::Show {

namespace {

using Group = std::span<Figure const>;

constexpr int labelWidth = 28;
constexpr int valueWidth = 12;

std::string timeText(Time const& time) {
  auto const seconds = static_cast<std::time_t>(std::floor(time.seconds));
  std::tm parts{};
  std::array<char, 32> text{};
  if (gmtime_r(&seconds, &parts) == nullptr) return fmt::format("{}", time.seconds);
  std::size_t const length = std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S UTC", &parts);
  return {text.data(), length};
}

struct ScalarText {
  std::string operator()(bool value) const { return value ? "yes" : "no"; }
  std::string operator()(std::uint64_t value) const { return fmt::format("{}", value); }
  std::string operator()(Time const& value) const { return timeText(value); }
  std::string operator()(std::vector<Field> const&) const { return {}; }
};

std::vector<Field> const* fieldsOf(Figure const& figure) noexcept {
  return std::get_if<std::vector<Field>>(&figure.value);
}

class Writer {
 public:
  explicit Writer(Style style) : style_{style} {}

  void write(Group group) {
    if (!text_.empty()) text_ += '\n';
    if (fieldsOf(group.front()) != nullptr) {
      writeRecords(group);
    } else {
      writeScalars(group);
    }
  }

  std::string take() { return std::move(text_); }

 private:
  void writeScalars(Group group) {
    heading(std::string{group.front().group});
    for (Figure const& figure : group) {
      append("{:<{}}{}\n", figure.label, labelWidth, std::visit(ScalarText{}, figure.value));
    }
  }

  // The records of a group are of one type: they have the same attributes.
  void writeRecords(Group group) {
    std::string line = fmt::format("{:<{}}", group.front().group, labelWidth);
    for (Figure const& figure : group) line += fmt::format("{:>{}}", figure.label, valueWidth);
    heading(line.substr(0, line.find_last_not_of(' ') + 1));
    std::vector<Field> const& rows = *fieldsOf(group.front());
    for (std::size_t row = 0; row < rows.size(); ++row) {
      append("{:<{}}", rows[row].label, labelWidth);
      for (Figure const& figure : group) append("{:>{}}", fieldsOf(figure)->at(row).value, valueWidth);
      text_ += '\n';
    }
  }

  void heading(std::string const& line) {
    if (style_ == Style::terminal) {
      append("\x1b[1m{}\x1b[0m\n", line);
    } else {
      append("{}\n", line);
    }
  }

  template <class... Args>
  void append(fmt::format_string<Args...> format, Args&&... args) {
    fmt::format_to(std::back_inserter(text_), format, std::forward<Args>(args)...);
  }

  Style style_;
  std::string text_;
};

}  // namespace

std::string tableForm(std::vector<Figure> const& figures, Style style) {
  Writer writer{style};
  Group rest{figures};
  while (!rest.empty()) {
    auto const isOther = [&rest](Figure const& figure) { return figure.group != rest.front().group; };
    auto const end = std::find_if(rest.begin(), rest.end(), isOther);
    auto const count = static_cast<std::size_t>(end - rest.begin());
    writer.write(rest.first(count));
    rest = rest.subspan(count);
  }
  return writer.take();
}

}  // namespace Apps::Show
