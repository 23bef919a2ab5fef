// What replication costs: a change written to an attribute log that is in step, and a record applied, beside Protocol
// Buffers that encode and decode the same facts; and a setter that nobody listens to, beside a compare and a store.
// Both write into a buffer that is emptied when it is half full, and both use their objects again and again.
#include "bench/Change.pb.h"
#include "bench/SideBySide.h"
#include "dornl3/platform/attrlog/Connection.h"
#include "dornl3/platform/attrlog/EntityAdapter.h"
#include "dornl3/platform/attrlog/MemoryTransport.h"
#include "dornl3/schema/Status.h"

#include <memory>
#include <stdexcept>

namespace {

using Hardware::Dorn::FapId;
using Hardware::DornL3Unicast::RouteStats;
using Hardware::DornL3Unicast::Status;
using Vek::Ptr;
using Vek::U32;
using Vek::U64;
namespace Log = Vek::NboAttrLog;

// --- the changes, each as both sides write it

struct Number {
  static constexpr char const* name = "a number";
  static void set(Status& status, U32 value) { status.numVrfsIs(value); }
  static void fill(contest::Change& change, U32 value) { change.set_num_vrfs(value); }
  static void take(contest::Change const& change, Status& status) { status.numVrfsIs(change.num_vrfs()); }
};

struct Record {
  static constexpr char const* name = "a value of six numbers";
  static void set(Status& status, U32 value) {
    status.ipv4RouteStatsIs(RouteStats(value, value + 1000, value & 7, value & 3, 0, 0));
  }
  static void fill(contest::Change& change, U32 value) {
    auto& stats = *change.mutable_ipv4_route_stats();
    stats.set_routes(value);
    stats.set_adjs(value + 1000);
    stats.set_pending_routes(value & 7);
    stats.set_pending_adjs(value & 3);
    stats.set_unprogrammed_routes(0);
    stats.set_unprogrammed_adjs(0);
  }
  static void take(contest::Change const& change, Status& status) {
    auto const& stats = change.ipv4_route_stats();
    status.ipv4RouteStatsIs(RouteStats(stats.routes(), stats.adjs(), stats.pending_routes(), stats.pending_adjs(),
                                       stats.unprogrammed_routes(), stats.unprogrammed_adjs()));
  }
};

struct Keyed {
  static constexpr char const* name = "a key's number";
  static void set(Status& status, U32 value) { status.inUseArpEntriesIs(FapId(value & 7), value); }
  static void fill(contest::Change& change, U32 value) {
    auto& count = *change.mutable_in_use_arp_entries();
    count.set_key(value & 7);
    count.set_count(value);
  }
  static void take(contest::Change const& change, Status& status) {
    auto const& count = change.in_use_arp_entries();
    status.inUseArpEntriesIs(FapId(static_cast<unsigned short>(count.key())), count.count());
  }
};

// --- ours

/// One end's stream. In place of what its peer sends it can say the same bytes again and again.
class Stream final : public Log::Transport {
 public:
  std::size_t write(std::string_view bytes) override { return joined.write(bytes); }
  std::size_t read(char* into, std::size_t room) override {
    if (again.empty()) return joined.read(into, room);
    if (std::exchange(isSaid_, !isSaid_)) return 0;
    again.copy(into, again.size());
    return again.size();
  }
  [[nodiscard]] bool isEnded() const override { return joined.isEnded(); }

  Log::MemoryTransport joined;
  std::string again;  // shorter than what is read at once

 private:
  bool isSaid_ = false;
};

/// A Status with its replica, in step.
class Pair {
 public:
  Pair() {
    Log::MemoryTransport::join(ours_.joined, theirs_.joined);
    owner_->exports().exportIs(status, Log::Access::readOnly);
    reader_->mounts().mountIs(mount_);
    for (int i = 0; i < 16; ++i) {
      for (auto const& end : {owner_, reader_}) {
        end->writable();
        end->readable();
      }
    }
    if (mount_->state() != Vek::Dir::inStep) throw std::runtime_error("the replica does not come in step");
  }

  /// A change, from the setter to the bytes.
  template <class Change>
  void write() {
    Change::set(*status, ++value_);
    if (out_->unsent() > half) out_->sent(out_->unsent());
  }

