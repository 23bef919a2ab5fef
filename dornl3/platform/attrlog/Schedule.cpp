#include "dornl3/platform/attrlog/Schedule.h"

#include "dornl3/platform/attrlog/Demuxer.h"
#include "dornl3/platform/attrlog/Mounts.h"

#include <algorithm>

namespace Vek::NboAttrLog {

namespace {

constexpr U32 failuresInARow = 3;

bool maySend(StreamAdapter const& adapter) noexcept {
  return !adapter.isKeptSilent() && adapter.hasFlag(StreamAdapter::logEnabled);
}

}  // namespace

bool Schedule::isOwing(StreamAdapter const& adapter) noexcept {
  return (adapter.flowOut() || adapter.owesAll_) && maySend(adapter);
}

void Schedule::queue(StreamAdapter& adapter) {
  if (adapter.place_ == StreamAdapter::Place::queued) return;
  leavePlace(adapter);
  queue_.emplace_back(&adapter);
  adapter.place_ = StreamAdapter::Place::queued;
  out_.due();
}

void Schedule::marked(StreamAdapter& adapter) {
  if (adapter.place_ == StreamAdapter::Place::blocked || adapter.place_ == StreamAdapter::Place::none) queue(adapter);
}

void Schedule::oweEverything(StreamAdapter& adapter) noexcept {
  adapter.owesAll_ = true;
  try {
    queue(adapter);
  } catch (...) {
    mustSearch_ = true;
    out_.due();
  }
}

void Schedule::unblock() {
  std::vector<Ptr<StreamAdapter>> const blocked = std::exchange(blocked_, {});
  for (Ptr<StreamAdapter> const& adapter : blocked) {
    adapter->place_ = StreamAdapter::Place::none;
    queue(*adapter);
  }
}

void Schedule::remove(StreamAdapter& adapter) noexcept {
  std::erase(inStepDue_, &adapter);
  std::erase(stateDue_, &adapter);
  leavePlace(adapter);
}

void Schedule::leavePlace(StreamAdapter& adapter) noexcept {
  switch (std::exchange(adapter.place_, StreamAdapter::Place::none)) {
  case StreamAdapter::Place::queued: std::erase(queue_, &adapter); break;
  case StreamAdapter::Place::blocked: std::erase(blocked_, &adapter); break;
  case StreamAdapter::Place::aside: std::erase(aside_, &adapter); break;
  case StreamAdapter::Place::none: break;
  }
}

void Schedule::clear() noexcept {
  for (auto const& adapter : queue_) adapter->place_ = StreamAdapter::Place::none;
  for (auto const& adapter : blocked_) adapter->place_ = StreamAdapter::Place::none;
  for (auto const& adapter : aside_) adapter->place_ = StreamAdapter::Place::none;
  queue_.clear();
  blocked_.clear();
  aside_.clear();
  inStepDue_.clear();
  stateDue_.clear();
}

void Schedule::turn(U32 budget) {
  if (isRunning_) return;
  struct Running {
    explicit Running(Schedule& s, U64 end) noexcept : schedule(s) {
      schedule.isRunning_ = true;
      schedule.end_ = end;
    }
    ~Running() {
      schedule.isRunning_ = false;
      schedule.end_ = std::numeric_limits<U64>::max();
    }
    Running(Running const&) = delete;
    Running& operator=(Running const&) = delete;
    Schedule& schedule;
  } const running{*this, out_.written() + budget};

  if (mustSearch_) {
    for (Ptr<StreamAdapter> const& adapter : adapters_.all()) {
      if (adapter->owesAll_) queue(*adapter);
    }
    mustSearch_ = false;
  }
  for (Ptr<StreamAdapter> const& adapter : std::exchange(aside_, {})) {
    adapter->place_ = StreamAdapter::Place::none;
    if (maySend(*adapter)) adapter->owesAll_ = true;  // what it was not to send was not marked either
    queue(*adapter);
  }
  for (std::size_t left = queue_.size(); left > 0 && !queue_.empty() && mayGoOn(); --left) {
    Ptr<StreamAdapter> const adapter = std::move(queue_.front());
    queue_.pop_front();
    adapter->place_ = StreamAdapter::Place::none;
    visit(*adapter);
  }
  writeInStep();
  writeStates();
}

void Schedule::visit(StreamAdapter& adapter) {
  Demuxer* const demuxer = adapter.streamDemuxer();
  if (demuxer == nullptr) return;
  if (!maySend(adapter)) {
    if (Ptr<FlowOut> const flowOut = adapter.flowOut(); flowOut && flowOut->isFull()) walkEnded(adapter, *flowOut);
    aside_.emplace_back(&adapter);
    adapter.place_ = StreamAdapter::Place::aside;
    demuxer->barriers().walked(adapter, true);
    return;
  }
  if (adapter.owesAll_) {
    adapter.owesAll_ = false;
    adapter.doThis();
  }
  Ptr<FlowOut> const flowOut = adapter.flowOut();
  if (!flowOut) return;
  U64 const writtenBefore = out_.written();
  AttributeId const before = flowOut->resume();
  AttributeId next = 0;
  try {
    next = adapter.handleAttrFlowOut(before);
    failures_ = 0;
  } catch (std::exception const& error) {
    flowOut->resumeIs(flowOut->attrId());
    if (++failures_ == failuresInARow) failure_ = format("writing failed three times: %s", error.what());
    queue(adapter);
    return;
  }
  if (adapter.flowOut() != flowOut) return;
  if (next == 0 && flowOut->isFull()) walkEnded(adapter, *flowOut);
  bool const isClean = next == 0 && !flowOut->hasDirtyAttributes();
  if (next == 0 && flowOut->waiting() == 0 && !demuxer->holdsBack(adapter))
    demuxer->barriers().walked(adapter, isClean);
  if (isClean) {
    adapter.freeResyncState(*flowOut);
    adapter.flowOut_ = nullptr;
    adapter.flagsIs(StreamAdapter::noFlowOut, true);
    return;
  }
  flowOut->resumeIs(next);
  if (out_.written() != writtenBefore || next != before) {
    queue(adapter);
  } else if (adapter.place_ == StreamAdapter::Place::none) {
    blocked_.emplace_back(&adapter);
    adapter.place_ = StreamAdapter::Place::blocked;
  }
}

// Changes behind the walk do not put it off.
void Schedule::walkEnded(StreamAdapter& adapter, FlowOut& flowOut) {
  flowOut.isFullIs(false);
  adapter.walkEnded();
}

void Schedule::inStepIs(StreamAdapter& root) {
  inStepDue_.emplace_back(&root);
  out_.due();
}

void Schedule::stateIsDue(StreamAdapter& root) {
  if (std::find(stateDue_.begin(), stateDue_.end(), &root) == stateDue_.end()) stateDue_.emplace_back(&root);
  out_.due();
}

void Schedule::writeStates() {
  while (!stateDue_.empty() && out_.hasSufficientBuffer()) {
    Ptr<StreamAdapter> const adapter = std::move(stateDue_.front());
    stateDue_.erase(stateDue_.begin());
    tellState(*adapter);
  }
}

void Schedule::writeInStep() {
  while (!inStepDue_.empty() && out_.hasSufficientBuffer()) {
    Ptr<StreamAdapter> const adapter = std::move(inStepDue_.front());
    inStepDue_.erase(inStepDue_.begin());
    adapter->sendSyncMode(StreamAdapter::inStep);
  }
}

}  // namespace Vek::NboAttrLog
