#include "dornl3/platform/attrlog/Exports.h"

#include "dornl3/core/Throwers.h"
#include "dornl3/platform/attrlog/Connection.h"
#include "dornl3/platform/attrlog/ControlRecords.h"
#include "dornl3/platform/attrlog/EntityAdapter.h"
#include "dornl3/platform/vek/Dir.h"

#include <algorithm>

namespace Vek::NboAttrLog {

namespace {

// A replica is exported no more writable than it is mounted.
bool isMountedReadOnly(Entity& entity) {
  for (Demuxer* const demuxer : globalNboAttrLogDemuxerManager().nboDemuxerIterator()) {
    auto const adapter = entity.vekNboAttrLogSa(Ptr<Out const>(&demuxer->out()));
    if (adapter && adapter->hasFlag(StreamAdapter::readOnlyLocal)) return true;
  }
  return false;
}

}  // namespace

void Exports::needExportable(Entity& entity) {
  if (entity.isRoot() && entity.vekHasAttrLogInterface()) return;
  throwInternalException(
      format("%s cannot be exported: only entities without parent are", entity.fullName().charPtr()));
}

void Exports::exportIs(Ptr<Entity> const& entity, Access access, Delivery delivery) {
  needExportable(*entity);
  auto const other = exports_.find(entity->name());
  if (other != exports_.end() && other->second.entity != entity) exportDel(entity->name());
  Export& exported = exports_[entity->name()];
  exported = {entity, access, delivery};
  auto const wanted = std::find_if(waiting_.begin(), waiting_.end(),
                                   [&entity](Request const& request) { return request.name == entity->name(); });
  if (wanted == waiting_.end()) return;
  Request const request = *wanted;
  waiting_.erase(wanted);
  announce(exported, request);
}

void Exports::exportDel(Name const& name) {
  auto const at = exports_.find(name);
  if (at == exports_.end()) return;
  Ptr<Entity> const entity = at->second.entity;
  exports_.erase(at);
  Ptr<Out> const out = connection_.out();
  Ptr<Entity::VekNboAttrLogSa> const adapter = entity->vekNboAttrLogSa(out);
  if (!adapter) return;
  EntityId const id = adapter->entityId();
  if (out->bufferFlag()) sendGone(*out, id);
  connection_.demuxer().unbind(*adapter);
  connection_.demuxer().barriers().rootLeft(id);
}

void Exports::mountRequested(Name const& name, String8 const& typeName, Access access) {
  if (connection_.out()->isUnread()) throw ProtocolException("more mounts are asked for than answers are read");
  auto const at = exports_.find(name);
  if (at != exports_.end()) {
    Export const exported = at->second;
    announce(exported, {name, typeName, access});
  } else if (waiting_.size() >= connection_.settings().limits.waitingMounts) {
    sendRefused(*connection_.out(), name, "too many mounts wait for an entity that is not there");
  } else {
    std::erase_if(waiting_, [&name](Request const& request) { return request.name == name; });
    waiting_.push_back({name, typeName, access});
  }
}

void Exports::announce(Export const& exported, Request const& request) {
  Ptr<Out> const out = connection_.out();
  Entity& entity = *exported.entity;
  String8 const typeName(entity.fwkType()->fullName());
  if (!(typeName == request.typeName)) {
    sendRefused(*out, request.name, format("it is a %s, not a %s", typeName.charPtr(), request.typeName.charPtr()));
    return;
  }
  bool const isReadOnly = exported.access == Access::readOnly || isMountedReadOnly(entity);
  if (request.access == Access::writable && isReadOnly) {
    sendRefused(*out, request.name, "it may be mounted read-only");
    return;
  }
  if (entity.vekNboAttrLogSa(out)) {
    sendRefused(*out, request.name, "it is mounted over this connection already");
    return;
  }
  U32 flags = StreamAdapter::weakAdapter;
  if (request.access == Access::readOnly) flags |= StreamAdapter::readOnlyRemote;
  if (exported.delivery == Delivery::conflated) flags |= StreamAdapter::flowOutForced;
  auto const adapter = entity.vekNboAttrLogSaIs(PtrInterface::NotifieeConst::Vek_BitSet(flags), 1, out, nullptr);
  adapter->sideIs(StreamAdapter::Side::owner);
  adapter->isMountRootIs(true);
  try {
    adapter->doAssignEntityId();
  } catch (EntityIdUnavailableException const& error) {
    connection_.demuxer().unbind(*adapter);
    sendRefused(*out, request.name, error.message());
    return;
  }
  adapter->doSerializeOrphan();
  // A replica is exported no more in step than it is mounted.
  bool const isInStep = Dir::stateOf(entity) == Dir::inStep;
  std::vector<U32> const through = cameThrough(entity);
  if (!isInStep || !through.empty()) sendState(*out, adapter->entityId(), isInStep, through);
}

bool Exports::gone(EntityId id) {
  Ptr<StreamAdapter> const adapter = connection_.demuxer().adapters().find(id);
  if (!adapter || adapter->side() != StreamAdapter::Side::owner || !adapter->isMountRoot()) return false;
  connection_.demuxer().unbind(*adapter);
  connection_.demuxer().barriers().rootLeft(id);
  return true;
}

void Exports::barrier(Name const& name, Barriers::Answer answer) {
  auto const at = exports_.find(name);
  Ptr<Entity::VekNboAttrLogSa> const adapter =
      at == exports_.end() ? nullptr : at->second.entity->vekNboAttrLogSa(connection_.out());
  if (!adapter || connection_.state() != open) return answer(Barriers::Outcome::unknown);
  connection_.demuxer().barriers().request(*adapter, std::move(answer));
}

void Exports::ended() noexcept { waiting_.clear(); }

}  // namespace Vek::NboAttrLog
