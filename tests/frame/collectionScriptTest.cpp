// Scripts of changes to a collection, played by a real box and by plain containers: after each act both look the same.
// A walk goes on behind the key on which it stands: so no member is met twice, unless it was removed and added again,
// and none is passed over that stood throughout. That holds of the iterators of the type and of those that a generic
// opens by the attribute's number alike.
#include "tests/frame/CollectionScript.h"

#include "dornl3/core/BitReverse.h"
#include "tests/core/LeakCheck.h"
#include "tests/core/Property.h"
#include "tests/frame/CollectionCursor.h"

#include <map>
#include <memory>
#include <optional>
#include <sstream>

using Vek::Ptr;
using Vek::U32;

namespace Toys::Collecting {

namespace {

template <class C>
class Model final : public Stage {
 public:
  using Stage::Stage;

  std::string state() override {
    std::ostringstream os;
    for (auto const& [key, member] : members_) os << key << '=' << member->value << ' ';
    os << "count " << members_.size() << ", writes " << writes_ << ", reads " << reads_ << '\n';
    for (int place = 0; place < Script::places; ++place) {
      if (Held const& m = held_[at(place)]) os << shown("held ", place, m->key, m->value, m->present);
      if (Held const& m = iterators_[at(place)]) os << shown("iterator ", place, m->key, m->value, m->present);
    }
    return os.str();
  }

 private:
  struct Member {
    int key;
    int value;
    bool present = true;
  };
  using Held = std::shared_ptr<Member>;
  struct Before {
    bool operator()(int a, int b) const { return C::isBefore(a, b); }
  };

  Held find(int key) const {
    auto const found = members_.find(key);
    return found == members_.end() ? nullptr : found->second;
  }
  Held behind(Member const& member) const {
    auto const found = members_.upper_bound(member.key);
    return found == members_.end() ? nullptr : found->second;
  }
  void leave(Held const& member) {
    member->present = false;
    members_.erase(member->key);
  }
  int remove(Held const& member) {
    leave(member);
    ++writes_;
    notify(member->key);
    return member->value;
  }

  void set(int key, int value) override {
    if (Held const member = find(key)) {
      if (C::holdsChildren) ++writes_;
      if (C::holdsChildren || member->value == C::value(value)) return;
      member->value = C::value(value);
    } else {
      make(key, value);
    }
    ++writes_;
    notify(key);
  }
  void make(int key, int value) override {
    if (Held const old = find(key)) leave(old);
    members_[key] = std::make_shared<Member>(Member{key, C::value(value)});
  }
  int del(int key) override {
    Held const member = find(key);
    return member ? remove(member) : C::value(0);
  }
  void delAll() override {
    Held member = members_.empty() ? nullptr : members_.begin()->second;
    for (; member; member = behind(*member)) remove(member);
  }
  void notify(int key) override {
    for (int who = 0; who < Script::reactors; ++who) {
      try {
        ++reads_;
        Held const member = find(key);
        called(who, key, member ? member->value : C::value(0), writes_);
      } catch (...) {
        failed(who);
      }
    }
  }
  void hold(int place, int key) override { held_[at(place)] = find(key); }
  void letGo(int place) override { held_[at(place)] = nullptr; }
  void changeHeld(int place, int value) override {
    if (held_[at(place)]) held_[at(place)]->value = C::value(value);
  }
  void open(int place) override { iterators_[at(place)] = members_.empty() ? nullptr : members_.begin()->second; }
  void openAt(int place, int key) override { iterators_[at(place)] = find(key); }
  void step(int place) override {
    if (Held const member = iterators_[at(place)]) iterators_[at(place)] = behind(*member);
  }
  void copy(int from, int to) override { iterators_[at(to)] = iterators_[at(from)]; }
  void close(int place) override { iterators_[at(place)] = nullptr; }
  int delAt(int place) override {
    Held const member = iterators_[at(place)];
    return member && member->present ? remove(member) : C::value(0);
  }

  std::map<int, Held, Before> members_;
  std::array<Held, Script::places> held_;
  std::array<Held, Script::places> iterators_;
  U32 writes_ = 0;
  U32 reads_ = 0;
};

template <class C, class Cursor>
class Reality final : public Stage {
 public:
  using Stage::Stage;

  std::string state() override {
    std::ostringstream os;
    U32 count = 0;
    for (auto it = C::iterator(*box_); it; ++it, ++count) os << C::number(*it) << '=' << C::value(*it) << ' ';
    RC_ASSERT(count == C::count(*box_));
    os << "count " << count << ", writes " << box_->writeCount() << ", reads " << box_->readCount() << '\n';
    for (int place = 0; place < Script::places; ++place) {
      if (auto const& m = held_[at(place)]) os << shown("held ", place, C::number(*m), C::value(*m), present(*m));
      auto const& it = iterators_[at(place)];
      if (it && *it) os << shown("iterator ", place, it->number(), it->value(), present(it->member()));
    }
    return os.str();
  }

