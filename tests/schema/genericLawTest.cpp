// Laws of the generic interface, for every attribute of every entity type that the registry holds. No type is named:
// entities are made, and values invented, by what the registry says of them.
#include "platform/vek/GenericIfEntity.h"
#include "platform/vek/ScalarText.h"
#include "tests/core/LeakCheck.h"

#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace {

using Vek::GenericIf;
using Vek::VekAttr;
using Vek::VekType;
using Generic = Vek::Ptr<GenericIf>;

class Inventor {
 public:
  explicit Inventor(unsigned seed) : random_{seed} {}

  // The text of some value of a type. Small numbers fit every type that has limits.
  std::string text(VekType const& type) {
    if (type.isValue() && !type.attributes().empty() && type.valAttr() == nullptr) return record(type);
    if (type.valAttr() != nullptr) return text(*type.valAttr()->valueType());
    std::string_view const name = type.fullName();
    if (name == "bool") return below(2) == 0 ? "False" : "True";
    if (name == "Vek::Seconds") return std::string{Vek::valueToStrep(double(below(1000)) / 8).view()};
    if (name == "U64") return std::to_string(below(3) == 0 ? random_() : below(9));
    if (name == "U32") return std::to_string(below(3) == 0 ? random_() & 0xffffffff : below(9));
    if (name == "Vek::String" || name == "Vek::Name") return std::string{Vek::valueToStrep(bytes()).view()};
    if (name == "Kiln::Fapmask") {
      return Vek::format("'%08x:00000000:%08x:00000000'", unsigned(below(4)), unsigned(below(4))).charPtr();
    }
    return std::to_string(3 + below(5));
  }
  Generic value(VekType const& type) { return type.genericIf(Vek::String8(text(type)), false); }

 private:
  std::uint64_t below(std::uint64_t n) { return random_() % n; }
  Vek::String8 bytes() {
    std::string all;
    for (auto n = below(4); n > 0; --n) all += "ab'\\\n\xff"[below(6)];
    return std::string_view(all);
  }
  std::string record(VekType const& type) {
    std::string all = "Value('" + std::string(type.fullName().view()) + "', ** {";
    char const* before = "'";
    for (auto const& attr : type.attributes()) {
      all += before + std::string(attr->name().view()) + "': " + text(*attr->valueType());
      before = ", '";
    }
    return all + "})";
  }

  std::mt19937_64 random_;
};

std::string str(Vek::String8 const& text) { return std::string{text.view()}; }

Generic listOf(Generic const& argument) {
  auto const list = Vek::make<GenericIf::List_>();
  list->enqueue(argument);
  return list;
}

Generic name(char const* text) { return Vek::Name::_fwkType()->genericIf(Vek::String8(text), false); }

Vek::Entity& entityOf(Generic const& generic) { return static_cast<Vek::GenericIfEntity&>(*generic).entity(); }

struct Counts {
  Vek::U32 writes;
  Vek::U32 reads;
  Vek::U32 writesSince(Generic const& g) const { return entityOf(g).writeCount() - writes; }
  Vek::U32 readsSince(Generic const& g) const { return entityOf(g).readCount() - reads; }
};

Counts countsOf(Generic const& g) { return {entityOf(g).writeCount(), entityOf(g).readCount()}; }

class GenericLaw : public testing::Test {
 protected:
  GenericLaw() {
    for (VekType* type : VekType::registered()) {
      if (!type->isEntity() || type->base() == nullptr) continue;
      ++types_;
      try {
        enter(static_cast<VekType const*>(type)->genericIf(listOf(name("'root'")).ptr(), false));
      } catch (Vek::InternalException const&) {  // it comes to be through its parent only
      }
    }
  }

