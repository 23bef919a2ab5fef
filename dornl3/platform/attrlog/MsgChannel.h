// MsgChannel: a road beside the log that several adapters of one entity may share. None is set up today: adapters then
// have no entry, and are told apart by their logs alone.
// Owner: whoever sets up a constrainer. Thread: each has its own.
#pragma once

#include "dornl3/platform/attrlog/EntityId.h"
#include "dornl3/platform/vek/Entity.h"

namespace Vek {

class MsgChannel {
 public:
  class Constrainer;
  class DeserializingEidAnchor;
  /// The constrainer of this thread; null without one.
  [[nodiscard]] static Constrainer* constrainer() noexcept;
  /// Holds no reference on it.
  static void constrainerIs(Constrainer* constrainer) noexcept;
};

/// Knows which child is being made from a record, for those who hear of it meanwhile.
class MsgChannel::Constrainer {
 public:
  class VekEntry;

  /// The id of the child that is being made; 0 for none.
  [[nodiscard]] EntityId deserializingEid() const noexcept { return id_; }
  void deserializingEidIs(EntityId id) noexcept { id_ = id; }
  /// The entity that it is made in; null for none.
  [[nodiscard]] Ptr<Entity> const& deserializingInParent() const noexcept { return parent_; }
  void deserializingInParentIs(Ptr<Entity> const& parent) noexcept { parent_ = parent; }

 private:
  EntityId id_;
  Ptr<Entity> parent_;
};

/// Tells the constrainer of a child while that is made, and puts back what it said before.
class MsgChannel::DeserializingEidAnchor {
 public:
  DeserializingEidAnchor(EntityId id, Ptr<Entity> const& parent) noexcept;
  DeserializingEidAnchor(DeserializingEidAnchor const&) = delete;
  DeserializingEidAnchor& operator=(DeserializingEidAnchor const&) = delete;
  ~DeserializingEidAnchor();

 private:
  Constrainer* constrainer_;
  EntityId idBefore_;
  Ptr<Entity> parentBefore_;
};

/// What an adapter has of the channel that it serves.
class MsgChannel::Constrainer::VekEntry : public PtrInterface {
 public:
  /// Told 3 after a sync mode record, 1 after the record of a child.
  [[nodiscard]] U32 mode() const noexcept { return mode_; }
  virtual void modeIs(U32 mode) { mode_ = mode; }

 private:
  U32 mode_ = 0;
};

}  // namespace Vek
