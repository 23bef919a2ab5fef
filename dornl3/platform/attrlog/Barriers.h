// Barriers: a word from the far side that all that was written to an entity and those below it has been applied there,
// and that all it repeated of that has come back. A control record overtakes what is only marked, so a request, and its
// answer as well, is written when what was owed at that time has gone, adapter by adapter. An entity that is mounted
// from a third process is answered for when that has answered. Owner: the demuxer. It holds the adapters that it waits
// for. Thread: the connection's. Re-entrancy: an answer is called from the handling of a record or from the end of the
// connection; it may do all but destroy the connection.
#pragma once

#include "dornl3/core/Ptr.h"
#include "dornl3/platform/attrlog/EntityId.h"
#include "dornl3/platform/attrlog/Wire.h"

#include <deque>
#include <functional>
#include <map>
#include <unordered_map>
#include <vector>

namespace Vek {

class StreamAdapter;

namespace NboAttrLog {

class Demuxer;

class Barriers {
 public:
  /// What is known of the far side.
  enum class Outcome : U8 {
    unknown,  ///< the connection or the mount has ended before the answer came: applied or not
    applied,
  };
  using Answer = std::function<void(Outcome)>;

  /// The most requests of one end's that may wait for their answers. Further ones of this end's wait for their turn; a
  /// peer that asks more ends its connection.
  static constexpr std::size_t mostUnanswered = 1024;

  explicit Barriers(Demuxer& demuxer) noexcept : demuxer_(demuxer) {}
  Barriers(Barriers const&) = delete;
  Barriers& operator=(Barriers const&) = delete;
  ~Barriers();

  /// Asks the far side of a root entity.
  void request(StreamAdapter& root, Answer answer);
  /// The root is no longer mounted: nobody answers for it.
  void rootLeft(EntityId id);
  /// The connection has ended.
  void ended() noexcept;

  // What comes in.
  /// A request or an answer. Throws ProtocolException where the peer asks more than it reads answers.
  void received(EntityId id, U64 number, BarrierKind kind);

  // What becomes of what is owed.
  /// The adapter's walk has been through; `isClean`: it owes nothing any more, or nobody waits for it.
  void walked(StreamAdapter const& adapter, bool isClean) {
    if (!lines_.empty()) paid(adapter, isClean);
  }
  /// The adapter has begun to owe: if it stands below one that is waited for, it may be a part of that.
  void owes(StreamAdapter& adapter) {
    if (!lines_.empty()) grown(adapter);
  }

  /// Whether writeDue() would write.
  [[nodiscard]] bool isDue() const noexcept;
  /// Writes the requests and answers before which nothing is owed any more. No record is open.
  void writeDue();

 private:
  // An adapter, and how many ends of its walk stand between now and what it owed at first.
  struct Debt {
    Ptr<StreamAdapter> adapter;
    int walks;
  };
  using Debts = std::unordered_map<StreamAdapter const*, Debt>;
  // A record that waits.
  struct Parked {
    U64 number;
    BarrierKind kind;
  };
  // What waits of one root. What comes while some of it waits lines up behind, and what that waits for is looked up
  // when its turn comes: later, and no less. So whoever asks often costs no more than the numbers.
  struct Line {
    Debts debts;
    std::vector<Parked> first;
    std::vector<Parked> behind;
  };
  // A request of this end's.
  struct Waiting {
    EntityId root;
    Answer answer;  // empty when whoever asked has been told
    bool isWritten = false;
  };

  void park(EntityId root, Parked parked);
  [[nodiscard]] Debts debtsOf(EntityId root) const;
  void write(EntityId root, Parked const& parked);
  void askNext();
  void requested(EntityId id, U64 number);
  void answered(U64 number, Outcome outcome);
  void paid(StreamAdapter const& adapter, bool isClean);
  void grown(StreamAdapter& adapter);

  Demuxer& demuxer_;
  std::map<EntityId, Line> lines_;  // none without a record
  std::map<U64, Waiting> waiting_;
  std::deque<U64> wanted_;  // requests for which the peer has no room yet
  U64 lastNumber_ = 0;
  std::size_t asked_ = 0;      // requests that are parked, or have no answer yet
  std::size_t ofThePeer_ = 0;  // requests of the peer's that have no answer yet
};

}  // namespace NboAttrLog

}  // namespace Vek
