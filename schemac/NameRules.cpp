#include "schemac/Check.h"
#include "schemac/Names.h"
#include "schemac/Rules.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <string>

namespace Schemac {

namespace {

// ASCII alone counts, whatever the locale.
bool isUpper(char c) { return c >= 'A' && c <= 'Z'; }
bool isLower(char c) { return c >= 'a' && c <= 'z'; }
bool isLetterOrDigit(char c) { return isUpper(c) || isLower(c) || (c >= '0' && c <= '9'); }

bool isCamelCase(std::string_view name, Case wanted) {
  bool const first =
      (wanted != Case::lowerCamel && isUpper(name[0])) || (wanted != Case::upperCamel && isLower(name[0]));
  return first && std::all_of(name.begin(), name.end(), isLetterOrDigit);
}

// What it is about a type that makes a name taken in it; empty where the name is free.
std::string_view bearerOf(std::string_view name, Subject const& subject, Type const& type) {
  if (isBaseMember(name, type.kind)) return type.isEntity() ? "entity" : "value";
  if (isMemberAccessor(name) && subject.file.holderOf(type) != nullptr) return "member of a collection";
  return {};
}

// Complains about each derived name of `a` that is taken already, and takes the others.
void takeNames(Subject const& subject, Type const& type, Attribute const& a,
               std::map<std::string, Attribute const*>& taken) {
  SourcePosition const at = a.where("name");
  for (std::string const& name : derivedNames(a, type.kind)) {
    std::string const subjectOfSentence =
        name == a.name ? fmt::format("attribute '{}'", name) : fmt::format("'{}', which '{}' yields,", name, a.name);
    if (std::string_view const bearer = bearerOf(name, subject, type); !bearer.empty()) {
      subject.complain(
          at, fmt::format("{} is a name that every {} has already; choose another one", subjectOfSentence, bearer));
      return;
    }
    auto const [other, isNew] = taken.emplace(name, &a);
    if (isNew) continue;
    Attribute const& first = *other->second;
    std::string const clash = first.name == a.name ? "stands already"
                              : first.name == name ? fmt::format("is the name of '{}'", first.name)
                                                   : fmt::format("is yielded by '{}' too,", first.name);
    subject.complain(
        at, fmt::format("{} {} in line {}; choose another name", subjectOfSentence, clash, first.where("name").line));
    return;  // one clash makes many: the first is enough to mend them
  }
}

}  // namespace

bool checkSpelling(Complainer const& complain, SourcePosition at, std::string_view what, std::string_view name,
                   Case wanted) {
  if (name.empty()) return true;
  if (name.size() > maxNameLength) {
    complain(at, fmt::format("{} has a name of {} letters; write at most {}", what, name.size(), maxNameLength));
    return false;
  }
  if (!isCamelCase(name, wanted)) {
    std::string_view const form =
        wanted == Case::upperCamel
            ? "in upper camel case; write a capital letter, then letters and digits: 'RouteStats'"
        : wanted == Case::lowerCamel ? "in lower camel case; write a small letter, then letters and digits: 'numRoutes'"
                                     : "a plain name; write a letter, then letters and digits";
    complain(at, fmt::format("{} '{}' is not {}", what, name, form));
    return false;
  }
  if (std::string_view const why = whyTaken(name); !why.empty()) {
    complain(at, fmt::format("{} '{}' {}; choose another name", what, name, why));
    return false;
  }
  return true;
}

void checkDoc(Complainer const& complain, Table const& table, std::string_view doc) {
  if (doc.empty()) return;
  SourcePosition const at = table.where("doc");
  auto const isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; };
  if (doc.size() > maxDocLength) {
    complain(at, fmt::format("doc has {} bytes; say it in at most {}", doc.size(), maxDocLength));
  } else if (std::any_of(doc.begin(), doc.end(), isControl)) {
    complain(at, "doc has a control character; write one line of plain text");
  } else if (doc.back() == '\\') {
    complain(at, "doc ends in a backslash, which would join the next line of code to the comment; drop it");
  }
}

void checkNames(Subject const& subject, Type const& type) {
  std::map<std::string, Attribute const*> taken;
  for (Attribute const& a : type.attributes) {
    checkDoc(subject.complain, a, a.doc);
    if (a.retired() || a.name.empty()) continue;
    if (checkSpelling(subject.complain, a.where("name"), "attribute", a.name, Case::lowerCamel)) {
      takeNames(subject, type, a, taken);
    }
  }
}

}  // namespace Schemac
