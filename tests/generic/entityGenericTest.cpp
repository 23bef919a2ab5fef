// Entities without their classes, where no typed operation does the same: texts of references, and what is const.
#include "dornl3/platform/vek/Builtin.h"
#include "dornl3/platform/vek/Dir.h"
#include "dornl3/platform/vek/EntityText.h"
#include "dornl3/platform/vek/GenericIfEntity.h"
#include "tests/core/LeakCheck.h"
#include "tests/frame/Toy.h"

#include <gtest/gtest.h>

namespace {

using namespace Toys;
using namespace Vek;
using Generic = Vek::Ptr<GenericIf>;

Generic number(char const* text) { return Vek::Builtin<Vek::U32>::_fwkType()->genericIf(Vek::String8(text), false); }
Generic name(char const* text) {
  Vek::Name const value = text;
  return Vek::Name::_fwkType()->genericIf(static_cast<void const*>(&value), false);
}
// Made for good by its first use.
struct RootDirectory {
  Vek::Dir& directory = Vek::Dir::root();
};

class EntityGeneric : private RootDirectory, public LeakCheck {
 protected:
  Vek::Ptr<ToyBox> box = toyBoxFactory("box");
  Generic g = VekType::genericIf(box.ptr(), false);
  Generic fixed = VekType::genericIf(box.ptr(), true);