  /// The bytes of so many changes, which go nowhere.
  template <class Change>
  void remember(int changes) {
    out_->sent(out_->unsent());
    for (int i = 0; i < changes; ++i) Change::set(*status, ++value_);
    theirs_.again = out_->view();
  }
  /// The records that are remembered, applied.
  void apply() { reader_->readable(); }

  static constexpr std::size_t half = 32 * 1024;
  Ptr<Status> status = Hardware::DornL3Unicast::statusFactory("status");

 private:
  static Ptr<Log::Connection> end(char const* name, Log::Transport& transport, U32 mark) {
    return Vek::make<Log::Connection>(
        Log::Connection::Settings{name, {}}, transport, [] { return 0.0; }, [mark] { return mark; });
  }

  Stream ours_, theirs_;
  Ptr<Log::Connection> owner_ = end("owner", ours_, 1);
  Ptr<Log::Out> out_ = owner_->out();
  Ptr<Log::Connection> reader_ = end("reader", theirs_, 2);
  Ptr<Log::Mount> mount_ = Log::mountOf<Status>("status", Log::Access::readOnly);
  U32 value_ = 0;
};

// --- the reference

/// Messages in a buffer, each behind its length.
class Messages {
 public:
  template <class Change>
  void write() {
    change_.set_entity(1);
    Change::fill(change_, ++value_);
    char* const at = bytes_.get() + size_;
    change_.SerializeToArray(at + sizeof(int), Pair::half);
    int const size = change_.GetCachedSize();
    std::memcpy(at, &size, sizeof size);
    size_ += sizeof size + static_cast<std::size_t>(size);
    if (size_ > Pair::half) size_ = 0;
  }

  template <class Change>
  void remember(int changes) {
    size_ = 0;
    for (int i = 0; i < changes; ++i) write<Change>();
  }
  template <class Change>
  void apply() {
    int size = 0;
    for (std::size_t at = 0; at < size_; at += static_cast<std::size_t>(size)) {
      std::memcpy(&size, bytes_.get() + at, sizeof size);
      at += sizeof size;
      change_.ParseFromArray(bytes_.get() + at, size);
      Change::take(change_, *status_);
    }
  }

 private:
  std::unique_ptr<char[]> bytes_{new char[2 * Pair::half]};
  std::size_t size_ = 0;
  contest::Change change_;
  Ptr<Status> status_ = Hardware::DornL3Unicast::statusFactory("status");
  U32 value_ = 0;
};

/// The least that a setter can cost.
struct BareEntity {
  [[gnu::noinline]] void set(U32 value) {
    if (value == field) return;
    field = value;
    ++writes;
  }
  U32 field = 0;
  unsigned writes = 0;
};

struct NobodyListens {
  void set() { status->numVrfsIs(++value); }
  void setBare() { bare.set(++value); }

  U32 value = 0;
  Ptr<Status> status = Hardware::DornL3Unicast::statusFactory("status");
  BareEntity bare;
};

// --- the rows

template <class Change>
void addWrite(bench::Table& table) {
  auto const pair = std::make_shared<Pair>();
  auto const messages = std::make_shared<Messages>();
  table.add(
      fmt::format("{}, written", Change::name), 1, [pair] { pair->write<Change>(); },
      [messages] { messages->write<Change>(); });
}

template <class Change>
void addApply(bench::Table& table) {
  constexpr int changes = 100;
  auto const pair = std::make_shared<Pair>();
  auto const messages = std::make_shared<Messages>();
  pair->remember<Change>(changes);
  messages->remember<Change>(changes);
  table.add(
      fmt::format("{} times {}, applied", changes, Change::name), 1, [pair] { pair->apply(); },
      [messages] { messages->apply<Change>(); });
}

}  // namespace

int main(int argc, char** argv) {
  bench::Table table{"Replication", "log", "protobuf"};
  addWrite<Number>(table);
  addWrite<Record>(table);
  addWrite<Keyed>(table);
  addApply<Number>(table);
  addApply<Record>(table);
  addApply<Keyed>(table);
  auto const scene = std::make_shared<NobodyListens>();
  table.add(
      "nobody listens, against a compare and a store", 2, [scene] { scene->set(); }, [scene] { scene->setBare(); });
  return table.run(argc, argv);
}
