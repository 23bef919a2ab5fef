// What reactors may do while they are called, and who is called nevertheless.
#include "tests/core/LeakCheck.h"
#include "tests/frame/Listener.h"

#include <map>

using Vek::Ptr;

namespace Toys {

namespace {

// Tells when it dies. One whose label begins with L stands for a log.
class Mortal final : public ToyListener {
 public:
  Mortal(Calls& calls, std::string const& label) : ToyListener(calls, label), calls_(calls), label_(label) {}
  ~Mortal() override { calls_.push_back(label_ + (isCalled_ ? " dies in its call" : " dies")); }
  bool isStreamAdapter() const noexcept override { return label_[0] == 'L'; }
  void onSize() override {
    isCalled_ = true;
    struct Over {
      bool& isCalled;
      ~Over() { isCalled = false; }
    } const over{isCalled_};
    ToyListener::onSize();
  }
  using ToyListener::onNotificationException;
  void onNotificationException(Vek::AttributeId id) override {
    ToyListener::onNotificationException(id);
    if (failsAgain) throw;
  }
  bool failsAgain = false;

 private:
  Calls& calls_;
  std::string label_;
  bool isCalled_ = false;
};

struct Scene {
  Scene() {
    for (char const* label : {"a", "b", "c"}) make(label);
  }
  void make(char const* label) { reactors[label] = listen<Mortal>(toy, calls, label); }
  Mortal& the(char const* label) { return *reactors[label]; }
  // Its calls; the walk alone holds the toy meanwhile. "caught" for what reaches the setter.
  Calls change() {
    calls.clear();
    try {
      toy.ptr()->sizeIs(toy.ptr()->size() + 1);
    } catch (int) {
      calls.emplace_back("caught");
    }
    return calls;
  }

  Calls calls;
  Ptr<Toy> toy = toyFactory("toy");
  Ptr<Toy> other = toyFactory("other");
  std::map<std::string, Ptr<Mortal>> reactors;  // none of them holds its toy
};

struct ReactorWalk : LeakCheck {};

TEST_F(ReactorWalk, CallsWhoStoodOnTheListUnlessTheWalkAloneHoldsIt) {
  Calls const abc{"a size", "b size", "c size"};
  Calls const ac{"a size", "c size"};
  Calls const bc{"b size", "c size"};
  struct {
    char const* what;
    std::function<void(Scene&)> act;  // of a, in its first call
    Calls then, next;                 // the calls of that change, and of another
  } const cases[] = {
      {"a leaves", [](Scene& s) { s.the("a").isRegisteredNotifieeIs(false); }, abc, bc},
      {"b leaves, and is held", [](Scene& s) { s.the("b").isRegisteredNotifieeIs(false); }, abc, ac},
      {"b is dropped", [](Scene& s) { s.reactors.erase("b"); }, {"a size", "b dies", "c size"}, ac},
      {"a is dropped", [](Scene& s) { s.reactors.erase("a"); }, {"a size", "a dies", "b size", "c size"}, bc},
      {"b moves on", [](Scene& s) { s.the("b").notifierIs(s.other); }, abc, ac},
      {"c leaves, d comes",
       [](Scene& s) { s.the("c").isRegisteredNotifieeIs(false), s.make("d"); },
       abc,
       {"a size", "b size", "d size"}},
      {"logs come",
       [](Scene& s) { s.make("L1"), s.make("L2"); },
       abc,
       {"L2 size", "L1 size", "a size", "b size", "c size"}},
      {"b is off", [](Scene& s) { s.the("b").hasNotificationActiveIs(false); }, abc, ac},
      {"b is off and on",
       [](Scene& s) { s.the("b").hasNotificationActiveIs(false), s.the("b").hasNotificationActiveIs(true); },
       abc,
       {"a size", "c size", "b size"}},
      {"it changes again",
       [](Scene& s) { s.toy->sizeInc(1); },
       {"a size", "a size", "b size", "c size", "b size", "c size"},
       abc},
      {"a fails", [](Scene&) { throw 1; }, {"a size", "a exception 258", "b size", "c size"}, abc},
      {"a fails twice",
       [](Scene& s) { s.the("a").failsAgain = true, throw 1; },
       {"a size", "a exception 258", "caught"},
       abc},
  };
  for (auto const& each : cases) {
    SCOPED_TRACE(each.what);
    Scene scene;
    scene.the("a").nextDo({[&] { each.act(scene); }});
    EXPECT_EQ(scene.change(), each.then);
    EXPECT_EQ(scene.toy->size(), each.then.size() > 5 ? 2U : 1U) << "it stays, whoever failed";
    EXPECT_EQ(scene.change(), each.next);
    for (auto const& [label, reactor] : scene.reactors) EXPECT_EQ(reactor->references(), 1U) << label;
    EXPECT_EQ(scene.toy->references(), 1U);
    EXPECT_EQ(Vek::reactorsOf<Toy>(*scene.toy).count(), each.next.size());
  }
}

TEST_F(ReactorWalk, TheOnlyReactorIsHeldTooInItsCall) {
  Scene scene;
  for (char const* label : {"b", "c"}) scene.reactors.erase(label);
  scene.the("a").nextDo({[&] { scene.reactors.clear(); }});
  EXPECT_EQ(scene.change(), (Calls{"a size", "a dies"}));
}

TEST_F(ReactorWalk, AToyLivesToTheEndOfItsWalkAndTellsOfItsEndWhoIsStillOnItsList) {
  Scene scene;
  scene.the("a").nextDo({[&] {
                           scene.toy = nullptr;
                           scene.the("b").isRegisteredNotifieeIs(false);
                           scene.the("b").notifierIs(nullptr);
                         },
                         [&] { scene.the("c").isRegisteredNotifieeIs(false); }});
  EXPECT_EQ(scene.change(), (Calls{"a size", "b size", "c size", "a end", "c end"}));
  for (auto const& [label, reactor] : scene.reactors) EXPECT_EQ(reactor->rawNotifier(), nullptr) << label;
}

TEST_F(ReactorWalk, AReactorThatIsNotWeakKeepsItsToyUntilItMovesOn) {
  Scene scene;
  Mortal& a = scene.the("a");
  for (bool const weak : {false, true, false}) {
    a.isWeakReferenceIs(weak);
    EXPECT_EQ(scene.toy->references(), weak ? 1U : 2U);
  }
  scene.toy = nullptr;
  EXPECT_EQ(scene.calls, Calls{});
  a.notifierIs(scene.other);
  EXPECT_EQ(scene.calls, (Calls{"b end", "c end"}));
  EXPECT_EQ(scene.other->references(), 2U);
  scene.other->sizeIs(7);
  EXPECT_EQ(scene.calls.back(), "a size");
  a.notifierIs(nullptr);
  EXPECT_EQ(scene.other->references(), 1U);

  // A weak one that is told of the end off the list lets go too.
  a.isWeakReferenceIs(true);
  a.isRegisteredNotifieeIs(false);
  a.notifierIs(scene.other);
  a.onZeroReferences();
  EXPECT_EQ(a.rawNotifier(), nullptr);
}

}  // namespace

}  // namespace Toys
