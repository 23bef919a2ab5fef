// Barriers: when the far side answers, that it answers once, and what becomes of requests by the thousand.
#include "dornl3/generic/Digest.h"
#include "tests/attrlog/BareLog.h"
#include "tests/attrlog/RawPeer.h"

namespace LogTest {
namespace {

using Vek::Dir;
using Vek::U64;
using Vek::NboAttrLog::Barriers;
using Outcome = Barriers::Outcome;
using Outcomes = std::vector<Outcome>;

// A reader that mounts an entity to write.
template <class X>
struct Reader : Mounted<X> {
  using Mounted<X>::Mounted;
  void ask() {
    this->mount->barrier([this](Outcome outcome) {
      outcomes.push_back(outcome);
      if (whenAnswered) std::exchange(whenAnswered, nullptr)();
    });
  }

  Outcomes outcomes;
  std::function<void()> whenAnswered;
};

struct Barrier : LeakCheck {
  // Logs of one record, and streams of a few bytes.
  static PairOptions narrow() { return {.limits = {.outBytes = 1, .messageBytes = 1}, .turnBytes = 1, .slice = 7}; }
  Ptr<Toy> const toy = Toys::toyFactory("toy");
  Ptr<ToyBox> const box = Toys::toyBoxFactory("box");
  Outcomes const applied{Outcome::applied};
  Outcomes const unknown{Outcome::unknown};
};

TEST_F(Barrier, IsAnsweredWhenAllThatWasOwedIsThere) {
  auto const change = [](ToyBox& its, U32 value) {
    for (U32 key = 0; key < 40; ++key) its.countsIs(key, value);
    its.countsDel(value);
    its.lidDel();
    its.lidIs("lid")->openIs(value == 2);
    for (char const* name : {"p", "q", "r"}) its.shelvesIs(name)->drawersIs("d")->thingsIs(value);
  };
  for (PairOptions const& options : {PairOptions{}, narrow()}) {
    LogPair pair{options};
    Ptr<ToyBox> const owned = Toys::toyBoxFactory("box");
    Reader<ToyBox> reader{pair, owned};
    bool isSame = false;
    auto const compare = [&] { isSame = Vek::digest(*owned) == Vek::digest(*reader.replica()); };
    change(*reader.replica(), 1);
    reader.ask();
    reader.whenAnswered = compare;
    pair.settle();
    EXPECT_EQ(reader.outcomes, applied);
    EXPECT_TRUE(std::exchange(isSame, false));

    change(*owned, 2);
    Outcomes told;
    pair.owner().exports().barrier("box", [&](Outcome outcome) {
      told.push_back(outcome);
      compare();
    });
    pair.settle();
    EXPECT_EQ(told, applied);
    EXPECT_TRUE(isSame);
  }
}

TEST_F(Barrier, LinedUpBehindOthersWaitsForWhatWasWrittenBeforeIt) {
  LogPair pair{{.limits = {.outBytes = 1, .messageBytes = 1}, .turnBytes = 1}};
  Reader<Toy> const reader{pair, toy};
  pair.readerTransport().capacityIs(7);  // an answer comes before another record is through
  int answers = 0;
  for (U32 written = 1; written <= 500; ++written) {
    reader.replica()->sizeIs(written);
    reader.replica()->playedIs(written);
    reader.replica()->placeIs({1, static_cast<double>(written), "here"});
    if (written % 3 == 0) {
      reader.mount->barrier([&answers, this, written](auto) {
        ++answers;
        EXPECT_GE(std::min({static_cast<double>(toy->size()), toy->played(), toy->place().y()}), written);
      });
    }
    pair.step();
  }
  pair.settle();
  EXPECT_EQ(answers, 500 / 3);
}

TEST_F(Barrier, WaitsForATextThatWaitsForOneThatComesIn) {
  LogPair pair{{.limits = {.outBytes = 40, .messageBytes = 30}}};
  Reader<Toy> reader{pair, toy};
  pair.ownerTransport().capacityIs(60);
  toy->textIs(Vek::String8(std::string_view(std::string(90, 'x'))));
  pair.step();
  pair.ownerTransport().capacityIs(0);
  reader.replica()->textIs("short");
  reader.replica()->sizeIs(1);
  reader.replica()->brokenIs(true);  // owed, and written before the text
  auto const records = pair.reader().out()->records();
  reader.ask();
  for (int steps = 0; steps < 10; ++steps) pair.step();
  EXPECT_EQ(pair.reader().out()->records(), records + 1) << "what was owed, and no request";
  pair.ownerTransport().capacityIs(60);
  pair.settle();
  EXPECT_EQ(reader.outcomes, applied);
}

TEST_F(Barrier, IsNotPutOffByChangesBehindIt) {
  LogPair pair{narrow()};
  Reader<Toy> reader{pair, toy};
  Reader<ToyBox> boxReader{pair, box};
  reader.replica()->placeIs({3, 0.5, "here"});
  for (U32 key = 0; key < 5; ++key) boxReader.replica()->countsIs(key, 1);
  reader.ask();
  boxReader.ask();
  for (U32 round = 1; round < 3000 && (reader.outcomes.empty() || boxReader.outcomes.empty()); ++round) {
    reader.replica()->sizeIs(round);
    reader.replica()->brokenIs(round % 2 == 0);
    reader.replica()->playedIs(round);
    for (U32 key = 0; key < 3; ++key) boxReader.replica()->countsIs(key, round);
    pair.step();
  }
  EXPECT_EQ(reader.outcomes, applied);
  EXPECT_EQ(boxReader.outcomes, applied);
  EXPECT_EQ(toy->place().x(), 3U);
  EXPECT_EQ(box->counts(4), 1U);
  pair.settle();
}

TEST_F(Barrier, AskedForInAReactorWaitsForWhatThatReactorWrote) {
  LogPair pair{narrow()};
  Reader<Toy> reader{pair, toy};
  Toys::Calls calls;
  auto const listener = Toys::listen<Toys::ToyListener>(reader.replica(), calls, "L");
  listener->nextDo({[&] {
    reader.replica()->placeIs({4, 0.5, "here"});
    reader.ask();
    EXPECT_EQ(reader.outcomes, Outcomes{});
  }});
  reader.whenAnswered = [&] { EXPECT_EQ(toy->place().x(), 4U); };
  toy->sizeIs(1);
  pair.settle();
  EXPECT_EQ(reader.outcomes, applied);
}

TEST_F(Barrier, OfAChainIsAnsweredByItsBeginning) {
  LogPair above, below;
  Reader<Toy> middle{above, toy};
  Reader<Toy> end{below, middle.replica()};
  end.replica()->sizeIs(3);
  end.ask();
  below.settle();
  EXPECT_EQ(end.outcomes, Outcomes{}) << "the middle has no say";
  above.settle();
  below.settle();
  EXPECT_EQ(end.outcomes, applied);
  EXPECT_EQ(toy->size(), 3U);

  // Cut behind a request, and ahead of another and what was written before it.
  end.ask();
  below.settle();
  end.replica()->sizeIs(4);
  end.ask();
  above.cut();
  below.settle();
  EXPECT_EQ(middle.replica()->size(), 3U);
  EXPECT_EQ(end.outcomes, (Outcomes{Outcome::applied, Outcome::unknown, Outcome::unknown}));
}

TEST_F(Barrier, EndsUnknownWithTheConnectionAndTheMountIsStaleByThen) {
  LogPair pair;
  Reader<Toy> reader{pair, toy};
  reader.ask();
  reader.whenAnswered = [&] {
    EXPECT_EQ(reader.mount->state(), Dir::stale);
    EXPECT_THROW(reader.replica()->sizeIs(1), Vek::ReadOnlyException);
    reader.ask();
    pair.reader().mounts().mountIs(reader.mount);
  };
  pair.cut();
  EXPECT_EQ(reader.outcomes, (Outcomes{Outcome::unknown, Outcome::unknown}));
  EXPECT_GT(reader.mount->lastWord(), 0) << "it was given to a connection that has gone";
  pair.connect();
  pair.settle();
  EXPECT_EQ(reader.outcomes.size(), 2U);
}

TEST_F(Barrier, EndsUnknownWithTheMountOrTheExport) {
  LogPair pair;
  Reader<Toy> reader{pair, toy};
  Reader<ToyBox> other{pair, box};
  struct Refusal : std::exception {};
  reader.ask();
  reader.whenAnswered = [&] {
    EXPECT_EQ(reader.mount->state(), Dir::stale);
    throw Refusal();
  };
  reader.ask();
  pair.reader().writable();
  pair.reader().mounts().mountDel(*reader.mount);
  EXPECT_EQ(reader.outcomes, (Outcomes{Outcome::unknown, Outcome::unknown})) << "whatever the first threw";

  other.ask();
  pair.owner().exports().exportDel("box");
  pair.settle();
  EXPECT_EQ(other.outcomes, unknown);
  EXPECT_EQ(pair.reader().state(), Vek::NboAttrLog::open);
  EXPECT_EQ(reader.outcomes.size(), 2U) << "the answers that came later count for nobody";

  Outcomes told;
  pair.owner().exports().barrier("box", [&](Outcome outcome) { told.push_back(outcome); });
  EXPECT_EQ(told, unknown) << "nobody mounts it";
}

TEST_F(Barrier, ByTheThousandWaitTheirTurn) {
  LogPair pair;
  Reader<Toy> reader{pair, toy};
  for (U64 n = 1; n <= 5000; ++n) {
    reader.replica()->sizeIs(n);
    reader.ask();
  }
  pair.settle();
  EXPECT_EQ(pair.reader().state(), Vek::NboAttrLog::open) << pair.reader().closeReason().charPtr();
  EXPECT_EQ(reader.outcomes, Outcomes(5000, Outcome::applied));
  for (int n = 0; n < 5000; ++n) reader.ask();
  pair.reader().mounts().mountDel(*reader.mount);
  EXPECT_EQ(reader.outcomes.size(), 10000U);
  Reader<ToyBox> other{pair, box};
  other.ask();
  pair.settle();
  EXPECT_EQ(other.outcomes, applied) << "those of the mount that has gone left room";
}

std::string barrier(U64 id, U64 number, Vek::U8 kind) {
  return control(Vek::NboAttrLog::barrierRecord,
                 LogTest::number(id) + LogTest::number(number) + static_cast<char>(kind));
}

TEST_F(Barrier, OfAFloodingPeerCostsNumbersAndThenTheConnection) {
  RawPeer peer;
  peer.connection->exports().exportIs(box, Access::writable);
  auto const child = box->shelvesIs("s");
  peer.says(greeting(RawPeer::tag) + mountOf("box", "Toys::ToyBox", true));
  peer.near.capacityIs(0);  // from here on the peer reads nothing
  for (U32 key = 0; key < 10000; ++key) box->countsIs(key, key);
  child->drawersIs("d")->thingsIs(1);
  auto const adapter = child->vekNboAttrLogSa(peer.connection->out());
  auto const before = adapter->references();
  std::string flood;
  for (U64 n = 0; n < Barriers::mostUnanswered; ++n) flood += barrier(idOf(RawPeer::theirs, 1), n, 0);
  peer.says(flood);
  EXPECT_EQ(peer.connection->state(), Vek::NboAttrLog::open);
  EXPECT_LT(adapter->references(), before + 5) << "what is owed is noted once";
  peer.says(barrier(1, 0, 0));
  EXPECT_EQ(peer.connection->closeReason(), "more barriers are asked for than answers are read");
}

TEST_F(Barrier, IsNotAnsweredBeforeItIsAsked) {
  RawPeer peer;
  auto const mount = Vek::make<Mount>("toy", *Toy::_fwkType(), Access::writable, Vek::make<Dir>());
  peer.connection->mounts().mountIs(mount);
  U64 const id = idOf(RawPeer::tag, 1);
  peer.says(greeting(RawPeer::tag) + orphan(id, "Toys::Toy", "toy") + syncMode(id, 1));
  ASSERT_EQ(mount->state(), Dir::inStep);
  Outcomes told;
  mount->barrier([&](Outcome outcome) { told.push_back(outcome); });
  peer.says(barrier(id, 1, 1) + barrier(id, 7, 1));  // written in the same turn, behind what came
  EXPECT_EQ(told, Outcomes{});
  peer.says(barrier(id, 1, 2));
  EXPECT_EQ(told, unknown);
  peer.says(barrier(id, 1, 3));
  EXPECT_EQ(peer.connection->closeReason(), "a barrier of kind 3");
}

// Whoever drives the connection is told of each change that it can write, also behind a barrier that it cannot.
TEST_F(Barrier, BehindWhatIsBlockedHidesNoChange) {
  LogPair pair{{.limits = {.entities = 1}}};
  Reader<ToyBox> reader{pair, box};
  int due = 0;
  pair.owner().whenDueIs([&] { ++due; });
  box->shelvesIs("there is no id for it");
  pair.settle();
  pair.owner().exports().barrier("box", [](Outcome) {});
  due = 0;
  box->countsIs(1, 1);
  EXPECT_GT(due, 0);
  pair.settle();
  pair.owner().whenDueIs(nullptr);
}

}  // namespace
}  // namespace LogTest
