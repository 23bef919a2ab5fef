// VekType: the run-time record of a type: its names, kind, constructor arguments and attributes.
// Owner: the process; a record is made while libraries load, and is never freed.
// Thread: records are made and filled on the loading thread; afterwards they no longer change and any thread may read.
#pragma once

#include "dornl3/core/LinkQueue.h"
#include "dornl3/core/Name.h"
#include "dornl3/core/NotifieeConst.h"
#include "dornl3/core/Ptr.h"
#include "dornl3/platform/vek/VekAttr.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace Vek {

class Dir;
class Entity;
class GenericIf;
namespace NboAttrLog {
class In;
class Out;
}  // namespace NboAttrLog

class VekType : public PtrInterface {
 public:
  /// Two words of flags, empty when the record is made.
  struct VekTypeFlags {
    static constexpr U32 value0 = 0x00000001;
    static constexpr U32 entity1 = 0x08000000;
    static constexpr U32 genericIfSupport1 = 0x20000000;
    U32 word0 = 0;
    U32 word1 = 0;
  };

  struct ConstructorArgument {
    Name name;
    Name typeName;
  };

  /// Attributes in the order in which they were described: their numbers rise, and wrap for the key's number 0.
  class VekAttributeQ final : public LinkQueue<VekAttributeQ, AttributeId, VekAttr> {
   public:
    static AttributeId fwkQkey(VekAttr const& attr) noexcept { return attr.id(); }
  };

  class AttrNode;

  /// `scope` and `base` may be null. The record keeps neither alive: records live for good.
  VekType(Name shortName, VekType const* scope, VekType* base, VekTypeFlags flags);
  ~VekType() override;

  /// The name without namespace; several types may share it.
  [[nodiscard]] Name const& name() const noexcept { return name_; }
  /// The name with its namespace; empty until typeNodeIs.
  [[nodiscard]] Name const& fullName() const noexcept { return fullName_; }
  [[nodiscard]] VekType const* scope() const noexcept { return scope_; }
  [[nodiscard]] VekType* base() const noexcept { return base_; }
  [[nodiscard]] VekTypeFlags flags() const noexcept { return flags_; }
  [[nodiscard]] bool isValue() const noexcept { return (flags_.word0 & VekTypeFlags::value0) != 0; }
  [[nodiscard]] bool isEntity() const noexcept { return (flags_.word1 & VekTypeFlags::entity1) != 0; }
  [[nodiscard]] bool hasGenericIfSupport() const noexcept {
    return (flags_.word1 & VekTypeFlags::genericIfSupport1) != 0;
  }
  void isValueIs(bool on) { flagIs(flags_.word0, VekTypeFlags::value0, on); }
  void isEntityIs(bool on) { flagIs(flags_.word1, VekTypeFlags::entity1, on); }
  void hasGenericIfSupportIs(bool on) { flagIs(flags_.word1, VekTypeFlags::genericIfSupport1, on); }
  /// Called after a flag has changed.
  virtual void typeFlagsDoEmbeddedWriteConstraints();

  /// Size of an object of the type, in bytes.
  [[nodiscard]] std::size_t size() const noexcept { return size_; }
  void sizeIs(std::size_t bytes) noexcept { size_ = bytes; }

  /// The constructor's arguments: a name opens the next one, a type name completes it.
  [[nodiscard]] std::vector<ConstructorArgument> const& constructorArgs() const noexcept { return constructorArgs_; }
  void constructorArgNameQEnq(Name name) { constructorArgs_.push_back({std::move(name), {}}); }
  void constructorArgTypeQEnq(Name typeName) { constructorArgs_.back().typeName = std::move(typeName); }

  [[nodiscard]] VekAttributeQ const& attributes() const noexcept { return attributes_; }
  void attributeQEnq(Ptr<VekAttr> const& attr);
  /// The attribute of that number, or null.
  [[nodiscard]] VekAttr* attribute(AttributeId id) const noexcept;

  /// The types that name this one as their base, in the order in which their records were made.
  [[nodiscard]] std::vector<VekType*> const& derivedTypes() const noexcept { return derivedTypes_; }
  void derivedTypeQEnq(VekType* type) { derivedTypes_.push_back(type); }

