// Rules: what Check asks of each type of a file. One function per family of rules; each stands in a file of its own.
#pragma once

#include "schemac/Complaint.h"
#include "schemac/Schema.h"
#include "schemac/Types.h"

#include <string_view>

namespace Schemac {

/// The file at hand, and where to complain.
struct Subject {
  File const& file;
  Types const& types;
  Complainer const& complain;
};

// NameRules.cpp
enum class Case { upperCamel, lowerCamel, any };

/// Whether `name` can be written in C++ and has the case of its kind. `what` begins the sentence: "the type".
/// An empty name passes: Read has spoken about it.
bool checkSpelling(Complainer const& complain, SourcePosition at, std::string_view what, std::string_view name, Case);
/// Whether `doc` fits a line of comment.
void checkDoc(Complainer const& complain, Table const& table, std::string_view doc);
/// Attribute names, and all names that they yield: legal, unique in the type, none of the bases'.
void checkNames(Subject const& subject, Type const& type);

// NumberRules.cpp
/// Numbers start where those of the kind start and rise by one.
void checkNumbers(Subject const& subject, Type const& type);

// ShapeRules.cpp
/// Types, keys, children and options of each attribute.
void checkShapes(Subject const& subject, Type const& type);

}  // namespace Schemac
