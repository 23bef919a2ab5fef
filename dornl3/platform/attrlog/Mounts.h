// Mounts: entities of another process, kept in step here. A Mount is what a process wants: an entity of a name and
// type, in a directory. Connections come and go; the entity that was made for a mount stays and is brought in step
// again, and reactors on it hear only of what is different then. Owner: a Mount belongs to whoever made it; the
// connection holds those that were given to it. Thread: the connection's.
#pragma once

#include "dornl3/platform/attrlog/EntityId.h"
#include "dornl3/platform/attrlog/Exports.h"
#include "dornl3/platform/vek/Dir.h"

#include <functional>
#include <vector>

namespace Vek {

class GenericIf;
class StreamAdapter;

namespace NboAttrLog {

class In;

class Mount final : public PtrInterface {
 public:
  Mount(Name name, VekType const& type, Access access, Ptr<Dir> dir);
  ~Mount() override;

  [[nodiscard]] Name const& name() const noexcept { return name_; }
  [[nodiscard]] VekType const& type() const noexcept { return type_; }
  [[nodiscard]] Access access() const noexcept { return access_; }

  /// How far it has come; stale also where the owner mounts the entity itself, and is not in step.
  [[nodiscard]] Dir::State state() const noexcept { return state_; }
  /// When the owner was last heard, be it by a heartbeat, on the connection's clock; 0 before the entity was announced.
  [[nodiscard]] double lastWord() const noexcept;
  /// Why the owner will not have it; empty where it does.
  [[nodiscard]] String8 const& refusal() const noexcept { return refusal_; }
  /// Asks whether the owner has applied all that was written here until now, and what it said to that has come:
  /// `answer` is called once, at once where the mount is not in step. See Barriers.
  void barrier(Barriers::Answer answer);
  /// Called after state or refusal has changed. It may do anything but drop the mount's last reference.
  void whenChangedIs(std::function<void(Mount&)> call) { whenChanged_ = std::move(call); }

  /// The entity, to read; null until the owner has announced it.
  [[nodiscard]] Ptr<Entity const> entity() const noexcept { return entity_; }
  /// The entity, to change. Throws ReadOnlyException on a read-only mount.
  [[nodiscard]] Ptr<Entity> writableEntity() const;
  /// The entity without its class, which may be changed as the mount may; null until the owner has announced it.
  [[nodiscard]] Ptr<GenericIf> generic() const;

 private:
  friend class Mounts;
  friend std::vector<U32> cameThrough(Entity const& entity);
  void linkStateIs(Dir::State state);
  void stateIs(Dir::State state);

  Name const name_;
  VekType const& type_;
  Access const access_;
  Ptr<Dir> const dir_;
  Dir::State state_ = Dir::neverSynced;
  Dir::State linkState_ = Dir::neverSynced;  // as this connection alone would have it
  bool isUpstreamInStep_ = true;
  std::vector<U32> cameThrough_;  // between the owner and the peer
  // How the entity stood before it was bound here.
  Dir::State stateBefore_ = Dir::inStep;
  bool wasGuarded_ = false;
  double lastWord_ = 0;
  Connection* connection_ = nullptr;  // that it was given to
  String8 refusal_;
  std::function<void(Mount&)> whenChanged_;
  Ptr<Entity> entity_;
};

class Mounts {
 public:
  friend std::vector<U32> cameThrough(Entity const& entity);

  explicit Mounts(Connection& connection) noexcept : connection_(connection) {}
  Mounts(Mounts const&) = delete;
  Mounts& operator=(Mounts const&) = delete;

  /// Asks the peer for it, now or as soon as the connection is open. Throws InternalException where one of that name is
  /// wanted already.
  void mountIs(Ptr<Mount> const& mount);
  /// Wants it no longer; the entity stays as it is, in its directory.
  void mountDel(Mount& mount);

  // What the connection hears of them.
  void opened();
  void ended() noexcept;
  /// An entity is announced. The input stands at the payload of an orphan record. Whether anybody asked for it.
  bool announced(In& in);
  void refused(Name const& name, String8 const& reason);
  void gone(EntityId id);
  /// An entity that the peer mounts from another is in step there, or no longer; and what it came through. One that
  /// came through here is refused.
  void upstreamIs(EntityId id, bool isInStep, std::vector<U32> cameThrough);
  /// The owner has told how far an entity has come.
  void syncModeReceived(StreamAdapter const& adapter);

 private:
  [[nodiscard]] Ptr<Mount> find(Name const& name) const;
  [[nodiscard]] Ptr<Mount> find(StreamAdapter const& adapter) const;
  static void leave(Mount& mount) noexcept;
  void request(Mount const& mount);
  void refuse(Mount& mount, EntityId id, String8 const& reason);
  void guardTree(Mount const& mount, bool armed);
  void settleState(Mount& mount);

  Connection& connection_;
  std::vector<Ptr<Mount>> mounts_;
};

/// The marks of the connections that an entity has come through to this process, each that of its owner's end,
/// beginning with its first owner's; none where it is its own. An entity that met its own marks would follow itself:
/// two processes that each export what they mount from the other would send one change round and round.
[[nodiscard]] std::vector<U32> cameThrough(Entity const& entity);

/// Tells the far side how an exported entity stands to its own owner.
void tellState(StreamAdapter& root);

/// The wish for an entity of type X, by its name, in a directory of its own if none is given.
template <class X>
[[nodiscard]] Ptr<Mount> mountOf(Name name, Access access, Ptr<Dir> dir = make<Dir>()) {
  return make<Mount>(std::move(name), *X::_fwkType(), access, std::move(dir));
}
/// The entity of a mount as what it is, to read; null until it is there.
template <class X>
[[nodiscard]] Ptr<X const> mounted(Mount const& mount) {
  return ptrCast<X const>(mount.entity());
}
/// The same, to change. Throws ReadOnlyException on a read-only mount.
template <class X>
[[nodiscard]] Ptr<X> mountedWritable(Mount const& mount) {
  return ptrCast<X>(mount.writableEntity());
}

}  // namespace NboAttrLog

}  // namespace Vek