  // Calls `law` with every attribute of every entity for which `wanted` holds.
  template <class Wanted, class Law>
  void each(Wanted const& wanted, Law const& law) {
    std::size_t tried = 0;
    for (Generic const& entity : entities_) {
      for (auto const& attr : entity->type()->attributes()) {
        if (!isOwn(*entity->type(), *attr) || !wanted(attr->flags())) continue;
        SCOPED_TRACE(std::string(entity->type()->fullName().view()) + "." + std::string(attr->name().view()));
        ASSERT_EQ(entity->attributeId(Vek::String8(attr->name())), attr->id());
        law(entity, *attr);
        ++tried;
      }
    }
    EXPECT_GT(tried, 0U);
  }

  std::size_t types_ = 0;
  std::vector<Generic> entities_;  // one of each type, and their children

 private:
  void enter(Generic const& entity) {
    entities_.push_back(entity);
    for (auto const& attr : entity->type()->attributes()) {
      if (!attr->flags().isInstantiating()) continue;
      VekType const& key = attr->keyType() == nullptr ? *Vek::Name::_fwkType() : *attr->keyType();
      enter(entity->attributeOp({attr->id(), GenericIf::OpSet}, nullptr,
                                listOf(key.genericIf(Vek::String8("'child'"), false))));
    }
  }
};

bool isScalar(VekAttr::AttrFlags flags) {
  return flags.isSettable() && !flags.isCollection() && !flags.isInstantiating();
}
bool isElements(VekAttr::AttrFlags flags) { return flags.isCollection() && !flags.isInstantiating(); }

TEST_F(GenericLaw, ReachesEveryEntityType) {
  std::set<VekType const*> reached;
  for (Generic const& entity : entities_) reached.insert(entity->type());
  EXPECT_EQ(reached.size(), types_);
  EXPECT_EQ(types_, 13U);
}

TEST_F(GenericLaw, AScalarReadsBackAsSetAndCountsOneWriteAChange) {
  Inventor inventor{1};
  each(isScalar, [&](Generic const& entity, VekAttr const& attr) {
    VekType const& type = *attr.valueType();
    for (int i = 0; i < 20; ++i) {
      auto const get = [&](Generic const& g) {
        return g->attributeOp({attr.id(), GenericIf::OpGet}, nullptr, nullptr);
      };
      Generic const old = get(entity);
      Generic const wanted = inventor.value(type);
      Counts const before = countsOf(entity);
      ASSERT_FALSE(entity->attributeOp({attr.id(), GenericIf::OpSet}, nullptr, wanted));
      bool const changed = old->strRep() != wanted->strRep();
      EXPECT_EQ(before.writesSince(entity), changed ? 1U : 0U);
      EXPECT_EQ(before.readsSince(entity), 0U);
      Generic const now = get(entity);
      EXPECT_EQ(before.readsSince(entity), 1U);
      EXPECT_EQ(now->type(), &type);
      EXPECT_EQ(str(now->strRep()), str(wanted->strRep()));
      // The second reading: another generic of the same entity, and the value taken apart and put together again.
      EXPECT_EQ(str(get(entity->clone())->strRep()), str(wanted->strRep()));
      EXPECT_EQ(str(type.genericIf(now->strRep(), true)->strRep()), str(wanted->strRep()));
      EXPECT_EQ(now->attributeOp({0, GenericIf::OpEquals}, wanted, nullptr)->strRep(), "True");
      Generic const copy = type.genericIf(now->voidPtrIs(&type), false);
      EXPECT_EQ(copy->attributeOp({0, GenericIf::OpEquals}, now, nullptr)->strRep(), "True");
      auto const arguments = Vek::make<GenericIf::List_>();
      for (auto const& field : type.attributes()) {
        arguments->enqueue(now->attributeOp({field->id(), GenericIf::OpGet}, nullptr, nullptr));
      }
      if (!type.attributes().empty()) {
        EXPECT_EQ(str(type.genericIf(static_cast<GenericIf const*>(arguments.ptr()), false)->strRep()),
                  str(now->strRep()));
      }
    }
  });
}

