#include "schemac/TemplateScan.h"

#include "schemac/Render.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace Schemac {

namespace {

using Kind = TemplateTag::Kind;
using Pieces = std::vector<TemplatePiece>;

constexpr std::string_view blanks = " \t\r\n";

std::string_view trim(std::string_view text) {
  std::size_t const first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isNameChar(char c) { return isLetter(c) || (c >= '0' && c <= '9'); }

// One or more identifiers with dots between them.
bool isName(std::string_view name) {
  bool begins = true;
  for (char const c : name) {
    if (begins ? !isLetter(c) : !isNameChar(c) && c != '.') return false;
    begins = c == '.';
  }
  return !begins;
}

// Finds the tags of one template.
class Scanner {
 public:
  Scanner(std::string_view name, std::string_view text) : name_(name), text_(text) {}

  Pieces scan() {
    while (at_ < text_.size()) {
      std::size_t const tag = std::min(text_.find("{{", at_), text_.size());
      takeText(tag);
      if (tag < text_.size()) takeTag();
    }
    if (!open_.empty()) fail(open_.back(), fmt::format("section '{}' is not closed", open_.back().name));
    return std::move(pieces_);
  }

 private:
  [[noreturn]] static void fail(TemplateTag const& tag, std::string const& what) {
    throw RenderError(fmt::format("{}: {}", placeOf(tag), what));
  }

  void takeText(std::size_t end) {
    while (at_ < end) {
      std::size_t const newline = text_.find('\n', at_);
      std::size_t const stop = newline == std::string_view::npos ? end : std::min(newline + 1, end);
      pieces_.push_back({false, std::string(text_.substr(at_, stop - at_)), {}});
      if (pieces_.back().text.back() == '\n') ++line_;
      at_ = stop;
    }
  }

  void takeTag() {
    TemplateTag tag;
    tag.inTemplate = name_;
    tag.line = line_;
    std::size_t const end = text_.find("}}", at_ + 2);
    if (end == std::string_view::npos) fail(tag, "a tag is not closed");
    std::string_view body = trim(text_.substr(at_ + 2, end - at_ - 2));
    line_ += static_cast<std::size_t>(std::count(text_.begin() + static_cast<std::ptrdiff_t>(at_),
                                                 text_.begin() + static_cast<std::ptrdiff_t>(end), '\n'));
    at_ = end + 2;

    tag.kind = kindOf(body);
    if (tag.kind != Kind::variable) body = trim(body.substr(1));
    tag.name = body;
    if (tag.kind != Kind::comment) judge(tag);
    pieces_.push_back({true, {}, std::move(tag)});
  }

  static Kind kindOf(std::string_view body) {
    if (body.empty()) return Kind::variable;
    switch (body[0]) {
    case '#': return Kind::section;
    case '^': return Kind::invertedSection;
    case '/': return Kind::sectionEnd;
    case '>': return Kind::partial;
    case '!': return Kind::comment;
    default: return Kind::variable;
    }
  }

  void judge(TemplateTag const& tag) {
    if (!isName(tag.name)) {
      fail(tag,
           fmt::format("'{{{{{}}}}}' is no tag; for two braces of C++ put a space between them: '{{ {{'", tag.name));
    }
    if (tag.kind != Kind::partial && tag.name.find('.') == std::string::npos) {
      fail(tag, fmt::format("'{0}' does not say whose it is; write 'entity.{0}', say", tag.name));
    }
    if (tag.kind == Kind::section || tag.kind == Kind::invertedSection) open_.push_back(tag);
    if (tag.kind != Kind::sectionEnd) return;
    if (open_.empty()) fail(tag, fmt::format("section '{}' is closed and was never opened", tag.name));
    if (open_.back().name != tag.name) {
      fail(tag,
           fmt::format("'{}' is closed where '{}' of line {} is open", tag.name, open_.back().name, open_.back().line));
    }
    open_.pop_back();
  }

  std::string name_;
  std::string_view text_;
  std::size_t at_ = 0;
  std::size_t line_ = 1;
  std::vector<TemplateTag> open_;
  Pieces pieces_;
};

bool endsLine(TemplatePiece const& piece) { return !piece.isTag && piece.text.back() == '\n'; }

// Whether the pieces of a line are tags that leave nothing in its place, and blanks.
bool standsAlone(Pieces::const_iterator first, Pieces::const_iterator last) {
  bool anyTag = false;
  for (auto piece = first; piece != last; ++piece) {
    if (piece->isTag && piece->tag.kind == Kind::variable) return false;
    if (!piece->isTag && !trim(piece->text).empty()) return false;
    anyTag = anyTag || piece->isTag;
  }
  return anyTag;
}

class Assembler {
 public:
  explicit Assembler(TemplateSource const& source) : source_(source) {}

  void append(std::string_view name, std::string_view text, bool inLine) {
    Pieces pieces = Scanner(name, text).scan();
    // A partial in the middle of a line ends where its last line does.
    if (inLine && !pieces.empty() && endsLine(pieces.back())) pieces.back().text.pop_back();
    nesting_.emplace_back(name);
    for (auto first = pieces.cbegin(); first != pieces.cend();) {
      auto last = std::find_if(first, pieces.cend(), endsLine);
      if (last != pieces.cend()) ++last;
      appendLine(first, last);
      first = last;
    }
    nesting_.pop_back();
  }

  Pieces take() { return std::move(out_); }

 private:
  void appendLine(Pieces::const_iterator first, Pieces::const_iterator last) {
    bool const alone = standsAlone(first, last);
    for (auto piece = first; piece != last; ++piece) {
      if (!piece->isTag) {
        if (!alone) out_.push_back(*piece);
      } else if (piece->tag.kind == Kind::partial) {
        appendPartial(piece->tag, !alone);
      } else if (piece->tag.kind != Kind::comment) {
        out_.push_back(*piece);
      }
    }
  }

  void appendPartial(TemplateTag const& tag, bool inLine) {
    if (std::find(nesting_.begin(), nesting_.end(), tag.name) != nesting_.end()) {
      throw RenderError(fmt::format("{}: partial '{}' includes itself", placeOf(tag), tag.name));
    }
    std::string_view text;
    try {
      text = source_(tag.name);
    } catch (std::out_of_range const&) {
      throw RenderError(fmt::format("{}: there is no partial '{}'", placeOf(tag), tag.name));
    }
    append(tag.name, text, inLine);
  }

  TemplateSource const& source_;
  std::vector<std::string> nesting_;
  Pieces out_;
};

}  // namespace

std::string placeOf(TemplateTag const& tag) { return fmt::format("template '{}', line {}", tag.inTemplate, tag.line); }

Pieces scanTemplate(std::string_view name, TemplateSource const& source) {
  Assembler assembler(source);
  assembler.append(name, source(name), false);
  return assembler.take();
}

}  // namespace Schemac