  /// The attribute that stands for the whole value, of a value type that has just that one.
  [[nodiscard]] VekAttr* valAttr() const noexcept { return valAttr_.ptr(); }
  void valAttrIs(VekAttr* attr) noexcept { valAttr_ = attr; }

  /// The type's attributes by name.
  [[nodiscard]] AttrNode type_Attr() noexcept;

  /// A new entity of the type, holding one reference. Enters it in no directory. Throws InternalException where the
  /// type is no entity that stands by itself.
  virtual Ptr<Entity> newEntity(Name const& name, Dir* dir) const;
  /// The same from what an announcement on a log holds: a text for each argument of the constructor. Throws
  /// ShortRecordException, and InternalException where the type is no entity that a log can announce.
  [[nodiscard]] virtual Ptr<Entity> newEntity(Ptr<NboAttrLog::In> const& in,
                                              PtrInterface::NotifieeConst::Vek_BitSet flags, U32 count,
                                              PtrInterface* owner) const;
  /// Binds a child of an entity of this type to `out`, where its parent is bound: the record goes out that announces it
  /// as the child of `attr`. An attribute that holds no children does nothing.
  virtual void childAttrLogIs(VekAttr const& attr, Ptr<Entity> const& child, Ptr<NboAttrLog::Out> const& out) const;

  /// A generic of a copy of the value at `value`, of the default for null. Throws InternalException where the type is
  /// no value type.
  [[nodiscard]] virtual Ptr<GenericIf> genericIf(void const* value, bool isConst) const;
  /// A generic of a value or entity made from a list of arguments. Throws a GenericException where they do not fit,
  /// InternalException where the type is not made from a list.
  [[nodiscard]] virtual Ptr<GenericIf> genericIf(GenericIf const* list, bool isConst) const;
  /// A generic of the value, or of the entity, that a text denotes. Throws RangeException.
  [[nodiscard]] virtual Ptr<GenericIf> genericIf(String8 const& text, bool isConst) const;
  /// A generic of an entity of this type; of null for an object of another type. Throws InternalException where the
  /// type is no entity type.
  [[nodiscard]] virtual Ptr<GenericIf> genericIf_(PtrInterface* object, bool isConst) const;
  /// A generic of any object, by the object's own type; of null for null.
  [[nodiscard]] static Ptr<GenericIf> genericIf(PtrInterface* object, bool isConst);

  /// Enters the type in the registry under its full name. Throws InternalException where another type has it.
  static void typeNodeIs(VekType* type, char const* fullName);
  /// The registered type of that full name, or null.
  [[nodiscard]] static VekType* find(std::string_view fullName);
  /// All registered types, by full name.
  [[nodiscard]] static std::vector<VekType*> registered();

 private:
  void flagIs(U32& word, U32 bit, bool on);
  [[noreturn]] void throwNotMade(char const* from) const;

  Name name_;
  Name fullName_;
  VekType const* scope_;
  VekType* base_;
  VekTypeFlags flags_;
  std::size_t size_ = 0;
  std::vector<ConstructorArgument> constructorArgs_;
  VekAttributeQ attributes_;
  HashMap<VekAttr, Name, VekAttr> attributesByName_;  // of several with one name, the first
  std::vector<VekType*> derivedTypes_;
  Ptr<VekAttr> valAttr_;
};

/// A type's attributes by name.
class VekType::AttrNode {
 public:
  explicit AttrNode(VekType& type) noexcept : type_(&type) {}

  /// The attribute, or null for a name not found.
  [[nodiscard]] VekAttr* attr(Name const& name) const noexcept;
  /// Drops the attribute of that name, if there is one.
  void attrDel(Name const& name);
  /// A new attribute that makes targets of `type`; it enters the type's queue by attributeQEnq. `keyAttr`: the owner's
  /// attribute of the key's name, or null.
  [[nodiscard]] Ptr<VekAttr> attrIs(Name const& name, VekType const* type, VekAttr const* keyAttr,
                                    VekAttr const* otherAttr, VekAttr::AttrFlags const& flags, AttributeId id);

 private:
  VekType* type_;
};

inline VekType::AttrNode VekType::type_Attr() noexcept { return AttrNode{*this}; }

}  // namespace Vek
