// Exports: the entities that a peer may mount over one connection.
// Owner: the connection. It holds what is exported. Thread: the connection's.
#pragma once

#include "dornl3/platform/attrlog/Barriers.h"
#include "dornl3/platform/vek/Entity.h"

#include <map>
#include <vector>

namespace Vek::NboAttrLog {

class Connection;

/// What the far side may do with an entity.
enum class Access : U8 { readOnly, writable };

class Exports {
 public:
  /// How changes travel: each as it happens where there is room, or always by the next turn, the last value alone.
  enum class Delivery : U8 { immediate, conflated };

  explicit Exports(Connection& connection) noexcept : connection_(connection) {}
  Exports(Exports const&) = delete;
  Exports& operator=(Exports const&) = delete;

  /// Throws InternalException for an entity that has a parent, and for one that has no bindings.
  static void needExportable(Entity& entity);
  /// Lets the peer mount a root entity under its name; another that had the name is taken back. One that waits for it
  /// gets it at once. Throws InternalException for an entity that has a parent, and for one that has no bindings.
  void exportIs(Ptr<Entity> const& entity, Access access, Delivery delivery = Delivery::immediate);
  /// Takes it back; the far side keeps what it has, and is told.
  void exportDel(Name const& name);

  /// Asks whether the peer has applied all that has been told of an entity and those below it; `answer` is called once,
  /// at once where it does not mount it. See Barriers.
  void barrier(Name const& name, Barriers::Answer answer);

  /// The peer asks for an entity. Throws ProtocolException where it asks and does not read the answers.
  void mountRequested(Name const& name, String8 const& typeName, Access access);
  /// The peer wants what has this id no longer. Whether it is an entity that it mounts from here.
  bool gone(EntityId id);
  void ended() noexcept;

 private:
  struct Export {
    Ptr<Entity> entity;
    Access access;
    Delivery delivery;
  };
  struct Request {
    Name name;
    String8 typeName;
    Access access;
  };

  void announce(Export const& exported, Request const& request);

  Connection& connection_;
  std::map<Name, Export> exports_;
  std::vector<Request> waiting_;
};

}  // namespace Vek::NboAttrLog
