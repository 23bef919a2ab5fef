// LawScript: random histories of a toy and a box that live at one end and are mounted at the other, and what must hold
// after each: the replica has the owner's digest, and none of its reactors heard of anything that had not changed. Each
// replica asks whether all has been applied as soon as the last act is done, and where it is told so the last replica
// is as its owner is at that moment.
#pragma once

#include "tests/attrlog/LogPair.h"
#include "tests/frame/Toy.h"

#include <map>
#include <memory>
#include <ostream>
#include <vector>

namespace LogTest {

/// One act of a history. `who`: the owner, or the replica where there is one that may write.
struct Act {
  enum Kind {
    size,
    broken,
    played,
    place,
    counts,
    countsDel,
    countsDelAll,
    faps,
    wanted,
    wantedDel,
    notes,
    notesDel,
    vlans,
    text,
    lid,
    lidDel,
    lidOpen,
    shelf,
    shelfDel,
    drawer,
    drawerDel,
    things,
    step,    ///< each end acts once
    settle,  ///< until there is nothing to do
    cut,     ///< the connection breaks, and another takes its place
    end,
    // Those of histories that a test writes.
    beat = end,  ///< time for each end to say that it lives
    refused,     ///< what is not there as it is wanted
    takenBack,   ///< the toy, until the next cut
  };
  Kind kind;
  bool byReplica;
  Vek::U32 key;
  Vek::U32 value;
};

std::ostream& operator<<(std::ostream& os, Act const& act);

/// How the processes of a history are joined: the owner and one replica; the owner and two; the owner, a replica, and a
/// replica of that.
enum class Joined { pair, star, chain };

struct LawOptions {
  PairOptions pair = {};
  Access access = Access::readOnly;
  Joined joined = Joined::pair;
};

/// Plays histories.
class LawScript {
 public:
  explicit LawScript(LawOptions const& options);
  ~LawScript();
  LawScript(LawScript const&) = delete;
  LawScript& operator=(LawScript const&) = delete;

  /// Plays acts, and lets all come to rest.
  void play(std::vector<Act> const& acts);
  /// Plays acts alone, as long as the streams have moved less often than that. How often they might still move.
  int playOn(std::vector<Act> const& acts, int steps = std::numeric_limits<int>::max());
  [[nodiscard]] bool isAtRest() const;
  /// What does not hold after all has come to rest; empty where all does.
  [[nodiscard]] std::string complaint();
  /// What went at some time, and more than once.
  [[nodiscard]] std::string wentTwice() const;

 private:
  class Replica;

  void act(Act const& act);
  static void change(Toys::Toy& toy, Toys::ToyBox& box, Act const& act);
  void lookRound();
  void ask();
  void settle();
  void step();

  LawOptions options_;
  int stepsLeft_ = std::numeric_limits<int>::max();
  std::string heard_;  // the first complaint of a reactor, or of an answer
  int unanswered_ = 0;
  Vek::Ptr<Vek::Dir> home_ = Vek::make<Vek::Dir>();
  std::vector<std::unique_ptr<Replica>> replicas_;
};

}  // namespace LogTest