  Vek::String8 get(AttributeId id, Generic const& key = {}) { return op(id, GenericIf::OpGet, key)->strRep(); }
  Generic op(AttributeId id, int code, Generic const& key = {}, Generic const& value = {}) {
    return g->attributeOp({id, code}, key, value);
  }
};

constexpr AttributeId counts = 258;
constexpr AttributeId lid = 265;
constexpr AttributeId shelves = 266;

TEST_F(EntityGeneric, ScalarsAreReadAndSetAsByTheirNames) {
  Vek::Ptr<Toy> const toy = toyFactory("toy");
  g = VekType::genericIf(toy.ptr(), false);
  Generic const large = Vek::Builtin<Vek::U64>::_fwkType()->genericIf(Vek::String8("7"), false);
  for (int i = 0; i < 2; ++i) EXPECT_FALSE(op(258, GenericIf::OpSet, {}, large));
  EXPECT_EQ(toy->writeCount(), 1U) << "the present value is nothing";
  EXPECT_EQ(get(258), "7");
  EXPECT_EQ(toy->readCount(), 1U);
}

TEST_F(EntityGeneric, ChildrenAreMadeFromAListAndGoByKey) {
  auto const list = Vek::make<GenericIf::List_>();
  list->enqueue(name("top"));
  EXPECT_EQ(op(lid, GenericIf::OpSet, {}, list)->strRep(), "box.lid");
  EXPECT_EQ(op(shelves, GenericIf::OpSet, {}, list)->strRep(), "box.shelves[top]");
  EXPECT_EQ(box->lid()->name(), "top");
  EXPECT_EQ(get(lid), "box.lid");
  EXPECT_EQ(get(shelves, name("top")), "box.shelves[top]");
  EXPECT_EQ(box->readCount(), 3U);
  EXPECT_EQ(op(shelves, GenericIf::OpContains, name("top"))->strRep(), "True");
  EXPECT_EQ(op(shelves, GenericIf::OpDel, name("top"))->strRep(), "top") << "without its parent";
  EXPECT_EQ(op(lid, GenericIf::OpDel)->strRep(), "top");
  EXPECT_EQ(get(lid), "None");
  EXPECT_EQ(op(shelves, GenericIf::OpCount)->strRep(), "0");
}

TEST_F(EntityGeneric, AMissingKeyIsReadTooAndAVersionTellsOtherMembersFromAsManyBefore) {
  EXPECT_EQ(get(counts, number("7")), "0");
  EXPECT_EQ(box->readCount(), 1U);
  op(counts, GenericIf::OpSet, number("7"), number("70"));
  auto const version = op(counts, GenericIf::OpVersion)->strRep();
  op(counts, GenericIf::OpDel, number("7"));
  op(counts, GenericIf::OpSet, number("8"), number("80"));
  EXPECT_NE(op(counts, GenericIf::OpVersion)->strRep(), version);
}

TEST_F(EntityGeneric, AnswersForWhatEveryEntityHas) {
  EXPECT_EQ(get(g->attributeId("name")), "'box'");
  EXPECT_EQ(get(g->attributeId("fullName")), "'box'");
  EXPECT_EQ(get(154), "True");
  box->shelvesIs("top")->drawersIs("left one");
  Generic const drawer = VekType::genericIf(box->shelves("top")->drawers("left one").ptr(), false);
  EXPECT_EQ(drawer->attributeOp({0, GenericIf::OpGet}, nullptr, nullptr)->strRep(), "'left one'") << "its key";
}

TEST_F(EntityGeneric, TheTextOfAReferenceLeadsThroughChildren) {
  Vek::Dir::root().entryIs(box);
  Vek::Ptr<Lid> const top = box->lidIs("any name");
  Vek::Ptr<Drawer> const drawer = box->shelvesIs("a shelf")->drawersIs("it's\n[0].x");
  auto const read = [](Vek::String8 const& text) {
    return Vek::strepToValue(text, static_cast<Vek::Ptr<Entity>*>(nullptr));
  };
  for (Entity* entity : {static_cast<Entity*>(top.ptr()), static_cast<Entity*>(drawer.ptr())}) {
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
  EXPECT_THROW(static_cast<void>(Toy::_fwkType()->genericIf(Vek::String8("box"), false)), Vek::RangeException);
  Vek::Dir::root().entryDel("box");
}

TEST_F(EntityGeneric, HasNoAttributeThatIsRetiredAndWithoutAnEntityNoneAtAll) {
  EXPECT_THROW(op(262, GenericIf::OpGet), Vek::OpNotSupportedException);
  EXPECT_THROW(static_cast<void>(g->attributeIteratorConst(lid)), Vek::OpNotSupportedException);
  Generic const nobody = VekType::genericIf(static_cast<Vek::PtrInterface*>(nullptr), false);
  EXPECT_THROW(nobody->attributeOp({counts, GenericIf::OpCount}, nullptr, nullptr), Vek::OpNotSupportedException);
}

TEST_F(EntityGeneric, AnIteratorKeepsItsGenericAliveAndGivesKeysThatAreConst) {
  for (Vek::U32 key : {1U, 3U}) box->countsIs(key, key);
  auto it = g->attributeIteratorKeyConst(counts, number("1"));
  EXPECT_FALSE(g->attributeIteratorKeyConst(counts, number("2"))) << "at exactly that key";
  g = nullptr;
  auto const copy = it;
  ++it;
  EXPECT_EQ(it.key()->strRep(), "3");
  EXPECT_EQ(it.object()->strRep(), "3");
  EXPECT_EQ(copy.key()->strRep(), "1");
  EXPECT_TRUE(it.key()->isConst());
}

TEST_F(EntityGeneric, WhatAConstGenericHandsOutIsConst) {
  Generic const shelf = VekType::genericIf(box->shelvesIs("top").ptr(), true);
  EXPECT_TRUE(fixed->attributeOp({shelves, 0}, name("top"), nullptr)->isConst());
  EXPECT_TRUE(fixed->attributeIteratorConst(shelves).object()->isConst());
  EXPECT_FALSE(g->attributeIteratorConst(shelves).object()->isConst());
  EXPECT_TRUE(shelf->clone()->isConst());
  for (AttributeId const id :
       {Entity::keyAttr, Entity::fullNameAttr, Entity::parentAttrNumber, Entity::attrLogMarker}) {
    EXPECT_TRUE(shelf->attributeOp({id, 0}, nullptr, nullptr)->isConst()) << id;
  }
  EXPECT_THROW(fixed->attributeOp({counts, GenericIf::OpSet}, number("7"), number("1")), Vek::ConstException);
}

}  // namespace
