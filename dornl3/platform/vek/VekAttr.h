// VekAttr: the run-time record of one attribute of one type.
// Owner: its type's record. Thread: as VekType.
#pragma once

#include "dornl3/core/HashMap.h"
#include "dornl3/core/Name.h"
#include "dornl3/core/Ptr.h"

#include <vector>

namespace Vek {

class VekType;

class VekAttr : public PtrInterface {
 public:
  /// What an attribute is, as two words. The combinations in use:
  struct AttrFlags {
    U32 word0 = 0;
    U32 word1 = 0;
    [[nodiscard]] constexpr bool operator==(AttrFlags const&) const noexcept = default;

    static constexpr AttrFlags marker() noexcept { return {0x00022001, 0x00000400}; }
    static constexpr AttrFlags scalar() noexcept { return {0x00220143, 0x01000400}; }
    static constexpr AttrFlags collection() noexcept { return {0x01a20143, 0x01000400}; }
    static constexpr AttrFlags fixed() noexcept { return {0x00220109, 0x40000400}; }
    static constexpr AttrFlags key() noexcept { return {0x00200001, 0x00000400}; }
    static constexpr AttrFlags constant() noexcept { return {0x00220001, 0x40000410}; }
    static constexpr AttrFlags instantiatingScalar() noexcept { return {0x08220143, 0x11000400}; }
    static constexpr AttrFlags instantiatingCollection() noexcept { return {0x09a20143, 0x11000400}; }

    /// Whether the attribute holds members by key.
    [[nodiscard]] constexpr bool isCollection() const noexcept { return (word0 & 0x01800000) != 0; }
    /// Whether the attribute can change after construction: it has a setter and a slot.
    [[nodiscard]] constexpr bool isSettable() const noexcept { return (word1 & 0x01000000) != 0; }
    /// Whether the attribute makes its target.
    [[nodiscard]] constexpr bool isInstantiating() const noexcept { return (word0 & 0x08000000) != 0; }
  };

  /// How much of an attribute is shown to those who look a type over.
  using VekAttrIntrospectionFlags = U32;
  static constexpr VekAttrIntrospectionFlags hiddenFlags = 0;
  static constexpr VekAttrIntrospectionFlags declaredFlags = 2;
  static constexpr VekAttrIntrospectionFlags markerFlags = 8;
  static constexpr VekAttrIntrospectionFlags keyedFlags = 32;

  /// An argument of the constructor of what an instantiating attribute makes.
  struct ConstructorArgument {
    Name name;
    Name typeName;
  };

  VekAttr(VekType* owner, Name name, VekType const* valueType, VekType const* keyType, AttrFlags flags,
          VekAttrIntrospectionFlags introspectionFlags, AttributeId id);

  /// A copy that belongs to another type.
  [[nodiscard]] virtual Ptr<VekAttr> copyFor(VekType* owner) const;

  [[nodiscard]] VekType* owner() const noexcept { return owner_; }
  [[nodiscard]] Name const& name() const noexcept { return name_; }
  [[nodiscard]] VekType const* valueType() const noexcept { return valueType_; }
  /// Null where the attribute is no collection.
  [[nodiscard]] VekType const* keyType() const noexcept { return keyType_; }
  [[nodiscard]] AttrFlags flags() const noexcept { return flags_; }
  [[nodiscard]] VekAttrIntrospectionFlags introspectionFlags() const noexcept { return introspectionFlags_; }
  [[nodiscard]] AttributeId id() const noexcept { return id_; }

  // Of an instantiating attribute, once it is made:
  void keyTypeIs(VekType const* type) noexcept { keyType_ = type; }
  void introspectionFlagsIs(VekAttrIntrospectionFlags flags) noexcept { introspectionFlags_ = flags; }
  /// What its target is made from: a name opens the next argument, a type name completes it.
  void constructorArgNameQEnq(Name name) { constructorArgs_.push_back({std::move(name), {}}); }
  void constructorArgTypeQEnq(Name typeName) { constructorArgs_.back().typeName = std::move(typeName); }
  [[nodiscard]] std::vector<ConstructorArgument> const& constructorArgs() const noexcept { return constructorArgs_; }
  /// The target's attribute that is the key; empty without a key.
  void keyAttrNameIs(Name name) noexcept { keyAttrName_ = std::move(name); }
  [[nodiscard]] Name const& keyAttrName() const noexcept { return keyAttrName_; }
  /// Which of the constructor's arguments is the key.
  void keyArgIs(U32 position) noexcept { keyArg_ = position; }
  [[nodiscard]] U32 keyArg() const noexcept { return keyArg_; }

  // As a member of its type's attributes by name:
  [[nodiscard]] Name const& key() const noexcept { return name_; }
  [[nodiscard]] HashLink& vekLink() noexcept { return link_; }
  static constexpr auto vekLinkMember() noexcept { return &VekAttr::link_; }

 private:
  VekType* owner_;
  Name const name_;
  VekType const* valueType_;
  VekType const* keyType_;
  AttrFlags flags_;
  VekAttrIntrospectionFlags introspectionFlags_;
  AttributeId id_;
  std::vector<ConstructorArgument> constructorArgs_;
  Name keyAttrName_;
  U32 keyArg_ = 0;
  HashLink link_;
};

}  // namespace Vek
