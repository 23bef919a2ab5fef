// NumberedWay: what an attribute does through the generic interface, by its number, in the form of TypedWay.
#pragma once

#include "tests/schema/Inventor.h"
#include "tests/schema/typedWay/TypedWay.h"

namespace TypedWay {

/// The operations that the registry promises of an attribute. Each call goes through a generic of its own.
class Numbered {
 public:
  explicit Numbered(Vek::VekAttr const& attr) : attr_(attr) {}

  Operations operations() const {
    Numbered const self = *this;
    Operations all;
    auto const flags = attr_.flags();
    if (flags.isCollection()) {
      all.count = [self](Entity const& e) {
        Generic const answer = self.op(e, Vek::GenericIf::OpCount);
        return *static_cast<Vek::U32 const*>(answer->voidPtrIs(answer->type()));
      };
    }
    if (flags.isInstantiating()) {
      self.addChildren(all);
    } else if (flags.isCollection()) {
      self.addElements(all);
    } else {
      all.get = [self](Entity const& e) { return text(self.op(e, Vek::GenericIf::OpGet)); };
      if (flags.isSettable()) {
        all.set = [self](Entity& e, Text const& value) { self.op(e, Vek::GenericIf::OpSet, {}, self.value(value)); };
      }
    }
    return all;
  }

 private:
  void addElements(Operations& all) const {
    Numbered const self = *this;
    all.getAt = [self](Entity const& e, Text const& key) {
      return text(self.op(e, Vek::GenericIf::OpGet, self.key(key)));
    };
    all.setAt = [self](Entity& e, Text const& key, Text const& value) {
      self.op(e, Vek::GenericIf::OpSet, self.key(key), self.value(value));
    };
    all.delAt = [self](Entity& e, Text const& key) { return text(self.op(e, Vek::GenericIf::OpDel, self.key(key))); };
    all.walk = [self](Entity const& e) {
      std::vector<std::pair<Text, Text>> members;
      for (auto it = self.begin(e); it; ++it) members.emplace_back(str(it.key()->strRep()), str(it.object()->strRep()));
      return members;
    };
  }

  void addChildren(Operations& all) const {
    Numbered const self = *this;
    auto const keyed = [self](Text const& key) {
      return self.attr_.flags().isCollection() ? self.key(key) : Generic{};
    };
    all.child = [self, keyed](Entity const& e, Text const& key) {
      return entity(self.op(e, Vek::GenericIf::OpGet, keyed(key)));
    };
    all.makeChild = [self](Entity& e, Text const& key) {
      return entity(self.op(e, Vek::GenericIf::OpSet, {}, listOf({self.key(key)})));
    };
    all.delChild = [self, keyed](Entity& e, Text const& key) {
      return entity(self.op(e, Vek::GenericIf::OpDel, keyed(key)));
    };
    if (!attr_.flags().isCollection()) return;
    all.walkChildren = [self](Entity const& e) {
      std::vector<std::pair<Text, Child>> members;
      for (auto it = self.begin(e); it; ++it) members.emplace_back(str(it.key()->strRep()), entity(it.object()));
      return members;
    };
  }

  Generic op(Entity const& e, int code, Generic const& key = {}, Generic const& value = {}) const {
    return generic(e)->attributeOp({attr_.id(), code}, key, value);
  }
  Vek::GenericIf::AttributeIterator begin(Entity const& e) const { return generic(e)->attributeIterator(attr_.id()); }
  Generic key(Text const& text) const { return valueOf(keyTypeOf(attr_), text); }
  Generic value(Text const& text) const { return valueOf(*attr_.valueType(), text); }

  static Generic generic(Entity const& e) { return Vek::VekType::genericIf(const_cast<Entity*>(&e), false); }
  static Text text(Generic const& generic) { return str(generic->strRep()); }
  static Child entity(Generic const& generic) {
    return Vek::ptrCast<Entity>(static_cast<Vek::GenericIfPtrInterface&>(*generic).obj());
  }

  Vek::VekAttr const& attr_;
};

}  // namespace TypedWay
