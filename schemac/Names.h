// Names: every spelling that a type or an attribute yields, each derived here and nowhere else, and the names that
// are taken already.
#pragma once

#include "schemac/Schema.h"

#include <string>
#include <string_view>
#include <vector>

namespace Schemac {

/// The name with its first letter a capital: "Banks" for "banks".
[[nodiscard]] std::string upperFirst(std::string_view name);

// Of an attribute called "banks":
[[nodiscard]] std::string fieldName(std::string_view attribute);          ///< banks_
[[nodiscard]] std::string setterName(std::string_view attribute);         ///< banksIs
[[nodiscard]] std::string incrementerName(std::string_view attribute);    ///< banksInc
[[nodiscard]] std::string removerName(std::string_view attribute);        ///< banksDel
[[nodiscard]] std::string allRemoverName(std::string_view attribute);     ///< banksDelAll
[[nodiscard]] std::string notifierName(std::string_view attribute);       ///< banksNotify
[[nodiscard]] std::string counterName(std::string_view attribute);        ///< banksCount
[[nodiscard]] std::string iteratorName(std::string_view attribute);       ///< banksIterator
[[nodiscard]] std::string constIteratorName(std::string_view attribute);  ///< banksIteratorConst
[[nodiscard]] std::string makerName(std::string_view attribute);          ///< newBanks
[[nodiscard]] std::string slotName(std::string_view attribute);           ///< onBanks
[[nodiscard]] std::string immediateSlotName(std::string_view attribute);  ///< onBanksvekImmediate
[[nodiscard]] std::string elementClassName(std::string_view attribute);   ///< VekBanks

// On an attribute log:
[[nodiscard]] std::string keySenderName(std::string_view attribute);     ///< vekHandleBanksSerializeSing
[[nodiscard]] std::string walkerName(std::string_view attribute);        ///< vekHandleBanksSerializeColl
[[nodiscard]] std::string textSenderName(std::string_view attribute);    ///< vekHandleBanksSerialize
[[nodiscard]] std::string binderName(std::string_view attribute);        ///< banksNboAttrLogAdapter
[[nodiscard]] std::string dirtySetterName(std::string_view attribute);   ///< vekIsBanksDirtyIs
[[nodiscard]] std::string dirtyRemoverName(std::string_view attribute);  ///< vekIsBanksDirtyDel
[[nodiscard]] std::string dirtyMakerName(std::string_view attribute);    ///< newVekIsBanksDirty
[[nodiscard]] std::string dirtyFieldName(std::string_view attribute);    ///< vekIsBanksDirty_
[[nodiscard]] std::string dirtyMemberName(std::string_view attribute);   ///< VekVekIsBanksDirty
[[nodiscard]] std::string syncedSetterName(std::string_view attribute);  ///< vekBanksHasSyncedIs

/// What registers the types of a file: "vekInitStatus" for the stem "Status".
[[nodiscard]] std::string initFunctionName(std::string_view stem);

/// "Hardware::DornL3Unicast::Status"
[[nodiscard]] std::string fullName(File const& file, Type const& type);

/// Parts of a namespace: "Hardware", "DornL3Unicast".
[[nodiscard]] std::vector<std::string> namespaceParts(std::string_view nameSpace);

/// Every public name that `attribute` yields in a type of `kind`, its own first.
[[nodiscard]] std::vector<std::string> derivedNames(Attribute const& attribute, Type::Kind kind);

/// Why `name` may stand for no type, attribute, factory or namespace in C++, as the end of a sentence ("is a keyword
/// of C++"), or empty where it may. Letters and digits are the caller's to check.
[[nodiscard]] std::string_view whyTaken(std::string_view name) noexcept;

/// Whether every type of `kind` has this name already: from its bases, or in the descriptors of its attributes.
[[nodiscard]] bool isBaseMember(std::string_view name, Type::Kind kind) noexcept;

/// Whether every entity that is a member of a collection has this name already: by it members are read.
[[nodiscard]] bool isMemberAccessor(std::string_view name) noexcept;

/// Whether a type of this name would hide, or be hidden by, what emitted code calls by its short name.
[[nodiscard]] bool isReservedType(std::string_view name) noexcept;

}  // namespace Schemac
