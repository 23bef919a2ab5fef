// A session that holds every kind of record, broken off at every place: bound again, both ends are equal, and all that
// came, changed or went was told once.
#include "dornl3/generic/Digest.h"
#include "tests/attrlog/BareLog.h"
#include "tests/attrlog/LawScript.h"

#include <stdexcept>

namespace LogTest {
namespace {

struct Broken : LeakCheck {};

std::vector<Act> filled(bool byReplica) {
  return {{Act::size, byReplica, 0, 3},    {Act::broken, byReplica, 0, 1}, {Act::played, byReplica, 0, 1},
          {Act::place, byReplica, 1, 2},   {Act::text, byReplica, 2, 1},   {Act::counts, byReplica, 1, 1},
          {Act::counts, byReplica, 2, 2},  {Act::faps, byReplica, 1, 1},   {Act::wanted, byReplica, 1, 1},
          {Act::notes, byReplica, 1, 1},   {Act::vlans, byReplica, 1, 1},  {Act::lid, byReplica, 0, 0},
          {Act::lidOpen, byReplica, 0, 0}, {Act::shelf, byReplica, 0, 0},  {Act::drawer, byReplica, 0, 2},
          {Act::shelf, byReplica, 2, 0}};
}

std::vector<Act> changed(bool byReplica) {
  return {{Act::size, byReplica, 0, 4},      {Act::text, byReplica, 2, 2},      {Act::countsDel, byReplica, 1, 0},
          {Act::counts, byReplica, 3, 1},    {Act::wantedDel, byReplica, 1, 0}, {Act::notesDel, byReplica, 1, 0},
          {Act::lidDel, byReplica, 0, 0},    {Act::things, byReplica, 0, 5},    {Act::drawer, byReplica, 1, 1},
          {Act::drawerDel, byReplica, 0, 0}, {Act::shelfDel, byReplica, 2, 0},  {Act::lid, byReplica, 0, 1}};
}

std::vector<Act> operator+(std::vector<Act> acts, std::vector<Act> const& more) {
  acts.insert(acts.end(), more.begin(), more.end());
  return acts;
}

std::vector<Act> steps(int count) {
  return std::vector<Act>(static_cast<std::size_t>(count), {Act::step, false, 0, 0});
}

// One byte goes each way in a step. `before` and `after`: what happens around the cut.
void expectLawWhereverItBreaks(std::vector<Act> const& before, std::vector<Act> const& after) {
  LawOptions options;
  options.access = Access::writable;
  options.pair.limits.outBytes = 90;
  options.pair.limits.messageBytes = 30;
  options.pair.capacity = options.pair.slice = 1;
  bool isWhole = false;
  for (int bytes = 0; !isWhole; ++bytes) {
    LawScript script(options);
    script.playOn(before + steps(bytes));
    isWhole = script.isAtRest();
    script.play(std::vector<Act>{{Act::cut, false, 0, 0}} + after);
    ASSERT_EQ(script.complaint(), "") << "cut after " << bytes << " bytes";
  }
}

Act const settle{Act::settle, false, 0, 0};

TEST_F(Broken, AnywhereInAFirstSynchronisation) { expectLawWhereverItBreaks(filled(false), changed(false)); }
TEST_F(Broken, AnywhereInTheOwnersNews) {
  std::vector<Act> const another{{Act::text, false, 3, 0}};
  expectLawWhereverItBreaks(filled(false) + std::vector<Act>{settle} + changed(false) + steps(60) + another,
                            filled(false));
}
TEST_F(Broken, AnywhereInAReplicasNews) {
  expectLawWhereverItBreaks(filled(false) + std::vector<Act>{settle} + changed(true), changed(false));
}

// A stream that throws at one of its writes.
class Faulty final : public Vek::NboAttrLog::Transport {
 public:
  explicit Faulty(int writes) : left_(writes) {}
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

TEST_F(Broken, AtAnyWriteThatThrows) {
  for (bool const ownersBreaks : {true, false}) {
    bool hasThrown = true;
    for (int writes = 0; hasThrown; ++writes) {
      SCOPED_TRACE(std::to_string(writes) + (ownersBreaks ? " of the owner's" : " of the reader's"));
      auto const box = Toys::toyBoxFactory("box");
      box->shelvesIs("s")->drawersIs("d");
      box->countsIs(1, 1);
      auto const dir = Vek::make<Vek::Dir>();
      auto const mount = Vek::make<Mount>("box", *ToyBox::_fwkType(), Access::writable, dir);
      World world;
      Faulty ends[] = {Faulty(ownersBreaks ? writes : -1), Faulty(ownersBreaks ? -1 : writes)};
      MemoryTransport::join(ends[0].inner, ends[1].inner);
      for (Faulty& end : ends) end.inner.sliceIs(20);
      auto const owner =
          Vek::make<Connection>(Connection::Settings{"owner", {}}, ends[0], world.clock(), world.random());
      auto const reader =
          Vek::make<Connection>(Connection::Settings{"reader", {}}, ends[1], world.clock(), world.random());
      owner->exports().exportIs(box, Access::writable);
      reader->mounts().mountIs(mount);
      auto const steps = [&] {
        for (int times = 0; times < 20; ++times) {
          for (auto const& end : {owner, reader}) end->writable(), end->readable();
        }
      };
      steps();
      box->countsIs(1, 2);
      box->shelvesDel("s");
      if (mount->state() == Vek::Dir::inStep) Vek::ptrCast<ToyBox>(mount->writableEntity())->wantedIs(3, true);
      steps();
      Connection& broken = ownersBreaks ? *owner : *reader;
      hasThrown = broken.state() == Vek::NboAttrLog::dead;
      EXPECT_TRUE(!hasThrown || broken.closeReason() == "broken pipe");
      box->lidIs("lid");

      owner->closeIs("over");
      reader->closeIs("over");
      LogPair again;
      again.owner().exports().exportIs(box, Access::writable);
      again.reader().mounts().mountIs(mount);
      again.settle();
      EXPECT_EQ(Vek::digest(*box), Vek::digest(*mount->entity()));
      EXPECT_EQ(mount->state(), Vek::Dir::inStep);
    }
  }
}

}  // namespace
}  // namespace LogTest
