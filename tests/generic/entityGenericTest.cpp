// Entities without their classes: every attribute by number does what its typed operation does.
#include "platform/vek/Builtin.h"
#include "platform/vek/Dir.h"
#include "platform/vek/EntityText.h"
#include "platform/vek/GenericIfEntity.h"
#include "tests/core/LeakCheck.h"
#include "tests/frame/Toy.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace {

using namespace Toys;
using Vek::AttributeId;
using Vek::GenericIf;
using Generic = Vek::Ptr<GenericIf>;

Generic generic(Vek::VekType* type, char const* text) { return type->genericIf(Vek::String8(text), false); }
Generic number(char const* text) { return generic(Vek::Builtin<Vek::U32>::_fwkType(), text); }
Generic name(char const* text) {
  Vek::Name const value = text;
  return Vek::Name::_fwkType()->genericIf(static_cast<void const*>(&value), false);
}
Generic label(char const* text) {
  Vek::String8 const value = text;
  return Vek::Builtin<Vek::String8>::_fwkType()->genericIf(static_cast<void const*>(&value), false);
}
Generic listOf(std::initializer_list<Generic> arguments) {
  auto const list = Vek::make<GenericIf::List_>();
  for (auto const& argument : arguments) list->enqueue(argument);
  return list;
}

// Made for good by its first use.
struct RootDirectory {
  Vek::Dir& directory = Vek::Dir::root();
};

class EntityGeneric : private RootDirectory, public LeakCheck {
 protected:
  Vek::Ptr<ToyBox> box = toyBoxFactory("box");
  Generic g = Vek::VekType::genericIf(box.ptr(), false);
  Generic fixed = Vek::VekType::genericIf(box.ptr(), true);

  Vek::String8 get(AttributeId id, Generic const& key = {}) { return op(id, GenericIf::OpGet, key)->strRep(); }
  Generic op(AttributeId id, int code, Generic const& key = {}, Generic const& value = {}) {
    return g->attributeOp({id, code}, key, value);
  }
};

constexpr AttributeId counts = 258;
constexpr AttributeId wanted = 260;
constexpr AttributeId capacity = 264;
constexpr AttributeId lid = 265;
constexpr AttributeId shelves = 266;

TEST_F(EntityGeneric, ScalarsAreReadSetAndCounted) {
  Vek::Ptr<Toy> const toy = toyFactory("toy");
  Generic const t = Vek::VekType::genericIf(toy.ptr(), false);
  Vek::String8 const place = "Value('Toys::ToyPoint', ** {'x': 1, 'y': 2.0, 'label': 'l'})";
  struct Case {
    AttributeId id;
    Vek::VekType const* type;
    Vek::String8 text;
  };
  for (Case const& c :
       {Case{258, Vek::Builtin<Vek::U64>::_fwkType(), "18446744073709551615"},
        Case{259, Vek::Builtin<bool>::_fwkType(), "True"}, Case{260, Vek::Builtin<double>::_fwkType(), "0.5"},
        Case{261, Vek::Builtin<Vek::String8>::_fwkType(), "'it\\'s'"}, Case{262, ToyPoint::_fwkType(), place}}) {
    SCOPED_TRACE(c.id);
    auto const writes = toy->writeCount();
    auto const reads = toy->readCount();
    EXPECT_FALSE(t->attributeOp({c.id, GenericIf::OpSet}, nullptr, c.type->genericIf(c.text, false)));
    t->attributeOp({c.id, GenericIf::OpSet}, nullptr, c.type->genericIf(c.text, false));
    EXPECT_EQ(toy->writeCount(), writes + 1) << "the setter's own detection of change";
    EXPECT_EQ(t->attributeOp({c.id, GenericIf::OpGet}, nullptr, nullptr)->strRep(), c.text);
    EXPECT_EQ(toy->readCount(), reads + 1);
  }
  EXPECT_EQ(toy->size(), 18446744073709551615ULL);
  EXPECT_EQ(toy->place(), ToyPoint(1, 2, "l"));
}

