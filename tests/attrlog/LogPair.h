// LogPair: two ends of a connection in one process, on a clock that the test moves.
#pragma once

#include "dornl3/platform/attrlog/Connection.h"
#include "dornl3/platform/attrlog/EntityAdapter.h"
#include "dornl3/platform/attrlog/MemoryTransport.h"

#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>
#include <string>

namespace LogTest {

using Vek::NboAttrLog::Access;
using Vek::NboAttrLog::Connection;
using Vek::NboAttrLog::MemoryTransport;
using Vek::NboAttrLog::Mount;

/// Time and chance of a test: both are what it says.
struct World {
  double now = 1000;
  Vek::U32 lastRandom = 0;

  [[nodiscard]] Vek::NboAttrLog::Clock clock() {
    return [this] { return now; };
  }
  [[nodiscard]] Vek::NboAttrLog::Random random() {
    return [this] { return lastRandom += 0x01000193; };
  }
};

/// A stream in memory that throws at one of its writes, or at none.
class Faulty final : public Vek::NboAttrLog::Transport {
 public:
  explicit Faulty(int goodWrites) : left_(goodWrites) {}
  std::size_t write(std::string_view bytes) override {
    if (left_-- == 0) throw std::runtime_error("broken pipe");
    return inner.write(bytes);
  }
  std::size_t read(char* into, std::size_t room) override { return inner.read(into, room); }
  [[nodiscard]] bool isEnded() const override { return inner.isEnded(); }

  MemoryTransport inner;

 private:
  int left_;
};

struct PairOptions {
  Vek::NboAttrLog::Limits limits = {};
  Vek::U32 turnBytes = 64 * 1024;
  std::size_t capacity = std::numeric_limits<std::size_t>::max();
  std::size_t slice = std::numeric_limits<std::size_t>::max();
  int ownerWrites = -1, readerWrites = -1;  ///< good ones, until one throws; fewer than none: all
};

/// One end: a transport and a connection.
struct End {
  End(World& world, char const* name, PairOptions const& options, int writes)
      : stream(writes),
        connection(Vek::make<Connection>(Connection::Settings{name, options.limits, options.turnBytes}, stream,
                                         world.clock(), world.random())) {
    transport.capacityIs(options.capacity);
    transport.sliceIs(options.slice);
  }
  Faulty stream;
  MemoryTransport& transport = stream.inner;
  Vek::Ptr<Connection> connection;
};

class LogPair {
 public:
  explicit LogPair(PairOptions options = {}) : options_(options) { connect(); }

  /// A fresh connection in the place of the present one, which is cut.
  void connect() {
    cut();
    owner_.emplace(world, "owner", options_, options_.ownerWrites);
    reader_.emplace(world, "reader", options_, options_.readerWrites);
    MemoryTransport::join(owner_->transport, reader_->transport);
  }
  void cut() {
    if (!owner_) return;
    owner_->transport.cut();
    owner_->connection->readable();
    reader_->connection->readable();
    owner_.reset();
    reader_.reset();
  }

  /// Lets each end act once.
  void step() {
    for (End* const end : {&*owner_, &*reader_}) {
      end->connection->writable();
      end->connection->readable();
      if (end->connection->state() == Vek::NboAttrLog::dead) end->transport.cut(0);
    }
  }
  /// Until neither has anything to say.
  void settle() {
    for (int rounds = 0; rounds < 100000; ++rounds) {
      step();
      if (isAtRest()) return;
    }
    ADD_FAILURE() << "the connection does not come to rest";
  }
  [[nodiscard]] bool isAtRest() const {
    return !owner_->connection->wantsWrite() && !reader_->connection->wantsWrite() &&
           owner_->transport.incoming().empty() && reader_->transport.incoming().empty();
  }

  [[nodiscard]] Connection& owner() { return *owner_->connection; }
  [[nodiscard]] Connection& reader() { return *reader_->connection; }
  [[nodiscard]] MemoryTransport& ownerTransport() { return owner_->transport; }
  [[nodiscard]] MemoryTransport& readerTransport() { return reader_->transport; }

  World world;

 private:
  PairOptions options_;
  std::optional<End> owner_;
  std::optional<End> reader_;
};

/// The reader's mount of an entity of the owner's.
template <class X>
struct Mounted {
  Mounted(LogPair& pair, Vek::Ptr<X> const& entity, Access access = Access::writable,
          Vek::Ptr<Vek::Dir> const& into = Vek::make<Vek::Dir>())
      : dir(into), mount(Vek::make<Mount>(entity->name(), *entity->fwkType(), access, into)) {
    bind(pair, entity);
    pair.settle();
  }
  /// Over a connection that is new to both.
  void bind(LogPair& pair, Vek::Ptr<X> const& entity) {
    pair.owner().exports().exportIs(entity, mount->access());
    pair.reader().mounts().mountIs(mount);
  }
  [[nodiscard]] Vek::Ptr<X> replica() const { return Vek::ptrCast<X>(dir->entity(mount->name())); }

  Vek::Ptr<Vek::Dir> dir;
  Vek::Ptr<Mount> mount;
};

/// Bytes as a test writes them: pairs of hexadecimal digits, with spaces between them at will.
[[nodiscard]] inline std::string bytes(std::string_view digits) {
  std::string out;
  std::string pair;
  for (char const c : digits) {
    if (c == ' ') continue;
    pair += c;
    if (pair.size() < 2) continue;
    out += static_cast<char>(std::stoi(pair, nullptr, 16));
    pair.clear();
  }
  return out;
}

[[nodiscard]] inline std::string hex(std::string_view raw) {
  std::string out;
  for (char const c : raw) {
    auto const byte = static_cast<unsigned char>(c);
    out += "0123456789abcdef"[byte >> 4];
    out += "0123456789abcdef"[byte & 15];
  }
  return out;
}

}  // namespace LogTest
