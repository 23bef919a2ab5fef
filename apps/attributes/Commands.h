// The commands on attributes by path: get, set, del, count, ls, and types. Each returns what it prints. They work on
// whatever entities a directory holds, through the registry and the generic interface alone.
#pragma once

#include "apps/attributes/Reading.h"
#include "apps/attributes/Resolve.h"
#include "apps/attributes/Selection.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace Apps::Attributes {

// All throw Misfit where the path, the value or the operation does not fit; nothing is changed then, but that children
// on the way, made by Missing::make, stay.

struct Answer {
  std::string text;
  std::vector<std::string> notes = {};  // what the reader should know of it: sentences
  bool isAsAsked = true;                // false where the owner of an entity has made something else of a change
};

/// Returns when the owner of the entities has applied what was written to them, and what he made of it stands there.
/// May throw where that is not to be known.
using Confirm = std::function<void()>;

/// What is at each path, or everything. A value that one path names stands by itself, in its text form; otherwise each
/// line tells its path. Of what is asked for only what `look.filled` has is shown, and the rest told of.
[[nodiscard]] Answer get(Vek::Dir const& roots, std::vector<std::string> const& paths, Look const& look, Form form);
/// The digests of the entities at the paths, or of the roots, 16 hexadecimal digits each.
[[nodiscard]] std::string digests(Vek::Dir const& roots, std::vector<std::string> const& paths, Form form);
/// Assigns a value or a member, or makes a child; gives what is there once that is confirmed. `value`: the text of the
/// value, or the name of a child that has no key.
[[nodiscard]] Answer set(
    Vek::Dir const& roots, std::string const& path, std::optional<std::string> const& value, Missing missing, Form form,
    Confirm const& confirm = [] {});
/// Removes a member or a child; gives what was there.
[[nodiscard]] Answer del(
    Vek::Dir const& roots, std::string const& path, Form form, Confirm const& confirm = [] {});
/// The number of a collection's members.
[[nodiscard]] Answer count(Vek::Dir const& roots, std::string const& path, Filled const& filled, Form form);
/// The roots; or the attributes of an entity or value with their types; or the keys of a collection. Of these, what is
/// filled.
[[nodiscard]] Answer ls(Vek::Dir const& roots, std::optional<std::string> const& path, Filled const& filled, Form form);
/// The registered types; or the attributes of the type of that name, full or, where only one has it, short.
[[nodiscard]] std::string types(std::optional<std::string> const& name, Form form);

}  // namespace Apps::Attributes
