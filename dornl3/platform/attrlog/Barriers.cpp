#include "dornl3/platform/attrlog/Barriers.h"

#include "dornl3/platform/attrlog/ControlRecords.h"
#include "dornl3/platform/attrlog/Demuxer.h"
#include "dornl3/platform/attrlog/EntityAdapter.h"

#include <algorithm>
#include <exception>

namespace Vek::NboAttrLog {

namespace {

using Sa = Entity::VekNboAttrLogSa;

// A walk that stands in the middle has passed what is behind it: the next goes from the beginning.
constexpr int walksToBeSure = 2;

Ptr<Entity> rootOf(StreamAdapter& adapter) {
  Ptr<Entity> root = static_cast<Sa&>(adapter).vekNotifierEntity();
  while (root && !root->isRoot()) root = root->parent();
  return root;
}

// The adapter by which this process mounts the entity from another; null where it is its own.
Ptr<Sa> upstreamOf(Entity& entity, Demuxer const& downstream) {
  for (Demuxer* const demuxer : globalNboAttrLogDemuxerManager().nboDemuxerIterator()) {
    if (demuxer == &downstream) continue;
    auto const adapter = entity.vekNboAttrLogSa(Ptr<Out const>(&demuxer->out()));
    if (adapter && adapter->side() == StreamAdapter::Side::replica && adapter->nboAttrLogOut() != nullptr)
      return adapter;
  }
  return {};
}

}  // namespace

Barriers::~Barriers() = default;

void Barriers::request(StreamAdapter& root, Answer answer) {
  U64 const number = ++lastNumber_;
  park(root.entityId(), number, barrierRequest);
  waiting_.emplace(number, Waiting{root.entityId(), std::move(answer)});
}

void Barriers::park(EntityId root, U64 number, BarrierKind kind) {
  Parked parked{root, number, kind, {}};
  StreamAdapter* const adapter = demuxer_.adapters().find(root);
  if (Ptr<Entity> const entity = adapter != nullptr ? rootOf(*adapter) : nullptr) {
    for (Ptr<StreamAdapter> const& below : demuxer_.adapters().all()) {
      if (Schedule::isOwing(*below) && rootOf(*below) == entity) parked.debts.push_back({below, walksToBeSure});
    }
  }
  parked_.push_back(std::move(parked));
  demuxer_.out().due();
}

void Barriers::paid(StreamAdapter const& adapter, bool isClean) {
  for (Parked& parked : parked_) {
    std::erase_if(parked.debts, [&](Debt& debt) { return debt.adapter == &adapter && (isClean || --debt.walks == 0); });
  }
  if (isDue()) demuxer_.out().due();
}

void Barriers::grown(StreamAdapter& adapter) {
  Ptr<Entity> const entity = static_cast<Sa&>(adapter).vekNotifierEntity();
  Ptr<Entity> const parent = entity ? entity->parent() : nullptr;
  if (!parent) return;
  for (Parked& parked : parked_) {
    auto const isOf = [](Entity const* owner) {
      return [owner](Debt const& debt) { return debt.adapter->rawNotifier() == owner; };
    };
    bool const isBelow = std::any_of(parked.debts.begin(), parked.debts.end(), isOf(parent.ptr()));
    bool const isKnown = std::any_of(parked.debts.begin(), parked.debts.end(), isOf(entity.ptr()));
    if (isBelow && !isKnown) parked.debts.push_back({&adapter, walksToBeSure});
  }
}

bool Barriers::isDue() const noexcept {
  return std::any_of(parked_.begin(), parked_.end(), [](Parked const& parked) { return parked.debts.empty(); });
}

void Barriers::writeDue() {
  std::erase_if(parked_, [this](Parked const& parked) {
    if (!parked.debts.empty()) return false;
    sendBarrier(demuxer_.out(), parked.root, parked.number, parked.kind);
    if (parked.kind != barrierRequest) --ofThePeer_;
    return true;
  });
}

void Barriers::received(EntityId id, U64 number, BarrierKind kind) {
  if (kind == barrierRequest) return requested(id, number);
  answered(number, kind == barrierApplied ? Outcome::applied : Outcome::unknown);
}

void Barriers::requested(EntityId id, U64 number) {
  if (ofThePeer_ >= mostOfAPeer || demuxer_.out().isUnread()) {
    throw ProtocolException("more barriers are asked for than answers are read");
  }
  ++ofThePeer_;
  StreamAdapter* const adapter = demuxer_.adapters().find(id);
  Ptr<Entity> const entity = adapter != nullptr ? static_cast<Sa*>(adapter)->vekNotifierEntity() : nullptr;
  if (!entity) return park(id, number, barrierUnknown);
  Ptr<Sa> const upstream = adapter->side() == StreamAdapter::Side::owner ? upstreamOf(*entity, demuxer_) : nullptr;
  if (!upstream) return park(id, number, barrierApplied);
  upstream->streamDemuxer()->barriers().request(
      *upstream, [log = Ptr<Out>(&demuxer_.out()), id, number](Outcome outcome) {
        if (Demuxer* const demuxer = log->demuxer()) {
          demuxer->barriers().park(id, number, outcome == Outcome::applied ? barrierApplied : barrierUnknown);
        }
      });
}

void Barriers::answered(U64 number, Outcome outcome) {
  auto const at = waiting_.find(number);
  if (at == waiting_.end()) return demuxer_.skippedInc();
  Answer const answer = std::move(at->second.answer);
  waiting_.erase(at);
  answer(outcome);
}

void Barriers::rootLeft(EntityId id) {
  std::vector<U64> numbers;
  for (auto const& [number, waiting] : waiting_) {
    if (waiting.root == id) numbers.push_back(number);
  }
  std::erase_if(parked_, [id](Parked const& parked) { return parked.root == id && parked.kind == barrierRequest; });
  for (U64 const number : numbers) answered(number, Outcome::unknown);
}

void Barriers::ended() noexcept {
  parked_.clear();
  for (auto const& [number, waiting] : std::exchange(waiting_, {})) {
    try {
      waiting.answer(Outcome::unknown);
    } catch (std::exception const&) {
      // Whoever asked knows as much as there is to know.
    }
  }
}

}  // namespace Vek::NboAttrLog
