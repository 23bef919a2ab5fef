#include "apps/show/TableForm.h"

#include "apps/Legend.h"
#include "apps/LocalTime.h"

#include <fmt/format.h>

#include <algorithm>
#include <compare>
#include <iterator>
#include <map>
#include <span>
#include <utility>

namespace Apps::Show {

namespace {

using Group = std::span<Figure const>;

constexpr int labelWidth = 28;
constexpr int valueWidth = 12;

struct Row {
  std::uint64_t place;
  std::string label;

  friend auto operator<=>(Row const&, Row const&) = default;
};

struct Cell {
  Row row;
  std::string text;
};

std::string scalarText(bool value) { return value ? "yes" : "no"; }
std::string scalarText(std::uint64_t value) { return fmt::format("{}", value); }
std::string scalarText(Time const& value) { return localTime(value.seconds); }

// The cells of one figure.
struct CellsOf {
  std::string_view row;  // as the figure names it

  template <class Scalar>
  std::vector<Cell> operator()(Scalar const& value) const {
    return {{{0, std::string{row}}, scalarText(value)}};
  }
  std::vector<Cell> operator()(std::vector<Field> const& fields) const {
    std::vector<Cell> cells;
    cells.reserve(fields.size());
    for (Field const& field : fields)
      cells.push_back({{cells.size(), std::string{field.label}}, scalarText(field.value)});
    return cells;
  }
  std::vector<Cell> operator()(std::vector<Member> const& members) const {
    auto const text = [](auto value) { return scalarText(value); };
    std::vector<Cell> cells;
    cells.reserve(members.size());
    for (Member const& member : members) {
      // The scalars beside a collection come first.
      cells.push_back({{member.key + 1, fmt::format("{}{}", row, member.key)}, std::visit(text, member.value)});
    }
    return cells;
  }
};

// The cells of a group, by row and column. Figures that share a label share a column.
class Grid {
 public:
  explicit Grid(Group group) {
    for (Figure const& figure : group) {
      std::size_t const column = columnOf(figure.label);
      for (Cell& cell : std::visit(CellsOf{figure.row}, figure.value)) rows_[cell.row][column] = std::move(cell.text);
    }
  }

  [[nodiscard]] std::vector<std::string_view> const& columns() const { return columns_; }
  [[nodiscard]] auto const& rows() const { return rows_; }

 private:
  std::size_t columnOf(std::string_view label) {
    auto const found = std::find(columns_.begin(), columns_.end(), label);
    auto const column = static_cast<std::size_t>(found - columns_.begin());
    if (found == columns_.end()) columns_.push_back(label);
    return column;
  }

  std::vector<std::string_view> columns_;
  std::map<Row, std::map<std::size_t, std::string>> rows_;
};

// Whether the figure has a line of its own, instead of a column.
bool isLine(Figure const& figure) noexcept {
  bool const isScalar = !std::holds_alternative<std::vector<Field>>(figure.value) &&
                        !std::holds_alternative<std::vector<Member>>(figure.value);
  return isScalar && figure.row.empty();
}

class Writer {
 public:
  explicit Writer(Style style) : style_{style} {}

  void write(Group group) {
    if (!text_.empty()) text_ += '\n';
    if (isLine(group.front())) {
      writeLines(group);
    } else {
      writeGrid(group.front().group, Grid{group});
    }
  }

  std::string take() { return std::move(text_); }

 private:
  void writeLines(Group group) {
    heading(std::string{group.front().group});
    for (Figure const& figure : group) {
      for (Cell const& cell : std::visit(CellsOf{figure.row}, figure.value)) {
        append("{:<{}}{}\n", figure.label, labelWidth, cell.text);
      }
    }
  }

  void writeGrid(std::string_view name, Grid const& grid) {
    std::string line = fmt::format("{:<{}}", name, labelWidth);
    for (std::string_view column : grid.columns()) line += fmt::format("{:>{}}", column, valueWidth);
    heading(line.substr(0, line.find_last_not_of(' ') + 1));
    for (auto const& [row, cells] : grid.rows()) {
      append("{:<{}}", row.label, labelWidth);
      for (std::size_t column = 0; column < grid.columns().size(); ++column) {
        auto const cell = cells.find(column);
        append("{:>{}}", cell == cells.end() ? "-" : cell->second, valueWidth);
      }
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

Style styleFor(char const* terminal, char const* noColor) noexcept {
  bool const isDumb = terminal != nullptr && std::string_view{terminal} == "dumb";
  bool const wantsPlain = noColor != nullptr && *noColor != '\0';
  return isDumb || wantsPlain ? Style::plain : Style::terminal;
}

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
  std::string const tables = writer.take();
  return tables + legendOf(tables);
}

}  // namespace Apps::Show
