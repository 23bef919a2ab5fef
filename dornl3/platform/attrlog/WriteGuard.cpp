#include "dornl3/platform/attrlog/WriteGuard.h"

#include "dornl3/platform/attrlog/Demuxer.h"
#include "dornl3/platform/attrlog/EntityAdapter.h"

namespace Vek {

using Sa = Entity::VekNboAttrLogSa;

namespace {

// The adapter by which an entity is mounted here; null when its connection has gone.
Ptr<Sa> replicaAdapter(Entity const& entity) {
  for (NboAttrLog::Demuxer* const demuxer : globalNboAttrLogDemuxerManager().nboDemuxerIterator()) {
    for (Ptr<StreamAdapter> const& adapter : demuxer->adapters().all()) {
      Ptr<Sa> const found = static_cast<Sa*>(adapter.ptr());
      if (found->side() == StreamAdapter::Side::replica && found->rawNotifier() == &entity) return found;
    }
  }
  return {};
}

}  // namespace

void Entity::vekWriteGuarded(AttributeId attr) {
  if ((guard_ & guardPass) != 0) {
    guard_ = static_cast<U8>(guard_ & ~guardPass);
    return;
  }
  Ptr<Sa> const adapter = replicaAdapter(*this);
  String8 const what = fullName() + "." + attributeString(attr);
  if (adapter && adapter->hasFlag(StreamAdapter::readOnlyLocal)) {
    throw ReadOnlyException(
        format("%s is mounted read-only here. Mount it writable, or change it where it lives.", what.charPtr()));
  }
  throw ReadOnlyException(
      format("%s is not in step with its owner, who would not hear of the change. Try again when the mount is in step.",
             what.charPtr()));
}

}  // namespace Vek