TEST_F(EntityGeneric, AConstantAnswersAlways) {
  EXPECT_EQ(get(capacity), "12");
  EXPECT_THROW(op(capacity, GenericIf::OpSet, {}, number("3")), Vek::OpNotSupportedException);
}

TEST_F(EntityGeneric, CollectionsGoByKey) {
  EXPECT_EQ(get(counts, number("7")), "0");
  EXPECT_EQ(box->readCount(), 1U) << "a missing key is a read too";
  EXPECT_EQ(op(counts, GenericIf::OpContains, number("7"))->strRep(), "False");
  op(counts, GenericIf::OpSet, number("7"), number("70"));
  EXPECT_EQ(box->counts(7), 70U);
  EXPECT_EQ(op(counts, GenericIf::OpContains, number("7"))->strRep(), "True");
  EXPECT_EQ(op(counts, GenericIf::OpCount)->strRep(), "1");
  auto const version = op(counts, GenericIf::OpVersion)->strRep();
  EXPECT_EQ(op(counts, GenericIf::OpDel, number("7"))->strRep(), "70");
  EXPECT_EQ(op(counts, GenericIf::OpDel, number("7"))->strRep(), "0");
  EXPECT_NE(op(counts, GenericIf::OpVersion)->strRep(), version);
}

TEST_F(EntityGeneric, AChildIsMadeReadAndRemoved) {
  EXPECT_EQ(get(lid), "None");
  EXPECT_EQ(op(lid, GenericIf::OpDel)->strRep(), "None");
  Generic const made = op(lid, GenericIf::OpSet, {}, listOf({name("top")}));
  EXPECT_EQ(made->strRep(), "box.lid");
  EXPECT_EQ(box->lid()->name(), "top");
  made->attributeOp({258, GenericIf::OpSet}, nullptr, generic(Vek::Builtin<bool>::_fwkType(), "False"));
  EXPECT_FALSE(box->lid()->open());
  EXPECT_EQ(op(lid, GenericIf::OpDel)->type(), Lid::_fwkType());
  EXPECT_FALSE(box->lid());
}

TEST_F(EntityGeneric, ChildrenGoByKeyAndAreMadeFromAList) {
  Generic const shelf = op(shelves, GenericIf::OpSet, {}, listOf({name("top")}));
  Generic const drawer = shelf->attributeOp({258, GenericIf::OpSet}, nullptr, listOf({label("left one")}));
  EXPECT_EQ(drawer->strRep(), "box.shelves[top].drawers['left one']");
  EXPECT_EQ(drawer->attributeOp({258, GenericIf::OpGet}, nullptr, nullptr)->strRep(), "'left one'");
  EXPECT_EQ(drawer->attributeOp({0, GenericIf::OpGet}, nullptr, nullptr)->strRep(), "'left one'");
  EXPECT_EQ(get(shelves, name("top")), "box.shelves[top]");
  EXPECT_EQ(get(shelves, name("none")), "None");
  EXPECT_EQ(op(shelves, GenericIf::OpDel, name("top"))->type(), Shelf::_fwkType());
  EXPECT_EQ(op(shelves, GenericIf::OpCount)->strRep(), "0");
}

TEST_F(EntityGeneric, AnswersForWhatEveryEntityHas) {
  EXPECT_EQ(op(g->attributeId("name"), GenericIf::OpGet)->strRep(), "'box'");
  EXPECT_EQ(op(g->attributeId("fullName"), GenericIf::OpGet)->strRep(), "'box'");
  EXPECT_EQ(op(154, GenericIf::OpGet)->strRep(), "True");
  EXPECT_EQ(g->voidPtrIs(Vek::Ptr<Vek::VekType const>(Vek::Entity::_fwkType())), static_cast<void const*>(box.ptr()));
}

