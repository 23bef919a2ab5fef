// LoggedType: the record of an entity type whose entities can be made from what a log announces.
#pragma once

#include "dornl3/attrlog/LogSlots.h"
#include "dornl3/attrlog/ValueWire.h"
#include "dornl3/platform/attrlog/EntityAdapter.h"
#include "dornl3/platform/vek/Entity.h"

#include <cassert>
#include <tuple>

namespace Vek {

namespace detail {

template <class A>
[[nodiscard]] auto constructorArgument(NboAttrLog::In& in) {
  if constexpr (A::flags == VekAttr::AttrFlags::fixed()) {
    return std::tuple<typename A::Value>{nextField<typename A::Value>(in)};
  } else {
    return std::tuple<>{};
  }
}

// Braces: the arguments are read in their order.
template <class X, class... A>
[[nodiscard]] Ptr<X> entityFromLog(NboAttrLog::In& in, List<A...>) {
  struct {
    Name name;
    std::tuple<decltype(constructorArgument<A>(in))...> fixed;
  } arguments{Name(in.nextString()), {constructorArgument<A>(in)...}};
  return std::apply(
      [&](auto&&... each) {
        return std::apply([&](auto&&... fixed) { return make<X>(arguments.name, fixed...); }, std::tuple_cat(each...));
      },
      arguments.fixed);
}

}  // namespace detail

/// `Frame`: the record's frame, EntityType or what derives from it.
template <class Frame>
class LoggedType : public Frame {
 public:
  using Frame::newEntity;
  [[nodiscard]] Ptr<Entity> newEntity(Ptr<NboAttrLog::In> const& in, PtrInterface::NotifieeConst::Vek_BitSet, U32,
                                      PtrInterface*) const override {
    return detail::entityFromLog<typename Frame::Subject>(*in, typename Frame::Attr::All{});
  }

  void childAttrLogIs(VekAttr const& attr, Ptr<Entity> const& child, Ptr<NboAttrLog::Out> const& out) const override {
    bool known = false;
    forEach(typename Frame::Attr::All{}, [&](auto attribute) {
      using A = decltype(attribute);
      if constexpr (isLogged<A> && holdsChildren<A>) {
        if (known || !(attr.name() == A::name)) return;
        known = true;
        bindAsChild<A>(child, out);
      }
    });
    if (!known) Frame::childAttrLogIs(attr, child, out);
  }

 private:
  template <class A>
  static void bindAsChild(Ptr<Entity> const& child, Ptr<NboAttrLog::Out> const& out) {
    using Sa = typename Frame::Subject::VekNboAttrLogSa;
    constexpr U32 kept = PtrInterface::NotifieeConst::Vek_BitSet::notificationBitMask() & ~U32{0x400};
    auto const adapter = ptrCast<Sa>(child->parent()->vekNboAttrLogSa(Ptr<NboAttrLog::Out const>(out)));
    // Bits that stand while a record is applied would make the child's adapter take part in it.
    PtrInterface::NotifieeConst::Vek_BitSet const flags(kept & adapter->flags());
    assert(!adapter->hasFlag(StreamAdapter::entityReactorActive | StreamAdapter::resyncStale |
                             StreamAdapter::syncModeRelay));
    ((*adapter).*A::logBind)(flags, ptrCast<typename A::Child>(child), 1, adapter->boundLog(), adapter->channel());
  }
};

}  // namespace Vek
