// EntityBinding: how the adapters of an entity are found, by the entity's list of reactors. What does not depend on the
// entity's type of the operations that each type has.
// Thread: the entity's. Re-entrancy: these call nobody.
#pragma once

#include "dornl3/core/ReactorChain.h"
#include "dornl3/platform/attrlog/EntityAdapter.h"

namespace Vek {

/// The adapter of an entity, whose reactors these are, for `out`; null without one. With a null `out` one that is known
/// on a live connection by an assigned id, or one that has no log.
[[nodiscard]] Ptr<Entity::VekNboAttrLogSa> logAdapterOf(Entity const& entity, ReactorChain const& reactors,
                                                        Ptr<NboAttrLog::Out const> const& out);
/// Another adapter of the entity that shares a message channel with `adapter`; null without one.
[[nodiscard]] Ptr<Entity::VekNboAttrLogSa> channelSiblingOf(ReactorChain const& reactors,
                                                            Ptr<Entity::VekNboAttrLogSa> const& adapter);
/// Takes an entity's adapter for `out` from its demuxer, and gives it; null where either is missing.
Ptr<Entity::VekNboAttrLogSa> logAdapterDel(Entity& entity, Ptr<NboAttrLog::Out const> const& out);

/// The adapter of an entity for `out`, with these flags, if it is of the entity's own class. One of another class
/// leaves the log. Null where one is to be made. Throws RangeException for a null log.
[[nodiscard]] Ptr<Entity::VekNboAttrLogSa> boundToLog(Entity& entity, bool (*isOwn)(Entity::VekNboAttrLogSa& adapter),
                                                      PtrInterface::NotifieeConst::Vek_BitSet flags,
                                                      Ptr<NboAttrLog::Out> const& out);
/// The entity of a reactor adapter goes.
void logReactorEnds(PtrInterface::NotifieeConst& reactor, Entity::VekNboAttrLogSa* adapter);

}  // namespace Vek