 private:
  using Member = typename C::Member;

  class Reactor final : public ToyBox::Notifiee {
   public:
    Reactor(Reality& stage, int who, ToyBox* box) : stage_(stage), who_(who) {
      isWeakReferenceIs(true);
      isRegisteredNotifieeIs(true);
      notifierIs(Ptr<ToyBox const>(box));
    }
    using ToyBox::Notifiee::onCounts;
    using ToyBox::Notifiee::onShelves;
    using ToyBox::Notifiee::onWanted;
    void onCounts(U32 key) override { stage_.hears(who_, C::number(key)); }
    void onWanted(U32 key) override { stage_.hears(who_, C::number(key)); }
    void onShelves(Vek::Name key) override { stage_.hears(who_, C::number(key)); }
    using ToyBox::Notifiee::onNotificationException;
    void onNotificationException(Vek::AttributeId id) override {
      RC_ASSERT(id == C::id);
      stage_.failed(who_);
    }

   private:
    Reality& stage_;
    int who_;
  };

  void hears(int who, int key) {
    for (auto const& member : held_) {
      if (member) present(*member);  // whose parent is right during every call
    }
    called(who, key, C::get(*box_, key), box_->writeCount());
  }
  Member* find(int key) const {
    auto it = C::iterator(*box_);
    while (it && C::number(*it) != key) ++it;
    return it.ptr();
  }
  bool present(Member const& member) const {
    bool const found = find(C::number(member)) == &member;
    if constexpr (C::holdsChildren) RC_ASSERT((member.parent() == box_.ptr()) == found);
    return found;
  }

  void set(int key, int value) override { C::set(*box_, key, value); }
  void make(int key, int value) override { C::make(*box_, key, value); }
  int del(int key) override { return C::removed(C::del(*box_, key)); }
  void delAll() override { C::delAll(*box_); }
  void notify(int key) override { C::notify(*box_, key); }
  void hold(int place, int key) override { held_[at(place)] = find(key); }
  void letGo(int place) override { held_[at(place)] = nullptr; }
  void changeHeld(int place, int value) override {
    if (auto const& member = held_[at(place)]) C::change(*member, value);
  }
  void open(int place) override { iterators_[at(place)] = Cursor(*box_); }
  void openAt(int place, int key) override { iterators_[at(place)] = Cursor(*box_, key); }
  void step(int place) override {
    auto& it = iterators_[at(place)];
    if (it && *it) it->step();
  }
  void copy(int from, int to) override { iterators_[at(to)] = iterators_[at(from)]; }
  void close(int place) override { iterators_[at(place)].reset(); }
  int delAt(int place) override {
    // The reactors may close or reopen this iterator while the removal runs.
    auto& it = iterators_[at(place)];
    return it ? C::removed(C::delAt(*box_, it->iterator())) : C::value(0);
  }

