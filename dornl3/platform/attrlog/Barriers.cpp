#include "dornl3/platform/attrlog/Barriers.h"

#include "dornl3/platform/attrlog/ControlRecords.h"
#include "dornl3/platform/attrlog/Demuxer.h"
#include "dornl3/platform/attrlog/EntityAdapter.h"
#include "dornl3/platform/vek/Dir.h"

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

void tell(std::vector<Barriers::Answer> const& answers, Barriers::Outcome outcome) noexcept {
  for (Barriers::Answer const& answer : answers) {
    try {
      if (answer) answer(outcome);
    } catch (std::exception const&) {
      // Whoever asked knows as much as there is to know.
    }
  }
}

}  // namespace

Barriers::~Barriers() = default;

void Barriers::request(StreamAdapter& root, Answer answer) {
  U64 const number = ++lastNumber_;
  waiting_.emplace(number, Waiting{root.entityId(), std::move(answer)});
  wanted_.push_back(number);
  askNext();
}

void Barriers::askNext() {
  while (asked_ < mostUnanswered && !wanted_.empty()) {
    U64 const number = wanted_.front();
    wanted_.pop_front();
    auto const at = waiting_.find(number);
    if (at == waiting_.end()) continue;  // its root has left
    ++asked_;
    park(at->second.root, {number, barrierRequest});
  }
}

void Barriers::park(EntityId root, Parked parked) {
  Line& line = lines_[root];
  if (line.first.empty()) line.debts = debtsOf(root);
  (line.first.empty() ? line.first : line.behind).push_back(parked);
  demuxer_.out().due();
}

Barriers::Debts Barriers::debtsOf(EntityId root) const {
  Debts debts;
  StreamAdapter* const adapter = demuxer_.adapters().find(root);
  Ptr<Entity> const entity = adapter != nullptr ? rootOf(*adapter) : nullptr;
  if (!entity || (!demuxer_.schedule().isOwing() && !demuxer_.hasFlowIns())) return debts;
  for (Ptr<StreamAdapter> const& below : demuxer_.adapters().all()) {
    bool const owes = Schedule::isOwing(*below) || demuxer_.holdsBack(*below);
    if (owes && rootOf(*below) == entity) debts.emplace(below.ptr(), Debt{below, walksToBeSure});
  }
  return debts;
}

void Barriers::paid(StreamAdapter const& adapter, bool isClean) {
  for (auto& [root, line] : lines_) {
    auto const at = line.debts.find(&adapter);
    if (at != line.debts.end() && (isClean || --at->second.walks == 0)) line.debts.erase(at);
  }
  if (isDue()) demuxer_.out().due();
}

void Barriers::grown(StreamAdapter& adapter) {
  Ptr<Entity> const entity = static_cast<Sa&>(adapter).vekNotifierEntity();
  Ptr<Entity> const parent = entity ? entity->parent() : nullptr;
  Ptr<Sa> const above = parent ? parent->vekNboAttrLogSa(Ptr<Out const>(&demuxer_.out())) : nullptr;
  if (!above) return;
  for (auto& [root, line] : lines_) {
    if (line.debts.contains(above.ptr())) line.debts.try_emplace(&adapter, Debt{&adapter, walksToBeSure});
  }
}

bool Barriers::isDue() const noexcept {
  return std::any_of(lines_.begin(), lines_.end(), [](auto const& line) { return line.second.debts.empty(); });
}

void Barriers::writeDue() {
  for (auto at = lines_.begin(); at != lines_.end();) {
    auto& [root, line] = *at;
    while (line.debts.empty() && !line.first.empty()) {
      for (Parked const& parked : line.first) write(root, parked);
      line.first = std::exchange(line.behind, {});
      if (!line.first.empty()) line.debts = debtsOf(root);
    }
    at = line.first.empty() ? lines_.erase(at) : std::next(at);
  }
}

void Barriers::write(EntityId root, Parked const& parked) {
  sendBarrier(demuxer_.out(), root, parked.number, parked.kind);
  if (parked.kind == barrierRequest) {
    waiting_.at(parked.number).isWritten = true;
  } else {
    --ofThePeer_;
  }
}

void Barriers::received(EntityId id, U64 number, BarrierKind kind) {
  if (kind == barrierRequest) return requested(id, number);
  answered(number, kind == barrierApplied ? Outcome::applied : Outcome::unknown);
}

void Barriers::requested(EntityId id, U64 number) {
  if (ofThePeer_ >= mostUnanswered || demuxer_.out().isUnread()) {
    throw ProtocolException("more barriers are asked for than answers are read");
  }
  ++ofThePeer_;
  StreamAdapter* const adapter = demuxer_.adapters().find(id);
  Ptr<Entity> const root = adapter != nullptr ? rootOf(*adapter) : nullptr;
  bool const isMirrored = root && adapter->side() == StreamAdapter::Side::owner;
  // A replica that is out of step has refused what was written to it.
  if (!root || (isMirrored && Dir::stateOf(*root) != Dir::inStep)) return park(id, {number, barrierUnknown});
  Ptr<Sa> const upstream = isMirrored ? upstreamOf(*root, demuxer_) : nullptr;
  if (!upstream) return park(id, {number, barrierApplied});
  upstream->streamDemuxer()->barriers().request(
      *upstream, [log = Ptr<Out>(&demuxer_.out()), id, number](Outcome outcome) {
        if (Demuxer* const demuxer = log->demuxer()) {
          demuxer->barriers().park(id, {number, outcome == Outcome::applied ? barrierApplied : barrierUnknown});
        }
      });
}

void Barriers::answered(U64 number, Outcome outcome) {
  auto const at = waiting_.find(number);
  if (at == waiting_.end() || !at->second.isWritten) return demuxer_.skippedInc();
  Answer const answer = std::move(at->second.answer);
  waiting_.erase(at);
  --asked_;
  askNext();
  if (answer) answer(outcome);
}

void Barriers::rootLeft(EntityId id) {
  if (auto const at = lines_.find(id); at != lines_.end()) {
    for (auto* const records : {&at->second.first, &at->second.behind}) {
      asked_ -= std::erase_if(*records, [](Parked const& parked) { return parked.kind == barrierRequest; });
    }
    if (at->second.first.empty()) at->second.first = std::exchange(at->second.behind, {});
    if (at->second.first.empty()) lines_.erase(at);
  }
  std::vector<Answer> answers;
  for (auto at = waiting_.begin(); at != waiting_.end();) {
    bool const isOver = at->second.root == id;
    if (isOver) answers.push_back(std::exchange(at->second.answer, nullptr));
    at = isOver && !at->second.isWritten ? waiting_.erase(at) : std::next(at);
  }
  askNext();
  tell(answers, Outcome::unknown);
}

void Barriers::ended() noexcept {
  lines_.clear();
  wanted_.clear();
  std::vector<Answer> answers;
  for (auto& [number, waiting] : std::exchange(waiting_, {})) answers.push_back(std::move(waiting.answer));
  tell(answers, Outcome::unknown);
}

}  // namespace Vek::NboAttrLog
