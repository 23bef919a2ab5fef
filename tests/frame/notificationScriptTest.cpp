#include "tests/core/LeakCheck.h"
#include "tests/core/Property.h"
#include "tests/frame/Model.h"
#include "tests/frame/Toy.h"

#include <array>
#include <sstream>

using Vek::Ptr;

namespace Toys {

namespace {

// The script played by real toys and reactors.
class Reality final : public Stage {
 public:
  explicit Reality(Script const& script) : Stage(script) {
    for (int number = 0; number < Script::toys; ++number)
      outsideToys_[at(number)] = Vek::make<WatchedToy>(*this, number);
  }

  std::string state() override {
    std::ostringstream os;
    for (std::size_t i = 0; i < toys_.size(); ++i) {
      Toy const* const t = toys_[i];
      if (t == nullptr) continue;
      auto const reads = t->readCount();
      auto const& list = Vek::reactorsOf<Toy>(*t);
      os << "t" << i << ": references " << t->references() << ", size " << t->size() << ", writes " << t->writeCount()
         << ", reads " << reads << ", version " << list.version() << ", list";
      Vek::U32 count = 0;
      for (auto const* member = list.head(); member != nullptr; member = Vek::ReactorChain::next(*member), ++count) {
        os << " r" << static_cast<Scripted const*>(member)->number();
        if (Vek::ReactorChain::next(*member) == nullptr) RC_ASSERT(member == list.tail());
      }
      RC_ASSERT(count == list.count());
      os << '\n';
    }
    for (std::size_t i = 0; i < reactors_.size(); ++i) {
      Scripted const* const r = reactors_[i];
      if (r == nullptr) continue;
      os << "r" << i << ": references " << r->references() << ", follows " << numberOf(r->rawNotifier())
         << ", registered " << r->isRegisteredNotifiee() << ", weak " << r->isWeakReference() << ", active "
         << r->hasNotificationActive() << '\n';
    }
    return os.str();
  }

 private:
  class WatchedToy final : public Toy {
   public:
    WatchedToy(Reality& stage, int number) : Toy(Vek::Name("toy")), stage_(stage), number_(number) {
      stage_.toys_[at(number_)] = this;
    }
    ~WatchedToy() override {
      stage_.toys_[at(number_)] = nullptr;
      stage_.note("t" + std::to_string(number_) + " died");
    }

   private:
    Reality& stage_;
    int number_;
  };

  class Scripted final : public Toy::Notifiee {
   public:
    Scripted(Reality& stage, int number) : stage_(stage), number_(number) { stage_.reactors_[at(number_)] = this; }
    ~Scripted() override {
      stage_.reactors_[at(number_)] = nullptr;
      stage_.note(label() + " died");
    }
    int number() const { return number_; }
    bool isStreamAdapter() const noexcept override { return stage_.plan(number_).adapter; }

    void onSize() override {
      bool const follows = stage_.numberOf(rawNotifier()) != nobody;
      stage_.note(label() + (follows ? " size " + std::to_string(notifier()->size()) : " told, follows nobody"));
      stage_.playTurn(number_);
    }
    void onZeroReferences() override {
      stage_.note(label() + " told of the end");
      Toy::Notifiee::onZeroReferences();
      stage_.playTurn(number_);
    }
    using Toy::Notifiee::onNotificationException;
    void onNotificationException(Vek::AttributeId id) override { stage_.failed(number_, id); }

   private:
    std::string label() const { return "r" + std::to_string(number_); }

    Reality& stage_;
    int number_;
  };

  static std::size_t at(int number) { return static_cast<std::size_t>(number); }
  Toy* toy(int number) const { return number == nobody ? nullptr : toys_[at(number)]; }
  int numberOf(Vek::PtrInterface const* notifier) const {
    for (std::size_t i = 0; i < toys_.size(); ++i) {
      if (toys_[i] == notifier && notifier != nullptr) return static_cast<int>(i);
    }
    return nobody;
  }
  // The reactor, if an act can be done on it.
  Ptr<Scripted> reactor(int who) const {
    Scripted* const r = reactors_[at(who)];
    if (r == nullptr || (r->rawNotifier() != nullptr && numberOf(r->rawNotifier()) == nobody)) return {};
    return r;
  }

  // Toys are touched without a reference: whatever happens while their reactors run, the setters look to it.
  void set(int number, Vek::U64 value) override {
    if (Toy* const t = toy(number)) t->sizeIs(value);
  }
  void be(int who, Property property, bool on) override {
    auto const r = reactor(who);
    if (!r) return;
    if (property == Property::registered) r->isRegisteredNotifieeIs(on);
    if (property == Property::weak) r->isWeakReferenceIs(on);
    if (property == Property::active) r->hasNotificationActiveIs(on);
  }
  void follow(int who, int number) override {
    if (auto const r = reactor(who)) r->notifierIs(Ptr<Vek::PtrInterface const>{toy(number)});
  }
  void drop(int who) override { outsideReactors_[at(who)] = nullptr; }
  void make(int who) override {
    outsideReactors_[at(who)] = Vek::make<Scripted>(*this, who);
    be(who, Property::registered, plan(who).registered);
    follow(who, plan(who).toy);
    be(who, Property::weak, plan(who).weak);
  }
  void dropToy(int number) override { outsideToys_[at(number)] = nullptr; }

  std::array<Toy*, Script::toys> toys_{};
  std::array<Scripted*, Script::reactors> reactors_{};
  std::array<Ptr<Toy>, Script::toys> outsideToys_;
  std::array<Ptr<Scripted>, Script::reactors> outsideReactors_;
};

struct NotificationScripts : LeakCheck {};

TEST_F(NotificationScripts, RealToysAndTheModelSeeTheSame) {
  expectLaw(3000, [] {
    Script const script = anyScript();
    auto const live = Vek::CountedHeap::liveObjects();
    Reality reality{script};
    Model model{script};
    auto const same = [&] {
      RC_ASSERT(reality.trace() == model.trace());
      RC_ASSERT(reality.state() == model.state());
    };
    reality.begin();
    model.begin();
    same();
    for (Act const& act : script.outside) {
      reality.perform(act);
      model.perform(act);
      same();
    }
    reality.end();
    model.end();
    same();
    RC_ASSERT(reality.state().empty());
    RC_ASSERT(Vek::CountedHeap::liveObjects() == live);
  });
}

}  // namespace

}  // namespace Toys