  Ptr<ToyBox> box_ = toyBoxFactory("box");
  std::array<Ptr<Reactor>, Script::reactors> reactors_{Vek::make<Reactor>(*this, 0, box_.ptr()),
                                                       Vek::make<Reactor>(*this, 1, box_.ptr())};
  std::array<Ptr<Member>, Script::places> held_;
  std::array<std::optional<Cursor>, Script::places> iterators_;
};

// Numbers of a script as keys: half of them share few buckets of a hashed collection.
constexpr U32 spread(int number) { return static_cast<U32>(number < Script::keys / 2 ? number : number * 16); }
constexpr int numberOf(U32 key) { return static_cast<int>(key < Script::keys / 2 ? key : key / 16); }

template <class M>
struct Numbered {
  using Member = M;
  using Map = typename M::Map;
  using Iterator = typename Map::Iterator;
  using Key = U32;
  static constexpr bool holdsChildren = false;
  static U32 key(int number) { return spread(number); }
  static int number(U32 key) { return numberOf(key); }
  static int number(Vek::Name const&) { return -1; }
  static int number(M const& member) { return numberOf(member.key()); }
};

struct Ordered : Numbered<ToyBox::VekCounts> {
  static constexpr Vek::AttributeId id = 258;
  static bool isBefore(int a, int b) { return spread(a) < spread(b); }
  static int value(int value) { return value; }
  static int value(Member const& member) { return static_cast<int>(member.value()); }
  static int removed(U32 value) { return static_cast<int>(value); }
  static void change(Member& member, int value) { member.valueIs(static_cast<U32>(value)); }
  static int get(ToyBox& box, int key) { return static_cast<int>(box.counts(spread(key))); }
  static void set(ToyBox& box, int key, int value) { box.countsIs(spread(key), static_cast<U32>(value)); }
  static void make(ToyBox& box, int key, int value) { box.newCounts(spread(key), static_cast<U32>(value)); }
  static U32 del(ToyBox& box, int key) { return box.countsDel(spread(key)); }
  static U32 delAt(ToyBox& box, Iterator& it) { return box.countsDel(it); }
  static void delAll(ToyBox& box) { box.countsDelAll(); }
  static void notify(ToyBox& box, int key) { box.countsNotify(spread(key)); }
  static U32 count(ToyBox& box) { return box.countsCount(); }
  static Iterator iterator(ToyBox& box) { return box.countsIterator(); }
};

struct Hashed : Numbered<ToyBox::VekWanted> {
  static constexpr Vek::AttributeId id = 260;
  static bool isBefore(int a, int b) { return Vek::bitReverse(spread(a)) < Vek::bitReverse(spread(b)); }
  static int value(int value) { return value % 2; }
  static int value(Member const& member) { return member.value(); }
  static int removed(bool value) { return value; }
  static void change(Member& member, int value) { member.valueIs(value % 2 != 0); }
  static int get(ToyBox& box, int key) { return box.wanted(spread(key)); }
  static void set(ToyBox& box, int key, int value) { box.wantedIs(spread(key), value % 2 != 0); }
  static void make(ToyBox& box, int key, int value) { box.newWanted(spread(key), value % 2 != 0); }
  static bool del(ToyBox& box, int key) { return box.wantedDel(spread(key)); }
  static bool delAt(ToyBox& box, Iterator& it) { return box.wantedDel(it); }
  static void delAll(ToyBox& box) { box.wantedDelAll(); }
  static void notify(ToyBox& box, int key) { box.wantedNotify(spread(key)); }
  static U32 count(ToyBox& box) { return box.wantedCount(); }
  static Iterator iterator(ToyBox& box) { return box.wantedIterator(); }
};

// Children have no value: a removal gives 0 for none and 0 for one, and the parent tells which are present.
struct Keyed {
  using Member = Shelf;
  using Iterator = Shelf::Map::Iterator;
  using Key = Vek::Name;
  static constexpr Vek::AttributeId id = 266;
  static constexpr bool holdsChildren = true;
  static Vek::Name key(int number) { return Vek::Name(std::string_view(std::to_string(number))); }
  static bool isBefore(int a, int b) {
    U32 const hashOfA = Vek::bitReverse(key(a).hash());
    U32 const hashOfB = Vek::bitReverse(key(b).hash());
    return hashOfA != hashOfB ? hashOfA < hashOfB : key(a) < key(b);
  }
  static int number(Vek::Name const& key) { return std::stoi(std::string(std::string_view(key))); }
  static int number(U32) { return -1; }
  static int number(Shelf const& shelf) { return number(shelf.name()); }
  static int value(int) { return 0; }
  static int value(Shelf const&) { return 0; }
  static int removed(Ptr<Shelf> const& shelf) {
    if (shelf) RC_ASSERT(!shelf->parent());
    return 0;
  }
  static void change(Shelf&, int) {}
  static int get(ToyBox& box, int number) {
    static_cast<void>(box.shelves(key(number)));
    return 0;
  }
  static void set(ToyBox& box, int number, int) { RC_ASSERT(box.shelvesIs(key(number))->name() == key(number)); }
  static void make(ToyBox& box, int number, int) { box.newShelves(key(number)); }
  static Ptr<Shelf> del(ToyBox& box, int number) { return box.shelvesDel(key(number)); }
  static Ptr<Shelf> delAt(ToyBox& box, Iterator& it) { return box.shelvesDel(it); }
  static void delAll(ToyBox& box) { box.shelvesDelAll(); }
  static void notify(ToyBox& box, int number) { box.shelvesNotify(key(number)); }
  static U32 count(ToyBox& box) { return box.shelvesCount(); }
  static Iterator iterator(ToyBox& box) { return box.shelvesIterator(); }
};

template <class C, template <class> class Cursor>
struct By {
  using Real = Reality<C, Cursor<C>>;
  using Plain = Model<C>;
};

template <class Players>
struct CollectionScripts : LeakCheck {};
using Kinds = testing::Types<By<Ordered, TypedCursor>, By<Hashed, TypedCursor>, By<Keyed, TypedCursor>,
                             By<Ordered, NumberedCursor>, By<Hashed, NumberedCursor>, By<Keyed, NumberedCursor>>;
TYPED_TEST_SUITE(CollectionScripts, Kinds);

TYPED_TEST(CollectionScripts, ABoxAndPlainContainersSeeTheSame) {
  expectLaw(1000, [] {
    Script const script = anyScript();
    auto const live = Vek::CountedHeap::liveObjects();
    {
      typename TypeParam::Real reality{script};
      typename TypeParam::Plain model{script};
      for (Act const& act : script.outside) {
        reality.perform(act);
        model.perform(act);
        RC_ASSERT(reality.trace() == model.trace());
        RC_ASSERT(reality.state() == model.state());
      }
    }
    RC_ASSERT(Vek::CountedHeap::liveObjects() == live);
  });
}

}  // namespace

}  // namespace Toys::Collecting
