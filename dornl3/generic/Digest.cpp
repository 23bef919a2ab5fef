#include "dornl3/generic/Digest.h"

#include "dornl3/platform/vek/Builtin.h"
#include "dornl3/platform/vek/GenericIfEntity.h"

#include <bit>
#include <cmath>
#include <limits>

namespace Vek {

namespace {

class Digest {
 public:
  void entity(GenericIf const& generic) {
    VekType const& type = *generic.type();
    text(type.fullName());
    for (auto const& attr : type.attributes()) {
      if (isOwn(type, *attr)) attribute(generic, *attr);
    }
  }

  [[nodiscard]] U64 result() const noexcept { return state_; }

 private:
  void attribute(GenericIf const& holder, VekAttr const& attr) {
    word(attr.id());
    if (attr.flags().isCollection()) {
      collection(holder, attr);
    } else if (attr.flags().isInstantiating()) {
      child(*get(holder, attr));
    } else {
      value(*get(holder, attr));
    }
  }

  void collection(GenericIf const& holder, VekAttr const& attr) {
    U64 count = 0;
    for (auto it = holder.attributeIteratorConst(attr.id()); it; ++it, ++count) {
      value(*it.key());
      Ptr<GenericIf const> const member = it.object();
      attr.flags().isInstantiating() ? entity(*member) : value(*member);
    }
    word(count);
  }

  void child(GenericIf& generic) {
    auto const object = static_cast<GenericIfPtrInterface&>(generic).obj();
    word(object ? 1 : 0);
    if (!object) return;
    text(static_cast<Entity const&>(*object).name());
    entity(generic);
  }

  void value(GenericIf const& generic) {
    VekType const* const type = generic.type();
    if (!type->attributes().empty()) {
      for (auto const& attr : type->attributes()) value(*get(generic, *attr));
    } else if (type == Builtin<Seconds>::_fwkType()) {
      number(*static_cast<double const*>(generic.voidPtrIs(type)));
    } else {
      text(generic.strRep());
    }
  }

  // Reading changes nothing, but the operation that reads is the one that sets, too.
  static Ptr<GenericIf> get(GenericIf const& holder, VekAttr const& attr) {
    return const_cast<GenericIf&>(holder).attributeOp({attr.id(), GenericIf::OpGet}, nullptr, nullptr);
  }

  void number(double n) noexcept {
    if (std::isnan(n)) n = std::numeric_limits<double>::quiet_NaN();
    if (n == 0) n = 0;  // of both zeros the positive one
    word(std::bit_cast<U64>(n));
  }

  void text(std::string_view bytes) noexcept {
    word(bytes.size());
    U64 packed = 0;
    unsigned shift = 0;
    for (char const c : bytes) {
      packed |= U64{static_cast<unsigned char>(c)} << shift;
      shift += 8;
      if (shift < 64) continue;
      word(packed);
      packed = 0;
      shift = 0;
    }
    if (shift != 0) word(packed);
  }

  // Each step is a permutation of the state for a given word, and of the word for a given state.
  void word(U64 w) noexcept {
    state_ ^= w;
    state_ ^= state_ >> 32;
    state_ *= 0xd6e8feb86659fd93;
    state_ ^= state_ >> 32;
    state_ *= 0xd6e8feb86659fd93;
    state_ ^= state_ >> 32;
  }

  U64 state_ = 0x9e3779b97f4a7c15;
};

}  // namespace

U64 digest(Entity const& entity) {
  Digest digest;
  digest.entity(*VekType::genericIf(const_cast<Entity*>(&entity), true));
  return digest.result();
}

}  // namespace Vek