TEST_F(GenericLaw, ACollectionEqualsAMapOfItsTexts) {
  Inventor inventor{2};
  std::mt19937 random{3};
  each(isElements, [&](Generic const& entity, VekAttr const& attr) {
    std::map<std::string, std::string> model;
    auto const op = [&](int code, Generic const& key = {}, Generic const& value = {}) {
      return entity->attributeOp({attr.id(), code}, key, value);
    };
    std::string const none = str(attr.valueType()->genericIf(static_cast<void const*>(nullptr), true)->strRep());
    for (int i = 0; i < 60; ++i) {
      Generic const key = inventor.value(*attr.keyType());
      std::string const k = str(key->strRep());
      auto const at = model.find(k);
      bool const isThere = at != model.end();
      std::string const old = isThere ? at->second : none;
      Counts const before = countsOf(entity);
      if (random() % 3 != 0) {
        Generic const value = inventor.value(*attr.valueType());
        std::string const v = str(value->strRep());
        op(GenericIf::OpSet, key, value);
        EXPECT_EQ(before.writesSince(entity), isThere && old == v ? 0U : 1U);
        model[k] = v;
      } else {
        EXPECT_EQ(str(op(GenericIf::OpDel, key)->strRep()), old);
        EXPECT_EQ(before.writesSince(entity), isThere ? 1U : 0U);
        model.erase(k);
      }
      EXPECT_EQ(op(GenericIf::OpContains, key)->strRep(), model.contains(k) ? "True" : "False");
      EXPECT_EQ(str(op(GenericIf::OpCount)->strRep()), std::to_string(model.size()));
      EXPECT_EQ(before.readsSince(entity), 0U);
      EXPECT_EQ(str(op(GenericIf::OpGet, key)->strRep()), model.contains(k) ? model[k] : none);
      EXPECT_EQ(static_cast<bool>(entity->attributeIteratorKeyConst(attr.id(), key)), model.contains(k));
      std::map<std::string, std::string> walked;
      for (auto it = entity->attributeIteratorConst(attr.id()); it; ++it) {
        EXPECT_TRUE(walked.emplace(it.key()->strRep(), it.object()->strRep()).second);
      }
      ASSERT_EQ(walked, model);
    }
  });
}

TEST_F(GenericLaw, WhatIsRefusedLeavesCountsAndValueAlone) {
  Inventor inventor{4};
  auto const all = [](VekAttr::AttrFlags) { return true; };
  each(all, [&](Generic const& entity, VekAttr const& attr) {
    Generic const misfit = Vek::make<GenericIf::List_>();  // no attribute is of its type; as arguments it is too short
    Generic const fixed = VekType::genericIf(&entityOf(entity), true);
    Generic const key = attr.keyType() == nullptr ? name("'key'") : inventor.value(*attr.keyType());
    bool const isKeyed = attr.keyType() != nullptr;
    struct Refused {
      char const* what;
      Generic on;
      int code;
      Generic key;
      Generic value;
    };
    for (Refused const& r : {
             Refused{"an unknown operation", entity, 77, isKeyed ? key : nullptr, nullptr},
             Refused{"an unknown change", entity, 200, isKeyed ? key : nullptr, nullptr},
             Refused{"set without a value", entity, GenericIf::OpSet, isKeyed ? key : nullptr, nullptr},
             Refused{"set to what does not fit", entity, GenericIf::OpSet, isKeyed ? key : nullptr, misfit},
             Refused{"get with a key that does not fit", entity, GenericIf::OpGet, misfit, nullptr},
             Refused{"delete with a key that does not fit", entity, GenericIf::OpDel, misfit, nullptr},
             Refused{"set of a const generic", fixed, GenericIf::OpSet, isKeyed ? key : nullptr, nullptr},
             Refused{"delete of a const generic", fixed, GenericIf::OpDel, key, nullptr},
         }) {
      SCOPED_TRACE(r.what);
      Counts const before = countsOf(entity);
      EXPECT_THROW(r.on->attributeOp({attr.id(), r.code}, r.key, r.value), Vek::GenericException);
      EXPECT_EQ(before.writesSince(entity), 0U);
      EXPECT_EQ(before.readsSince(entity), 0U);
    }
  });
}

}  // namespace
