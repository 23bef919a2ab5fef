#include "schemac/Names.h"

#include <algorithm>

namespace Schemac {

namespace {

std::string join(std::string_view a, std::string_view b) { return std::string(a).append(b); }

// Whether `word` is one of `words`, which have a space between them.
bool contains(std::string_view words, std::string_view word) noexcept {
  while (!words.empty()) {
    std::size_t const end = std::min(words.find(' '), words.size());
    if (words.substr(0, end) == word) return true;
    words.remove_prefix(std::min(end + 1, words.size()));
  }
  return false;
}

constexpr std::string_view keywords =
    "alignas alignof and and_eq asm auto bitand bitor bool break case catch char char16_t char32_t char8_t class "
    "co_await co_return co_yield compl concept const const_cast consteval constexpr constinit continue decltype "
    "default delete do double dynamic_cast else enum explicit export extern false float for friend goto if inline "
    "int long mutable namespace new noexcept not not_eq nullptr operator or or_eq private protected public "
    "register reinterpret_cast requires return short signed sizeof static static_assert static_cast struct switch "
    "template this thread_local throw true try typedef typeid typename union unsigned using virtual void volatile "
    "wchar_t while xor xor_eq";

// Names that headers of the language or the C library may define as macros.
constexpr std::string_view macros = "assert errno linux major makedev minor stderr stdin stdout unix";

// Of Vek::Entity, Vek::PtrInterface and their notifiees, as far as an attribute could yield them.
constexpr std::string_view entityMembers =
    "Attr GenericIf_ Notifiee NotifieeConst VekDirtyBitSet0 VekNboAttrLogSa _Type _fwkType attrLogMarker "
    "attributeString auditErrors fullName fwkKey fwkType handleParent handleZeroRef hasNotificationActive "
    "hasNotificationActiveIs isRegisteredNotifiee isRegisteredNotifieeIs isStreamAdapter isWeakReference "
    "isWeakReferenceIs name newEntity noParentAttr notifiees notifier notifierIs onAttribute "
    "onCollectionNotification onNotification onNotificationException onParent onVersion onZeroReferences parent "
    "parentAttr parentAttrId parentAttrIdIs parentIs readCount references referencesDec referencesInc "
    "referencesLeak uriPath writeCount zeroReferencesEvent zeroReferencesIs";

constexpr std::string_view valueMembers = "Attr GenericIf_ _Type _fwkType fwkType";

// What the descriptors of attributes are made of, and what stands among them in `struct Attr`: there each attribute is
// a class of its own name, which may have no member of that name.
constexpr std::string_view descriptorMembers =
    "bare dirty field flags fullName introspectionFlags logBind logHandler logKey logRemount "
    "logText logWalk max min name number record shortName slot";

// Namespaces that emitted code enters by name, types that every schema file knows, and what an entity and its bases
// have as nested or injected classes.
constexpr std::string_view reservedTypes =
    "Attr Bridging Dir Entity GenericIf Hardware Iterator Kiln Notifiee NotifieeConst Of PtrInterface U32 U64 U8 "
    "Vek std";

// What is owed of an attribute: "vekIsBanksDirty".
std::string dirtyStem(std::string_view attribute) { return join(join("vekIs", upperFirst(attribute)), "Dirty"); }

}  // namespace

std::string upperFirst(std::string_view name) {
  std::string out(name);
  if (!out.empty() && out[0] >= 'a' && out[0] <= 'z') out[0] = static_cast<char>(out[0] - 'a' + 'A');
  return out;
}

std::string fieldName(std::string_view attribute) { return join(attribute, "_"); }
std::string setterName(std::string_view attribute) { return join(attribute, "Is"); }
std::string incrementerName(std::string_view attribute) { return join(attribute, "Inc"); }
std::string removerName(std::string_view attribute) { return join(attribute, "Del"); }
std::string allRemoverName(std::string_view attribute) { return join(attribute, "DelAll"); }
std::string notifierName(std::string_view attribute) { return join(attribute, "Notify"); }
std::string counterName(std::string_view attribute) { return join(attribute, "Count"); }
std::string iteratorName(std::string_view attribute) { return join(attribute, "Iterator"); }
std::string constIteratorName(std::string_view attribute) { return join(attribute, "IteratorConst"); }
std::string makerName(std::string_view attribute) { return join("new", upperFirst(attribute)); }
std::string slotName(std::string_view attribute) { return join("on", upperFirst(attribute)); }
std::string immediateSlotName(std::string_view attribute) { return join(slotName(attribute), "vekImmediate"); }
std::string elementClassName(std::string_view attribute) { return join("Vek", upperFirst(attribute)); }

std::string keySenderName(std::string_view attribute) {
  return join(join("vekHandle", upperFirst(attribute)), "SerializeSing");
}
std::string walkerName(std::string_view attribute) {
  return join(join("vekHandle", upperFirst(attribute)), "SerializeColl");
}
std::string textSenderName(std::string_view attribute) {
  return join(join("vekHandle", upperFirst(attribute)), "Serialize");
}
std::string binderName(std::string_view attribute) { return join(attribute, "NboAttrLogAdapter"); }
std::string dirtySetterName(std::string_view attribute) { return join(dirtyStem(attribute), "Is"); }
std::string dirtyRemoverName(std::string_view attribute) { return join(dirtyStem(attribute), "Del"); }
std::string dirtyMakerName(std::string_view attribute) { return join("new", upperFirst(dirtyStem(attribute))); }
std::string dirtyFieldName(std::string_view attribute) { return fieldName(dirtyStem(attribute)); }
std::string dirtyMemberName(std::string_view attribute) { return elementClassName(dirtyStem(attribute)); }
std::string syncedSetterName(std::string_view attribute) {
  return join(join("vek", upperFirst(attribute)), "HasSyncedIs");
}

std::string initFunctionName(std::string_view stem) { return join("vekInit", upperFirst(stem)); }

std::string fullName(File const& file, Type const& type) { return file.nameSpace + "::" + type.name; }

std::vector<std::string> namespaceParts(std::string_view nameSpace) {
  std::vector<std::string> parts;
  for (;;) {
    std::size_t const colons = nameSpace.find("::");
    parts.emplace_back(nameSpace.substr(0, colons));
    if (colons == std::string_view::npos) return parts;
    nameSpace.remove_prefix(colons + 2);
  }
}

std::vector<std::string> derivedNames(Attribute const& attribute, Type::Kind kind) {
  std::string const& name = attribute.name;
  if (kind == Type::Kind::value) return {name, setterName(name)};
  switch (attribute.shape) {
  case Shape::constant:
  case Shape::fixed:
  case Shape::retired: return {name};
  case Shape::scalar:
  case Shape::text: {
    std::vector<std::string> names = {name, setterName(name), slotName(name)};
    if (attribute.increment) names.push_back(incrementerName(name));
    return names;
  }
  case Shape::child: return {name, setterName(name), removerName(name), makerName(name), slotName(name)};
  case Shape::ordered:
  case Shape::hashed:
  case Shape::childCollection: break;
  }
  std::vector<std::string> names = {name,
                                    setterName(name),
                                    removerName(name),
                                    allRemoverName(name),
                                    notifierName(name),
                                    counterName(name),
                                    iteratorName(name),
                                    constIteratorName(name),
                                    makerName(name),
                                    slotName(name),
                                    immediateSlotName(name)};
  if (attribute.shape != Shape::childCollection) names.push_back(elementClassName(name));
  return names;
}

std::string_view whyTaken(std::string_view name) noexcept {
  if (contains(keywords, name)) return "is a keyword of C++";
  if (contains(macros, name)) return "is a macro of the C library";
  if (name.substr(0, 3) == "vek" || name.substr(0, 3) == "Vek") return "begins with the stem of the framework";
  return {};
}

bool isBaseMember(std::string_view name, Type::Kind kind) noexcept {
  if (contains(descriptorMembers, name)) return true;
  return kind == Type::Kind::entity ? contains(entityMembers, name) : contains(valueMembers, name);
}

bool isMemberAccessor(std::string_view name) noexcept { return name == "key" || name == "value"; }

bool isReservedType(std::string_view name) noexcept { return contains(reservedTypes, name); }

}  // namespace Schemac
