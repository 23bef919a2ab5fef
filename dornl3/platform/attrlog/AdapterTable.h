// AdapterTable: the adapters of one connection by entity id, and the ids that this end gives out.
// Owner: the demuxer. It is what keeps an adapter alive. Thread: the connection's.
#pragma once

#include "dornl3/core/HashMap.h"
#include "dornl3/platform/attrlog/EntityId.h"

#include <vector>

namespace Vek {

class StreamAdapter;

namespace NboAttrLog {

class AdapterTable {
 public:
  /// `tag` marks the ids that this end gives out; at most `most` of them at a time.
  AdapterTable(U32 tag, U32 most);
  ~AdapterTable();
  AdapterTable(AdapterTable const&) = delete;
  AdapterTable& operator=(AdapterTable const&) = delete;

  /// The adapter of that id, or null.
  [[nodiscard]] StreamAdapter* find(EntityId id) const noexcept {
    if (last_ == nullptr || !(lastId_ == id)) search(id);
    return last_;
  }
  /// Enters an adapter under an id, in the place of what stands there.
  void enter(EntityId id, StreamAdapter& adapter);
  /// Takes out what stands under an id; null where nothing does.
  Ptr<StreamAdapter> take(EntityId id);
  [[nodiscard]] bool isEmpty() const noexcept { return map_.count() == 0; }
  /// Takes out an adapter wherever it stands.
  void takeAliases(StreamAdapter const& adapter);
  /// All of them, held.
  [[nodiscard]] std::vector<Ptr<StreamAdapter>> all() const;

  /// An id that nobody has. Throws EntityIdUnavailableException where the peer takes no more.
  [[nodiscard]] EntityId newId();
  /// What the peer allows.
  void mostIs(U32 most) noexcept { most_ = most; }
  [[nodiscard]] U32 tag() const noexcept { return tag_; }
  /// Whether an id was given out by this end.
  [[nodiscard]] bool isOurs(EntityId id) const noexcept { return id.isAssigned() && id.tag() == tag_; }
  /// Whether it is one that this end has given out, whatever has become of it.
  [[nodiscard]] bool wasGivenOut(EntityId id) const noexcept { return isOurs(id) && id.hash() - 1 < sequence_; }
  [[nodiscard]] U32 foreign() const noexcept { return foreign_; }
  /// Whether the peer may bind one more by that id, if it may have `most`. As many again may be on their way out: it
  /// gives an id to another before its word that the first has gone is written, and says those of this end's again
  /// though they have gone here.
  [[nodiscard]] bool takesOneMore(EntityId id, U32 most) const noexcept {
    return (isOurs(id) ? ours_ : foreign_) < U64{2} * most;
  }

  /// An even id, unique in the process, for an adapter that has none yet.
  [[nodiscard]] static EntityId unassignedId() noexcept;

 private:
  class Place;
  using Map = HashMap<Place, EntityId, Ptr<StreamAdapter>>;
  void count(EntityId id, int by) noexcept;
  void search(EntityId id) const noexcept;

  U32 tag_;
  U32 most_;
  U32 ours_ = 0;
  U32 foreign_ = 0;
  U32 sequence_ = 0;
  HashMap<Place, EntityId, Ptr<StreamAdapter>> map_;
  // What was found last: several records in a row are of one entity.
  mutable EntityId lastId_;
  mutable StreamAdapter* last_ = nullptr;
};

}  // namespace NboAttrLog

}  // namespace Vek
