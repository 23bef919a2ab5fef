#include "dornl3/platform/attrlog/AdapterTable.h"

#include "dornl3/platform/attrlog/StreamAdapter.h"

#include <atomic>

namespace Vek::NboAttrLog {

class AdapterTable::Place final : public HashElement<EntityId, Ptr<StreamAdapter>> {
 public:
  using HashElement::HashElement;
};

AdapterTable::AdapterTable(U32 tag, U32 most) : tag_(tag), most_(most) {}
AdapterTable::~AdapterTable() = default;

void AdapterTable::search(EntityId id) const noexcept {
  Place const* const place = map_[id];
  last_ = place == nullptr ? nullptr : place->value().ptr();
  lastId_ = id;
}

void AdapterTable::count(EntityId id, int by) noexcept {
  if (!id.isAssigned()) return;
  U32& counter = isOurs(id) ? ours_ : foreign_;
  counter += static_cast<U32>(by);
}

void AdapterTable::enter(EntityId id, StreamAdapter& adapter) {
  last_ = nullptr;
  if (Place* const place = map_[id]) {
    place->valueIs(&adapter);
    return;
  }
  map_.newMember(make<Place>(id, Ptr<StreamAdapter>(&adapter)));
  count(id, 1);
}

Ptr<StreamAdapter> AdapterTable::take(EntityId id) {
  last_ = nullptr;
  Ptr<Place> const place = map_[id];
  if (!place) return {};
  map_.deleteMember(place);
  count(id, -1);
  return place->value();
}

void AdapterTable::takeAliases(StreamAdapter const& adapter) {
  for (Map::IteratorConst it(&map_); it; ++it) {
    if (it->value() == &adapter) take(it->key());
  }
}

std::vector<Ptr<StreamAdapter>> AdapterTable::all() const {
  std::vector<Ptr<StreamAdapter>> adapters;
  adapters.reserve(map_.count());
  for (Map::IteratorConst it(&map_); it; ++it) adapters.push_back(it->value());
  return adapters;
}

EntityId AdapterTable::newId() {
  constexpr U32 lastSequence = 0x7fffffff;
  if (ours_ >= most_ || sequence_ == lastSequence) {
    throw EntityIdUnavailableException(format("the peer takes no more than %u entities", most_));
  }
  return EntityId(U64{tag_} << 32 | U64{++sequence_} << 1 | 1);
}

EntityId AdapterTable::unassignedId() noexcept {
  static std::atomic<U64> last{0};
  return EntityId(last.fetch_add(2, std::memory_order_relaxed) + 2);
}

}  // namespace Vek::NboAttrLog
