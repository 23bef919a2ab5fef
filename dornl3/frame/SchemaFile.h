// SchemaFile: what happens by itself when a library of types is loaded. Each schema file has one static initialiser,
// which makes the records of the file's types and describes them, if descriptions are wanted.
// Owner: the process; records stay for good. Thread: the loading thread. Re-entrancy: an init function that is called
// while it runs does nothing.
#pragma once

#include "dornl3/frame/TypeFrame.h"

#include <array>
#include <bit>

namespace Vek {

namespace detail {

/// The code of a member function that is not virtual: in the ABI of all our platforms, a pointer to it begins with it.
template <class Member>
void const* codeOf(Member member) noexcept {
  return std::bit_cast<std::array<void const*, 2>>(member)[0];
}

/// Keeps the pointer access of X callable by name from a debugger.
template <class X>
void keepPointerAccess() {
  forcePointerAccessH(codeOf(&Ptr<X>::operator*));
  forcePointerAccessH(codeOf(&Ptr<X>::operator->));
}

template <class X>
void makeRecord() {
  X::_fwkType();
  if constexpr (std::is_base_of_v<Entity, X>) keepPointerAccess<X>();
}

}  // namespace detail

/// The init function of a schema file: makes the records of its types, in alphabetical order, and describes the types,
/// in the order of their definition. Does nothing where it has been done, or while descriptions are not wanted.
/// `done` is the file's guard; it stays set when this throws.
template <class... Alphabetical, class... Definition, std::size_t N>
void initSchemaFile(bool& done, std::array<char const*, N> const& nameSpaces, List<Alphabetical...>,
                    List<Definition...>) {
  if (done) return;
  Ptr<IntrospectionReactor> const reactor = IntrospectionReactor::global();
  if (!reactor->active()) return;
  done = true;
  (detail::makeRecord<Alphabetical>(), ...);
  detail::makeRecord<Entity>();
  for (char const* name : nameSpaces) reactor->handleNameSpace(name);
  (Definition::describe(*reactor), ...);
  for (std::size_t open = N; open > 0; --open) reactor->handleScopeExit();
}

/// The static initialiser of a schema file: every type gets its record and its full name, in the order of definition.
/// Always true, to initialise something with.
template <class... Definition>
bool loadSchemaFile(void (*initFile)(), List<Definition...>) {
  (VekType::typeNodeIs(typeRecord<Definition>(initFile), Definition::Attr::fullName), ...);
  initFile();
  return true;
}

}  // namespace Vek
