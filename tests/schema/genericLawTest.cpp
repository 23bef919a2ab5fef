// Laws of the generic interface, for every attribute of every type that the registry holds: what is set is found,
// counted and told; and what is refused, in which order of checks and in which words.
#include "dornl3/platform/vek/Builtin.h"
#include "tests/core/LeakCheck.h"
#include "tests/schema/Inventor.h"

#include <functional>
#include <set>

namespace {

using namespace Vek;

std::string text(Vek::Name const& name) { return str(Vek::String8(name)); }

/// Something that must be refused, and how: the kind of exception, and the words that it names.
struct Refusal {
  char const* what;
  std::function<void()> act;
  std::string kind;
  std::string subject;
};

std::string kindOf(Vek::GenericException const& e) {
  if (dynamic_cast<Vek::TypeException const*>(&e) != nullptr) return "type";
  if (dynamic_cast<Vek::ConstException const*>(&e) != nullptr) return "const";
  if (dynamic_cast<Vek::BadIndexAttrException const*>(&e) != nullptr) return "index";
  if (dynamic_cast<Vek::UnknownArgException const*>(&e) != nullptr) return "argument";
  auto const* const op = dynamic_cast<Vek::OpNotSupportedException const*>(&e);
  return op == nullptr ? "?" : "op " + std::to_string(op->code());
}

void expectRefused(std::vector<Refusal> const& refusals) {
  for (Refusal const& r : refusals) {
    SCOPED_TRACE(r.what);
    try {
      r.act();
      ADD_FAILURE() << "accepted";
    } catch (Vek::GenericException const& e) {
      EXPECT_EQ(kindOf(e), r.kind);
      EXPECT_EQ(str(e.subject()), r.subject);
    }
  }
}

constexpr char const* constMessage = "attempting to modify a const instance";
constexpr char const* listName = "Vek::GenericIf::List_";
constexpr int unknownRead = 77;
constexpr int unknownChange = 200;

// Made for good by its first use.
struct Prepared {
  VekType* listType = GenericIf::List::_fwkType();
};

class GenericLaw : protected Prepared, public LeakCheck {
 protected:
  GenericLaw() {
    for (VekType const* type : entityTypes()) {
      if (Generic const made = newRoot(*type, "'root of " + text(type->name()) + "\\\\[0]'")) enter(made);
    }
  }

  // Calls `law` with every attribute of every entity.
  template <class Law>
  void each(Law const& law) {
    for (Generic const& entity : entities_) {
      for (auto const& attr : entity->type()->attributes()) {
        if (!isOwn(*entity->type(), *attr)) continue;
        SCOPED_TRACE(text(entity->type()->fullName()) + "." + text(attr->name()));
        law(entity, *attr);
      }
    }
  }

  std::vector<Generic> entities_;  // one of each type, and their children

