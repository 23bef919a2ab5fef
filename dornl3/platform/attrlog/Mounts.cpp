#include "dornl3/platform/attrlog/Mounts.h"

#include "dornl3/core/Throwers.h"
#include "dornl3/platform/attrlog/Connection.h"
#include "dornl3/platform/attrlog/ControlRecords.h"
#include "dornl3/platform/attrlog/EntityAdapter.h"
#include "dornl3/platform/vek/GenericIf.h"

#include <algorithm>

namespace Vek::NboAttrLog {

namespace {

// Those who mount an entity from here are told how it stands to its own owner.
void tellBelow(Entity& entity) {
  for (Demuxer* const demuxer : globalNboAttrLogDemuxerManager().nboDemuxerIterator()) {
    auto const adapter = entity.vekNboAttrLogSa(Ptr<Out const>(&demuxer->out()));
    if (!adapter || adapter->side() != StreamAdapter::Side::owner || adapter->nboAttrLogOut() == nullptr) continue;
    demuxer->out().hasSufficientBuffer() ? tellState(*adapter) : demuxer->schedule().stateIsDue(*adapter);
  }
}

// Whether one of these marks is that of a connection over which the entity goes out from here.
bool goesOutUnder(std::vector<U32> const& marks, Entity& entity) {
  for (Demuxer* const demuxer : globalNboAttrLogDemuxerManager().nboDemuxerIterator()) {
    if (std::find(marks.begin(), marks.end(), demuxer->adapters().tag()) == marks.end()) continue;
    auto const adapter = entity.vekNboAttrLogSa(Ptr<Out const>(&demuxer->out()));
    if (adapter && adapter->side() == StreamAdapter::Side::owner) return true;
  }
  return false;
}

constexpr char const* isACycle =
    "a cycle of mounts: what the peer has here has come from this very entity. Leave out one of the mounts.";

}  // namespace

void tellState(StreamAdapter& root) {
  Ptr<Entity> const entity = static_cast<Entity::VekNboAttrLogSa&>(root).vekNotifierEntity();
  if (!entity || root.nboAttrLogOut() == nullptr) return;
  sendState(*root.boundLog(), root.entityId(), Dir::stateOf(*entity) == Dir::inStep, cameThrough(*entity));
}

std::vector<U32> cameThrough(Entity const& entity) {
  for (Demuxer* const demuxer : globalNboAttrLogDemuxerManager().nboDemuxerIterator()) {
    Connection* const connection = demuxer->out().connection();
    if (connection == nullptr) continue;
    for (Ptr<Mount> const& mount : connection->mounts().mounts_) {
      if (mount->entity_ != &entity) continue;
      std::vector<U32> marks = mount->cameThrough_;
      marks.push_back(connection->peerTag());
      return marks;
    }
  }
  return {};
}

Mount::Mount(Name name, VekType const& type, Access access, Ptr<Dir> dir)
    : name_(std::move(name)), type_(type), access_(access), dir_(std::move(dir)) {}

Mount::~Mount() = default;

Ptr<Entity> Mount::writableEntity() const {
  if (access_ == Access::readOnly) {
    throw ReadOnlyException(format("%s is mounted read-only. Mount it writable to change it.", name_.charPtr()));
  }
  return entity_;
}

Ptr<GenericIf> Mount::generic() const {
  return entity_ ? VekType::genericIf(entity_.ptr(), access_ == Access::readOnly) : Ptr<GenericIf>{};
}

double Mount::lastWord() const noexcept {
  return connection_ != nullptr && lastWord_ != 0 ? std::max(lastWord_, connection_->lastHeard()) : lastWord_;
}

void Mount::barrier(Barriers::Answer answer) {
  Ptr<Entity::VekNboAttrLogSa> const adapter =
      connection_ != nullptr && entity_ ? entity_->vekNboAttrLogSa(connection_->out()) : nullptr;
  if (!adapter || state_ != Dir::inStep || connection_->state() != open) return answer(Barriers::Outcome::unknown);
  connection_->demuxer().barriers().request(*adapter, std::move(answer));
}

void Mount::linkStateIs(Dir::State state) {
  linkState_ = state;
  stateIs(state == Dir::inStep && !isUpstreamInStep_ ? Dir::stale : state);
}

void Mount::stateIs(Dir::State state) {
  if (Ptr<Dir::Entry> const entry = dir_->entry(name_); entry && entry->entity() == entity_) entry->stateIs(state);
  if (state == state_) return;
  state_ = state;
  if (entity_) tellBelow(*entity_);
  if (whenChanged_) whenChanged_(*this);
}

Ptr<Mount> Mounts::find(Name const& name) const {
  auto const at = std::find_if(mounts_.begin(), mounts_.end(), [&name](auto const& m) { return m->name() == name; });
  return at == mounts_.end() ? Ptr<Mount>{} : *at;
}

Ptr<Mount> Mounts::find(StreamAdapter const& adapter) const {
  auto const at = std::find_if(mounts_.begin(), mounts_.end(), [&adapter](auto const& mount) {
    return mount->entity_ && mount->entity_.ptr() == adapter.rawNotifier();
  });
  return at == mounts_.end() ? Ptr<Mount>{} : *at;
}

// Children are guarded as their root is: here those that stand, and each that comes when it is bound.
void Mounts::guardTree(Mount const& mount, bool armed) {
  if (!mount.entity_) return;
  mount.entity_->vekWriteGuardIs(armed);
  for (Ptr<StreamAdapter> const& adapter : connection_.demuxer().adapters().all()) {
    Ptr<Entity> const entity = static_cast<Entity::VekNboAttrLogSa&>(*adapter).vekNotifierEntity();
    Ptr<Entity> root = entity;
    while (root && !root->isRoot()) root = root->parent();
    if (root == mount.entity_) entity->vekWriteGuardIs(armed);
  }
}

void Mounts::mountIs(Ptr<Mount> const& mount) {
  if (find(mount->name())) throwInternalException(format("%s is mounted already", mount->name().charPtr()));
  if (connection_.state() >= closing) return;  // it is as if it had been lost with the connection
  mounts_.push_back(mount);
  mount->refusal_ = {};
  mount->connection_ = &connection_;
  if (connection_.state() == open) request(*mount);
}

void Mounts::mountDel(Mount& mount) {
  Ptr<Mount> const held(&mount);
  if (std::erase(mounts_, &mount) == 0) return;
  leave(mount);
  if (!mount.entity_) return;
  auto const adapter = mount.entity_->vekNboAttrLogSa(connection_.out());
  EntityId const id = adapter ? adapter->entityId() : EntityId{};
  if (adapter) {
    guardTree(mount, true);
    if (connection_.out()->bufferFlag()) sendGone(*connection_.out(), id);
    connection_.demuxer().unbind(*adapter);
  }
  mount.linkStateIs(Dir::stale);
  connection_.demuxer().barriers().rootLeft(id);
}

void Mounts::leave(Mount& mount) noexcept {
  mount.lastWord_ = mount.lastWord();
  mount.connection_ = nullptr;
}

void Mounts::request(Mount const& mount) {
  sendMount(*connection_.out(), mount.name(), String8(mount.type().fullName()), mount.access() == Access::writable);
}

void Mounts::opened() {
  for (Ptr<Mount> const& mount : mounts_) request(*mount);
}

void Mounts::ended() noexcept {
  for (Ptr<Mount> const& mount : std::vector<Ptr<Mount>>(std::exchange(mounts_, {}))) {
    leave(*mount);
    try {
      guardTree(*mount, true);
      if (mount->state_ != Dir::neverSynced) mount->linkStateIs(Dir::stale);
    } catch (std::exception const&) {
      // Whoever waits for the mount finds its state.
    }
  }
}

bool Mounts::announced(In& in) {
  if (connection_.out()->isUnread()) throw ProtocolException("more is announced than answers are read");
  String8 typeName;
  EntityId id;
  U32 arguments = 0;
  U32 argumentsEnd = 0;
  auto const needInside = [&in](U32 end) {
    if (in.position() > end) throw ProtocolException("a part of a record that is shorter than its fields");
  };
  while (!in.isAtLimit()) {
    U8 const section = in.nextU8();
    U32 const length = in.nextU32();
    U32 const begin = in.position();
    if (length > in.left()) throw ProtocolException("a part of a record that is longer than the record");
    if (section == typeSection) typeName = in.nextString();
    if (section == argumentsSection) {
      arguments = begin;
      argumentsEnd = begin + length;
    }
    if (section == idSection) id = in.nextEntityId();
    needInside(begin + length);
    in.positionIs(begin + length);
  }
  if (arguments == 0) throw ProtocolException("an entity that is announced without a name");
  if (!id.isAssigned() || id.tag() != connection_.peerTag()) {
    throw ProtocolException("an entity that is announced under an id that is not the peer's");
  }
  in.positionIs(arguments);
  Name const name(in.nextString());
  needInside(argumentsEnd);
  Ptr<Mount> const mount = find(name);
  if (!mount || !(typeName == String8(mount->type().fullName()))) return false;
  AdapterTable const& adapters = connection_.demuxer().adapters();
  StreamAdapter const* const holder = adapters.find(id);
  if (holder != nullptr && (!mount->entity_ || holder->rawNotifier() != mount->entity_.ptr())) {
    throw ProtocolException("an entity id that another entity has");
  }
  if (!adapters.takesOneMore(id, connection_.settings().limits.entities)) {
    throw ProtocolException("more entities than this end takes");
  }

  Ptr<Entity> entity = mount->dir_->entity(name);
  auto const present = entity ? entity->vekNboAttrLogSa(Ptr<Out const>(connection_.out())) : nullptr;
  if (present && present->side() == StreamAdapter::Side::owner) {
    in.phaseIs(In::Phase::applying);
    refuse(*mount, id, isACycle);
    return true;
  }
  if (!entity || entity->fwkType() != &mount->type()) {
    in.positionIs(arguments);
    entity = mount->type().newEntity(connection_.in(), {}, 1, nullptr);
    needInside(argumentsEnd);
    in.phaseIs(In::Phase::applying);
    mount->dir_->entryIs(entity);
  }
  in.phaseIs(In::Phase::applying);
  if (mount->entity_ != entity) {
    mount->stateBefore_ = mount->dir_->entry(name)->state();
    mount->wasGuarded_ = entity->vekIsWriteGuarded();
  }
  mount->entity_ = entity;
  mount->cameThrough_.clear();
  mount->lastWord_ = connection_.now();
  U32 flags = StreamAdapter::weakAdapter;
  if (mount->access() == Access::readOnly) flags |= StreamAdapter::readOnlyLocal;
  Ptr<Entity::VekNboAttrLogSa> const adapter =
      entity->vekNboAttrLogSaIs(PtrInterface::NotifieeConst::Vek_BitSet(flags), 1, connection_.out(), nullptr);
  adapter->sideIs(StreamAdapter::Side::replica);
  adapter->doEntityIdIs(id, connection_.demuxer(), true);
  entity->vekWriteGuardIs(true);
  mount->isUpstreamInStep_ = true;
  mount->linkStateIs(Dir::syncing);
  return true;
}

void Mounts::refused(Name const& name, String8 const& reason) {
  Ptr<Mount> const mount = find(name);
  if (!mount) return;
  mount->refusal_ = reason;
  if (mount->whenChanged_) mount->whenChanged_(*mount);
}

void Mounts::gone(EntityId id) {
  Ptr<StreamAdapter> const adapter = connection_.demuxer().adapters().find(id);
  if (!adapter || adapter->side() != StreamAdapter::Side::replica) return;
  Ptr<Mount> const mount = find(*adapter);
  if (mount) guardTree(*mount, true);
  connection_.demuxer().unbind(*adapter);
  connection_.demuxer().barriers().rootLeft(id);
  if (!mount) return;
  mount->linkStateIs(Dir::stale);
  // It may be exported again.
  if (find(mount->name()) == mount && connection_.state() == open) request(*mount);
}

void Mounts::syncModeReceived(StreamAdapter const& adapter) {
  if (Ptr<Mount> const mount = find(adapter)) {
    mount->lastWord_ = connection_.now();
    bool const isInStep = adapter.syncMode() == StreamAdapter::inStep;
    mount->linkState_ = isInStep ? Dir::inStep : Dir::syncing;
    settleState(*mount);
  }
}

void Mounts::settleState(Mount& mount) {
  bool const isInStep = mount.linkState_ == Dir::inStep && mount.isUpstreamInStep_;
  guardTree(mount, mount.access() == Access::readOnly || !isInStep);
  mount.linkStateIs(mount.linkState_);
}

void Mounts::upstreamIs(EntityId id, bool isInStep, std::vector<U32> cameThrough) {
  Ptr<StreamAdapter> const adapter = connection_.demuxer().adapters().find(id);
  Ptr<Mount> const mount = adapter ? find(*adapter) : Ptr<Mount>{};
  if (!mount) return;
  connection_.in()->phaseIs(In::Phase::applying);
  if (goesOutUnder(cameThrough, *mount->entity_)) return refuse(*mount, id, isACycle);
  if (cameThrough.size() > mostOfAChain) {
    return refuse(*mount, id, format("it has come through more than %u connections", static_cast<U32>(mostOfAChain)));
  }
  Dir::State const before = mount->state_;
  bool const cameAnotherWay = cameThrough != mount->cameThrough_;
  mount->cameThrough_ = std::move(cameThrough);
  mount->isUpstreamInStep_ = isInStep;
  settleState(*mount);
  if (cameAnotherWay && mount->state_ == before) tellBelow(*mount->entity_);
}

// The entity stands as it did before it was bound; the mount has none.
void Mounts::refuse(Mount& mount, EntityId id, String8 const& reason) {
  Ptr<Mount> const held(&mount);
  sendGone(*connection_.out(), id);
  if (Ptr<Entity> const entity = mount.entity_) {
    guardTree(mount, mount.wasGuarded_);
    if (Ptr<StreamAdapter> const adapter = connection_.demuxer().adapters().find(id)) {
      connection_.demuxer().unbind(*adapter);
    }
    connection_.demuxer().barriers().rootLeft(id);
    mount.entity_ = nullptr;
    if (Ptr<Dir::Entry> const entry = mount.dir_->entry(mount.name_)) entry->stateIs(mount.stateBefore_);
    tellBelow(*entity);
  }
  mount.cameThrough_.clear();
  mount.linkState_ = mount.state_ = Dir::neverSynced;
  refused(mount.name_, reason);
}

}  // namespace Vek::NboAttrLog