TEST_F(EntityGeneric, IsMadeFromAListThatHoldsItsName) {
  Generic const made = ToyBox::_fwkType()->genericIf(listOf({name("other")}).ptr(), true);
  EXPECT_FALSE(made->isConst());
  EXPECT_EQ(made->strRep(), "other");
}

TEST_F(EntityGeneric, IsFoundByItsText) {
  Vek::Dir::root().entryIs(box);
  EXPECT_EQ(ToyBox::_fwkType()->genericIf(Vek::String8("box"), false)->strRep(), "box");
  EXPECT_THROW(static_cast<void>(Toy::_fwkType()->genericIf(Vek::String8("box"), false)), Vek::RangeException);
  Vek::Dir::root().entryDel("box");
}

TEST_F(EntityGeneric, TheTextOfAReferenceLeadsThroughChildren) {
  Vek::Dir::root().entryIs(box);
  Vek::Ptr<Lid> const top = box->lidIs("any name");
  Vek::Ptr<Drawer> const drawer = box->shelvesIs("a shelf")->drawersIs("it's\n[0].x");
  auto const read = [](Vek::String8 const& text) {
    return Vek::strepToValue(text, static_cast<Vek::Ptr<Vek::Entity>*>(nullptr));
  };
  for (Vek::Entity* entity : {static_cast<Vek::Entity*>(top.ptr()), static_cast<Vek::Entity*>(drawer.ptr())}) {
    auto const reads = box->readCount();
    EXPECT_EQ(read(entity->fullName()).ptr(), entity) << entity->fullName();
    EXPECT_EQ(box->readCount(), reads + 1);
  }
  for (char const* text : {"box.lid[a]", "box.shelves", "box.shelves[none]", "box.shelves[none].drawers[x]",
                           "box.counts", "box.counts[1]", "box.parent", "box.lid.open", "box.nothing"}) {
    EXPECT_FALSE(read(text)) << text;
  }
  EXPECT_THROW(read("box.lid."), Vek::RangeException);
  EXPECT_EQ(Drawer::_fwkType()->genericIf(drawer->fullName(), false)->strRep(), drawer->fullName());
  Vek::Dir::root().entryDel("box");
}

struct Refusal {
  char const* what;
  AttributeId id;
  int code;
  Generic key;
  Generic value;
  std::string kind;
  std::string subject;
};

template <class E>
bool is(Vek::GenericException const& e) {
  return dynamic_cast<E const*>(&e) != nullptr;
}

std::string kindOf(Vek::GenericException const& e) {
  if (is<Vek::TypeException>(e)) return "type";
  if (is<Vek::ConstException>(e)) return "const";
  if (is<Vek::BadIndexAttrException>(e)) return "index";
  if (is<Vek::UnknownArgException>(e)) return "argument";
  return is<Vek::OpNotSupportedException>(e) ? "op" : "?";
}

