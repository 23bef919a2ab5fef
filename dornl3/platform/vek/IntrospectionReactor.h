// IntrospectionReactor: hears how types describe themselves while libraries load, and keeps it in their records.
// Owner: the process. Thread: the loading thread. Re-entrancy: it calls nobody.
#pragma once

#include "dornl3/platform/vek/VekAttr.h"

#include <string>
#include <vector>

namespace Vek {

class VekType;

class IntrospectionReactor : public PtrInterface {
 public:
  /// Whether descriptions are wanted.
  class Inner;

  /// The one reactor of the process; never null.
  [[nodiscard]] static Ptr<IntrospectionReactor> global();

  [[nodiscard]] Inner const* inner() const noexcept { return inner_.ptr(); }
  /// Whether types are to describe themselves: there is an inner object, and its flag stands.
  [[nodiscard]] bool active() const noexcept;
  /// Switches descriptions on or off, for libraries that load from now on: a type loaded meanwhile has a bare record,
  /// and works all the same. On at the start.
  void activeIs(bool on);

  /// Opens a namespace; handleScopeExit closes it.
  void handleNameSpace(char const* name);
  /// Opens a type; handleScopeExit closes it. `base` is null for a value type.
  void handleType(VekType* type, VekType const* base);
  /// An attribute has been entered in its type's queue.
  void handleAttr(VekAttr const* attr);
  void handleAttrContextExit();
  void handleScopeExit();

  /// Describes an attribute that makes no target of its own, and enters it in its owner's queue. `keyType` is null
  /// where the attribute is no collection.
  Ptr<VekAttr> defNoninstantiatingAttr(VekType* owner, char const* name, VekType const* valueType,
                                       VekType const* keyType, VekAttr::AttrFlags const& flags,
                                       VekAttr::VekAttrIntrospectionFlags introspectionFlags, AttributeId id);

  /// The namespace and type whose description is open, outermost first; empty between libraries.
  [[nodiscard]] std::vector<std::string> const& openScopes() const noexcept { return scopes_; }

 private:
  IntrospectionReactor();

  Ptr<Inner> inner_;
  std::vector<std::string> scopes_;
  Ptr<VekAttr const> attrContext_;
};

class IntrospectionReactor::Inner final : public PtrInterface {
 public:
  bool active = true;
};

/// Takes the address of a function that a debugger calls by name, so that the linker keeps it.
void forcePointerAccessH(void const* function) noexcept;

}  // namespace Vek