 private:
  void enter(Generic const& entity) {
    entities_.push_back(entity);
    for (auto const& attr : entity->type()->attributes()) {
      if (!attr->flags().isInstantiating()) continue;
      for (char const* name : {"''", "'it\\'s.[a]'", "'None'", "'\\x00\\n\\xff'"}) {
        if (attr->flags().isCollection() || name[1] == '\'') {
          enter(
              entity->attributeOp({attr->id(), GenericIf::OpSet}, nullptr, listOf({valueOf(keyTypeOf(*attr), name)})));
        }
      }
    }
  }
};

TEST_F(GenericLaw, ReachesEveryEntityTypeAndFindsEveryAttributeByName) {
  std::set<VekType const*> reached;
  for (Generic const& entity : entities_) reached.insert(entity->type());
  EXPECT_EQ(reached.size(), entityTypes().size());
  each([](Generic const& entity, VekAttr const& attr) {
    Vek::String8 const name(attr.name());
    EXPECT_EQ(entity->attributeId(name), attr.id());
    EXPECT_EQ(entity->attributeId(name.substr(0, name.length() - 1)), GenericIf::noAttribute);
  });
}

class Hears final : public GenericIf::Subscriber {
 public:
  void onAttribute(Vek::AttributeId id, Vek::Ptr<GenericIf const> const& key) override {
    heard += std::to_string(id) + (key ? '[' + str(key->strRep()) + ']' : "");
  }
  std::string heard;
};

TEST_F(GenericLaw, WhatIsSetIsFoundCountedAndToldOnce) {
  each([](Generic const& entity, VekAttr const& attr) {
    if (!attr.flags().isSettable() || attr.flags().isInstantiating()) return;
    auto const op = [&](int code, Generic const& key, Generic const& value = {}) {
      Generic const answer = entity->attributeOp({attr.id(), code}, key, value);
      return answer ? str(answer->strRep()) : "";
    };
    bool const isKeyed = attr.flags().isCollection();
    Hears hears;
    hears.genericIs(entity.ptr());
    for (std::uint64_t seed = 0; seed < 12; ++seed) {
      Generic const key = isKeyed ? Inventor{seed}.value(keyTypeOf(attr)) : Generic{};
      Generic const value = Inventor{seed + 1}.value(*attr.valueType());
      std::string const wanted = str(value->strRep());
      bool const changes =
          op(GenericIf::OpGet, key) != wanted || (isKeyed && op(GenericIf::OpContains, key) == "False");
      hears.heard.clear();
      auto const writes = entityOf(entity).writeCount();
      for (int i = 0; i < 2; ++i) op(GenericIf::OpSet, key, value);
      EXPECT_EQ(entityOf(entity).writeCount() - writes, changes ? 1U : 0U);
      EXPECT_EQ(hears.heard, changes ? std::to_string(attr.id()) + (key ? '[' + str(key->strRep()) + ']' : "") : "");
      EXPECT_EQ(op(GenericIf::OpGet, key), wanted);
    }
    if (!isKeyed) return;
    for (auto it = entity->attributeIteratorConst(attr.id()); it; ++it) {
      Generic const key = it.key()->clone();
      EXPECT_EQ(op(GenericIf::OpDel, key), str(it.object()->strRep()));
      EXPECT_EQ(op(GenericIf::OpContains, key), "False");
    }
    EXPECT_EQ(op(GenericIf::OpCount, {}), "0");
  });
}

// The refusals of one attribute. What fits stands in `key`, `value` and `list`; each case breaks one thing, or two of
// which the one that is looked at first must show.
std::vector<Refusal> refusalsOf(Generic const& entity, VekAttr const& attr) {
  Generic const misfit = Vek::make<GenericIf::List_>();  // no key or value is of its type; as a list it is too short
  Generic const fixed = VekType::genericIf(&entityOf(entity), true);
  Generic const key = Inventor{1}.value(keyTypeOf(attr));
  Generic const null;
  std::string const name = text(attr.name());
  auto const op = [id = attr.id()](Generic const& on, int code, Generic const& k, Generic const& v) {
    return [=] { on->attributeOp({id, code}, k, v); };
  };
  auto const flags = attr.flags();
  bool const isKeyed = flags.isCollection();
  Generic const fit = isKeyed ? key : null;
  std::vector<Refusal> all = {
      {"a const generic, before all else", op(fixed, GenericIf::OpSet, misfit, null), "const", constMessage},
      {"a const generic, whatever the change", op(fixed, unknownChange, misfit, misfit), "const", constMessage},
      {"an unknown operation", op(entity, unknownRead, fit, null), "op 77", name},
  };
  auto const add = [&all](std::vector<Refusal> const& more) { all.insert(all.end(), more.begin(), more.end()); };
  if (!isKeyed) {
    add({{"a key", op(entity, GenericIf::OpGet, key, null), "index", name},
         {"a key, before the operation", op(entity, unknownRead, key, null), "index", name},
         {"a key, before the value", op(entity, GenericIf::OpSet, key, null), "index", name},
         {"a count of one", op(entity, GenericIf::OpCount, null, null), "op 1", name},
         {"a version of one", op(entity, GenericIf::OpVersion, null, null), "op 2", name}});
  }
  if (flags.isInstantiating()) {
    Generic const notNull = Inventor{2}.value(*Vek::Builtin<Vek::U32>::_fwkType());
    std::string const argument = isKeyed ? text(attr.keyAttrName()) : "name";
    int const set = GenericIf::OpSet;
    add({{"no list", op(entity, set, null, null), "type", listName},
         {"what is no list", op(entity, set, null, notNull), "type", listName},
         {"a list of nothing", op(entity, set, null, listOf({null})), "type", argument},
         {"an argument that does not fit", op(entity, set, null, listOf({misfit, key})), "type", listName},
         {"a null argument too many", op(entity, set, null, listOf({key, null})), "argument", name},
         {"a key beside the list", op(entity, set, key, listOf({key})), "index", name}});
  } else if (flags.isSettable()) {
    add({{"no value", op(entity, GenericIf::OpSet, fit, null), "type", name},
         {"a value that does not fit", op(entity, GenericIf::OpSet, fit, misfit), "type", listName}});
  } else {
    add({{"setting what is fixed", op(entity, GenericIf::OpSet, null, misfit), "op 128", name}});
  }
  if (!isKeyed) {
    if (!flags.isInstantiating()) add({{"deleting", op(entity, GenericIf::OpDel, null, null), "op 129", name}});
    return all;
  }
  std::string const index = flags.isInstantiating() ? text(attr.keyAttrName()) : "vek_index";
  for (int const code : {GenericIf::OpGet, GenericIf::OpContains, GenericIf::OpDel}) {
    add({{"no key", op(entity, code, null, null), "type", index},
         {"a key that does not fit", op(entity, code, misfit, null), "type", listName}});
  }
  if (!flags.isInstantiating()) {
    add({{"no key, before the value", op(entity, GenericIf::OpSet, null, null), "type", index}});
  }
  auto const openAt = [entity, id = attr.id()](Generic const& k) {
    return [=] { static_cast<void>(entity->attributeIteratorKey(id, k)); };
  };
  add({{"an iterator at no key", openAt(null), "type", index},
       {"an iterator at what does not fit", openAt(misfit), "type", listName}});
  return all;
}

TEST_F(GenericLaw, AnEntityRefusesInOrderAndIsLeftAlone) {
  each([](Generic const& entity, VekAttr const& attr) {
    Vek::Entity const& it = entityOf(entity);
    auto const writes = it.writeCount();
    auto const reads = it.readCount();
    expectRefused(refusalsOf(entity, attr));
    EXPECT_EQ(it.writeCount(), writes);
    EXPECT_EQ(it.readCount(), reads);
  });
}

TEST_F(GenericLaw, AnEntityRefusesWhatIsNoAttributeOfItsOwn) {
  for (Generic const& entity : entities_) {
    SCOPED_TRACE(entity->type()->fullName());
    Generic const fixed = VekType::genericIf(&entityOf(entity), true);
    std::string const name = text(entity->type()->name());
    auto const change = [&] { fixed->attributeOp({9999, 128}, nullptr, nullptr); };
    auto const read = [&] { fixed->attributeOp({9999, 0}, nullptr, nullptr); };
    auto const cast = [&] { static_cast<void>(fixed->voidPtrIs(GenericIf::List::_fwkType())); };
    expectRefused({{"const, before the attribute", change, "const", constMessage},
                   {"an unknown number", read, "op 0", "attribute 9999"},
                   {"another type", cast, "type", name}});
    for (VekType const* type : {entity->type(), static_cast<VekType const*>(Vek::Entity::_fwkType()),
                                static_cast<VekType const*>(Vek::PtrInterface::_fwkType())}) {
      EXPECT_EQ(entity->voidPtrIs(type), static_cast<void const*>(&entityOf(entity)));
    }
  }
}

TEST_F(GenericLaw, ARootIsMadeFromNoOtherListThanOneOfAName) {
  Generic const name = valueOf(*Vek::Name::_fwkType(), "'n'");
  Generic const misfit = Vek::make<GenericIf::List_>();
  for (Generic const& entity : entities_) {
    if (entityOf(entity).parent()) continue;
    VekType const& type = *entity->type();
    SCOPED_TRACE(type.fullName());
    auto const make = [&](Generic const& list) {
      return [&type, list] { static_cast<void>(type.genericIf(list.ptr(), false)); };
    };
    expectRefused({
        {"no list", make(name), "type", listName},
        {"a list of nothing", make(listOf({{}})), "type", "name"},
        {"what is no name", make(listOf({misfit})), "type", listName},
        {"more than a name", make(listOf({name, name})), "argument", text(type.name())},
    });
    EXPECT_FALSE(type.genericIf(listOf({name}).ptr(), true)->isConst());
  }
}

TEST_F(GenericLaw, AValueRefusesInOrder) {
  Generic const misfit = Vek::make<GenericIf::List_>();
  for (VekType const* type : recordTypes()) {
    SCOPED_TRACE(type->fullName());
    std::string const name = text(type->name());
    Generic const value = Inventor{1}.value(*type);
    Generic const fixed = type->genericIf(value->voidPtrIs(type), true);
    auto const op = [](Generic const& on, Vek::AttributeId id, int code, Generic const& key) {
      return [=] { on->attributeOp({id, code}, key, nullptr); };
    };
    auto const make = [type](std::vector<Generic> const& arguments) {
      return [=] { static_cast<void>(type->genericIf(listOf(arguments).ptr(), false)); };
    };
    expectRefused({
        {"const, before the attribute", op(fixed, 9999, 128, {}), "const", constMessage},
        {"an unknown number", op(value, 9999, 0, {}), "op 0", "attribute 9999"},
        {"another operation on the whole", op(value, 0, 0, value), "op 0", "attribute 0"},
        {"equals what", op(fixed, 0, GenericIf::OpEquals, {}), "type", "vekOpArg"},
        {"equals another type", op(value, 0, GenericIf::OpEquals, misfit), "type", listName},
        {"another type", [&] { static_cast<void>(value->voidPtrIs(GenericIf::List::_fwkType())); }, "type", name},
        {"no list", [&] { static_cast<void>(type->genericIf(value.ptr(), false)); }, "type", listName},
    });
    std::vector<Generic> arguments;
    for (auto const& attr : type->attributes()) {
      SCOPED_TRACE(attr->name());
      EXPECT_EQ(value->attributeId(Vek::String8(attr->name())), attr->id());
      std::string const its = text(attr->name());
      auto nothing = arguments;
      nothing.push_back({});
      auto wrong = arguments;
      wrong.push_back(misfit);
      expectRefused({
          {"const", op(fixed, attr->id(), 128, value), "const", constMessage},
          {"a key, before the operation", op(value, attr->id(), unknownRead, value), "index", its},
          {"setting", op(value, attr->id(), GenericIf::OpSet, {}), "op 128", its},
          {"a null argument", make(nothing), "type", its},
          {"an argument that does not fit", make(wrong), "type", listName},
      });
      if (!arguments.empty()) expectRefused({{"too short a list", make(arguments), "type", its}});
      arguments.push_back(value->attributeOp({attr->id(), GenericIf::OpGet}, nullptr, nullptr));
      EXPECT_FALSE(arguments.back()->isConst());
      EXPECT_TRUE(fixed->attributeOp({attr->id(), GenericIf::OpGet}, nullptr, nullptr)->isConst());
    }
    Generic const again = type->genericIf(listOf(arguments).ptr(), true);
    EXPECT_FALSE(again->isConst());
    EXPECT_EQ(again->strRep(), value->strRep());
    op(value, 0, GenericIf::OpEquals, again)();
    arguments.push_back(value);
    expectRefused({{"too long a list", make(arguments), "argument", name}});
  }
}

}  // namespace