TEST_F(EntityGeneric, RefusesInOrderAndLeavesNothingHalfDone) {
  Generic const one = number("1");
  for (Refusal const& r : {
           Refusal{"set without a value", counts, 128, one, {}, "type", "counts"},
           Refusal{"no key", counts, 0, {}, {}, "type", "vek_index"},
           Refusal{"no key before no value", counts, 128, {}, {}, "type", "vek_index"},
           Refusal{"a key of another type", counts, 0, name("n"), {}, "type", "Name"},
           Refusal{"a value of another type", counts, 128, one, name("n"), "type", "Name"},
           Refusal{"no such operation", counts, 77, one, {}, "op", "counts"},
           Refusal{"a key for a child", lid, 0, one, {}, "index", "lid"},
           Refusal{"a child without a list", lid, 128, {}, one, "type", "Vek::GenericIf::List_"},
           Refusal{"a child from an empty list", lid, 128, {}, listOf({}), "type", "name"},
           Refusal{"a child from too long a list", lid, 128, {}, listOf({name("a"), one}), "argument", "lid"},
           Refusal{"no key for children", shelves, 0, {}, {}, "type", "name"},
           Refusal{"children with the key outside", shelves, 128, name("a"), listOf({name("a")}), "index", "shelves"},
           Refusal{"children from too long a list", shelves, 128, {}, listOf({name("a"), one}), "argument", "shelves"},
           Refusal{"an unknown attribute", 9999, 0, {}, {}, "op", "attribute 9999"},
           Refusal{"a retired attribute", 262, 0, {}, {}, "op", "attribute 262"},
           Refusal{"to set a name", 128, 128, {}, name("n"), "op", "name"},
       }) {
    SCOPED_TRACE(r.what);
    try {
      op(r.id, r.code, r.key, r.value);
      ADD_FAILURE() << "accepted";
    } catch (Vek::GenericException const& e) {
      EXPECT_EQ(kindOf(e), r.kind);
      EXPECT_EQ(std::string(e.subject()), r.subject);
    }
    EXPECT_EQ(box->writeCount(), 0U);
  }
  EXPECT_THROW(fixed->attributeOp({9999, 128}, nullptr, nullptr), Vek::ConstException);
  EXPECT_THROW(static_cast<void>(Vek::VekType::genericIf(static_cast<Vek::PtrInterface*>(nullptr), false)
                                     ->attributeOp({258, 0}, nullptr, nullptr)),
               Vek::OpNotSupportedException);
}

std::vector<std::string> walk(Generic const& from, AttributeId id) {
  std::vector<std::string> seen;
  for (auto it = from->attributeIteratorConst(id); it; ++it) {
    seen.push_back(std::string(it.key()->strRep()) + "=" + std::string(it.object()->strRep()));
  }
  return seen;
}

TEST_F(EntityGeneric, IteratorsWalkEveryKindOfCollection) {
  for (Vek::U32 key : {3U, 1U, 2U, 0U}) {
    box->countsIs(key, 10 * key);
    box->wantedIs(key, key % 2 == 0);
  }
  box->shelvesIs("top");
  EXPECT_EQ(walk(g, counts), (std::vector<std::string>{"0=0", "1=10", "2=20", "3=30"}));
  EXPECT_EQ(walk(g, wanted), (std::vector<std::string>{"0=True", "2=True", "1=False", "3=False"}));
  EXPECT_EQ(walk(g, shelves), (std::vector<std::string>{"'top'=box.shelves[top]"}));
  EXPECT_THROW(static_cast<void>(g->attributeIteratorConst(lid)), Vek::OpNotSupportedException);
}

TEST_F(EntityGeneric, AnIteratorOpensAtExactlyItsKeyAndLivesThroughChanges) {
  for (Vek::U32 key : {1U, 3U, 5U}) box->countsIs(key, key);
  EXPECT_FALSE(g->attributeIteratorKeyConst(counts, number("2"))) << "not the next greater key";
  auto it = g->attributeIteratorKeyConst(counts, number("3"));
  auto const copy = it;
  g = nullptr;  // the iterator keeps its generic alive
  box->countsDel(3);
  box->countsIs(4, 4);
  ++it;
  EXPECT_EQ(it.key()->strRep(), "4");
  EXPECT_EQ(copy.key()->strRep(), "3");
  EXPECT_TRUE(it.key()->isConst());
  ++it;
  ++it;
  EXPECT_FALSE(it);
  EXPECT_FALSE(it.key());
  EXPECT_FALSE(it.object());
}

TEST_F(EntityGeneric, WhatAConstGenericHandsOutIsConst) {
  box->shelvesIs("top");
  EXPECT_TRUE(fixed->attributeOp({shelves, 0}, name("top"), nullptr)->isConst());
  EXPECT_TRUE(fixed->attributeIteratorConst(shelves).object()->isConst());
  EXPECT_FALSE(g->attributeIteratorConst(shelves).object()->isConst());
}

}  // namespace
