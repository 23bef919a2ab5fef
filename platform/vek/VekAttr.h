// VekAttr: the run-time record of one attribute of one type.
// Owner: its type's record. Thread: as VekType.
#pragma once

#include "core/Name.h"
#include "core/Ptr.h"

namespace Vek {

class VekType;

class [[gnu::visibility("default")]] VekAttr : public PtrInterface {
 public:
  /// What an attribute is, as two words. The combinations in use:
  struct AttrFlags {
    U32 word0 = 0;
    U32 word1 = 0;
    [[nodiscard]] constexpr bool operator==(AttrFlags const&) const noexcept = default;

    static constexpr AttrFlags marker() noexcept { return {0x00022001, 0x00000400}; }
    static constexpr AttrFlags scalar() noexcept { return {0x00220143, 0x01000400}; }
    static constexpr AttrFlags fixed() noexcept { return {0x00220109, 0x40000400}; }
    static constexpr AttrFlags constant() noexcept { return {0x00220001, 0x40000410}; }
  };

  /// How much of an attribute is shown to those who look a type over.
  using VekAttrIntrospectionFlags = U32;
  static constexpr VekAttrIntrospectionFlags hiddenFlags = 0;
  static constexpr VekAttrIntrospectionFlags declaredFlags = 2;
  static constexpr VekAttrIntrospectionFlags markerFlags = 8;

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

 private:
  VekType* owner_;
  Name name_;
  VekType const* valueType_;
  VekType const* keyType_;
  AttrFlags flags_;
  VekAttrIntrospectionFlags introspectionFlags_;
  AttributeId id_;
};

}  // namespace Vek
