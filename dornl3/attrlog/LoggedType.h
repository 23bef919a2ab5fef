// LoggedType: the record of an entity type whose entities can be made from what a log announces.
#pragma once

#include "dornl3/attrlog/ValueWire.h"
#include "dornl3/platform/vek/Entity.h"

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
};

}  // namespace Vek
