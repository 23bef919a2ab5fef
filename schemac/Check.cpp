#include "schemac/Check.h"

#include "schemac/Names.h"
#include "schemac/Rules.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <string>
#include <utility>

namespace Schemac {

namespace {

bool isLive(Attribute const& a) { return !a.retired(); }

void checkNamespace(Subject const& subject) {
  File const& file = subject.file;
  SourcePosition const at = file.where("namespace");
  if (file.nameSpace.empty()) return;
  std::vector<std::string> const parts = namespaceParts(file.nameSpace);
  if (parts.size() > maxNamespaceParts) {
    subject.complain(at, fmt::format("namespace has {} parts; write at most {}", parts.size(), maxNamespaceParts));
    return;
  }
  for (std::size_t i = 0; i < parts.size(); ++i) {
    std::string const& part = parts[i];
    if (part.empty()) {
      subject.complain(at, "namespace has an empty part; write it as in \"Hardware::DornL3Unicast\"");
    } else if (checkSpelling(subject.complain, at, "namespace", part, Case::any) && isReservedType(part) &&
               !(i == 0 && part == "Hardware")) {
      subject.complain(at, fmt::format("namespace '{}' would hide names that emitted code uses; choose another", part));
    }
  }
}

void checkFactory(Subject const& subject, Type const& type) {
  if (type.factory.empty()) return;
  SourcePosition const at = type.where("factory");
  checkSpelling(subject.complain, at, "factory", type.factory, Case::lowerCamel);
  auto const isFixed = [](Attribute const& a) { return a.shape == Shape::fixed; };
  if (std::any_of(type.attributes.begin(), type.attributes.end(), isFixed)) {
    subject.complain(at, "a factory makes an entity from its name alone, and this one wants more; drop 'factory'");
  }
}

void checkType(Subject const& subject, Type const& type) {
  SourcePosition const at = type.where("name");
  if (checkSpelling(subject.complain, at, "type", type.name, Case::upperCamel) && isReservedType(type.name)) {
    subject.complain(at, fmt::format("type '{}' would hide a name that emitted code uses; choose another", type.name));
  }
  checkDoc(subject.complain, type, type.doc);
  checkFactory(subject, type);
  auto const live = std::count_if(type.attributes.begin(), type.attributes.end(), isLive);
  if (type.has("attributes") && live == 0) {
    subject.complain(type.where("attributes"), fmt::format("'{}' has no attributes; give it one", type.name));
  }
  if (type.attributes.size() > maxAttributes) {
    subject.complain(type.where("attributes"), fmt::format("'{}' has {} attributes; write at most {}", type.name,
                                                           type.attributes.size(), maxAttributes));
    return;
  }
  if (type.bare && live != 1) {
    subject.complain(type.where("bare"), fmt::format("a bare value passes for its one attribute, and '{}' has {}; drop "
                                                     "'bare'",
                                                     type.name, live));
  }
  checkNumbers(subject, type);
  checkNames(subject, type);
  checkShapes(subject, type);
}

// A child entity has one key for good: it says what the child registers, and what its members are hashed by.
void checkChildKeys(Subject const& subject) {
  std::map<std::string, Attribute const*> keyed;
  for (Type const& type : subject.file.types) {
    for (Attribute const& a : type.attributes) {
      if (a.shape != Shape::childCollection || a.key.empty()) continue;
      Attribute const& first = *keyed.emplace(a.child, &a).first->second;
      if (first.key == a.key) continue;
      subject.complain(a.where("hashed"), fmt::format("'{}' is keyed by '{}' in line {}; key it by that here too",
                                                      a.child, first.key, first.where("hashed").line));
    }
  }
}

void checkFile(Subject const& subject) {
  File const& file = subject.file;
  checkNamespace(subject);
  checkDoc(subject.complain, file, file.doc);
  if (file.types.empty()) subject.complain({1, 1}, "the file defines no type; write a [[value]] or an [[entity]]");
  for (Type const& type : file.types) checkType(subject, type);
  checkChildKeys(subject);
}

// What all files together may define once: remembers who came first.
class Definitions {
 public:
  explicit Definitions(Complaints& complaints) : complaints_(complaints) {}

  void define(File const& file, SourcePosition at, std::string_view what, std::string const& name) {
    auto const [first, isNew] = defined_.emplace(name, std::pair{&file, at});
    if (isNew) return;
    auto const& [otherFile, otherAt] = first->second;
    Complainer const complain(file.path, complaints_);
    complain(at, fmt::format("{} '{}' is defined already in {}:{}; choose another name", what, name, otherFile->path,
                             otherAt.line));
  }

 private:
  Complaints& complaints_;
  std::map<std::string, std::pair<File const*, SourcePosition>> defined_;
};

void checkTogether(std::vector<File> const& files, Complaints& complaints) {
  Definitions names(complaints);
  std::map<std::string, File const*> nameSpaces;
  for (File const& file : files) {
    std::string path;
    for (std::string const& part : namespaceParts(file.nameSpace)) {
      path += (path.empty() ? "" : "::") + part;
      nameSpaces.emplace(path, &file);
    }
  }
  for (File const& file : files) {
    Complainer const complain(file.path, complaints);
    for (Type const& type : file.types) {
      if (type.name.empty()) continue;
      std::string const name = fullName(file, type);
      names.define(file, type.where("name"), "type", name);
      if (!type.factory.empty()) {
        names.define(file, type.where("factory"), "factory", file.nameSpace + "::" + type.factory);
      }
      if (auto const found = nameSpaces.find(name); found != nameSpaces.end()) {
        complain(type.where("name"),
                 fmt::format("type '{}' is a namespace of {}; choose another name", name, found->second->path));
      }
    }
  }
}

}  // namespace

Complaints checkFileNames(std::vector<File> const& files) {
  Complaints complaints;
  Definitions stems(complaints);
  for (File const& file : files) {
    Complainer const complain(file.path, complaints);
    if (checkSpelling(complain, {1, 1}, "file name", file.stem, Case::upperCamel)) {
      stems.define(file, {1, 1}, "file name", file.stem);
    }
  }
  return complaints;
}

Complaints check(std::vector<File> const& files) {
  Complaints complaints;
  for (File const& file : files) {
    Complainer const complain(file.path, complaints);
    if (file.types.size() > maxTypes) {
      complain({1, 1}, fmt::format("the file has {} types; write at most {}", file.types.size(), maxTypes));
      continue;
    }
    Types const types(file);
    checkFile({file, types, complain});
  }
  checkTogether(files, complaints);
  sort(complaints);
  return complaints;
}

}  // namespace Schemac
