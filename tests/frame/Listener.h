// Listener: reactors of toys, boxes and shelves that write down every call and do what a test tells them.
#pragma once

#include "tests/frame/Toy.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace Toys {

using Calls = std::vector<std::string>;

/// A reactor of an X, whatever X tells.
template <class X>
class Listener : public X::Notifiee {
 public:
  Listener(Calls& calls, std::string label) : calls_(calls), label_(std::move(label)) {}

  void onZeroReferences() override {
    X::Notifiee::onZeroReferences();
    called("end");
  }
  using X::Notifiee::onNotificationException;
  void onNotificationException(Vek::AttributeId id) override { called("exception " + std::to_string(id)); }

  /// What the next calls do, one act each; an empty one does nothing.
  void nextDo(std::vector<std::function<void()>> acts) { acts_ = std::move(acts); }
  /// What every call does that has no act of its own.
  std::function<void()> always;

 protected:
  void called(std::string const& what) {
    calls_.push_back(label_ + ' ' + what);
    std::function<void()> act = always;
    if (!acts_.empty()) {
      act = acts_.front();
      acts_.erase(acts_.begin());
    }
    if (act) act();
  }

 private:
  Calls& calls_;
  std::string label_;
  std::vector<std::function<void()>> acts_;
};

struct ToyListener : Listener<Toy> {
  using Listener::Listener;

  void onSize() override { called("size"); }
  void onBroken() override { called("broken"); }
  void onPlayed() override { called("played"); }
  void onText() override { called("text"); }
  void onPlace() override { called("place"); }
};

struct BoxListener : Listener<ToyBox> {
  using Listener::Listener;
  using ToyBox::Notifiee::onCounts;
  using ToyBox::Notifiee::onFaps;
  using ToyBox::Notifiee::onNotes;
  using ToyBox::Notifiee::onShelves;
  using ToyBox::Notifiee::onVlans;
  using ToyBox::Notifiee::onWanted;

  void onCounts(Vek::U32 key) override { called("counts " + std::to_string(key)); }
  void onFaps(Hardware::Dorn::FapId key) override { called("faps " + std::to_string(key.value())); }
  void onWanted(Vek::U32 key) override { called("wanted " + std::to_string(key)); }
  void onNotes(Vek::String8 key) override { called("notes " + std::string(key.view())); }
  void onVlans(Bridging::VlanIdOrNone key) override { called("vlans " + std::to_string(key.value())); }
  void onLid() override { called("lid"); }
  void onShelves(Vek::Name key) override { called("shelves " + std::string(std::string_view(key))); }
};

struct ShelfListener : Listener<Shelf> {
  using Listener::Listener;
  using Shelf::Notifiee::onDrawers;
  void onDrawers(Vek::String8 key) override { called("drawers " + std::string(key.view())); }
};

/// Makes a reactor that follows `entity` and is on its list. A weak one holds no reference on it.
template <class Reactor, class X>
Vek::Ptr<Reactor> listen(Vek::Ptr<X> const& entity, Calls& calls, std::string label) {
  auto reactor = Vek::make<Reactor>(calls, std::move(label));
  reactor->isWeakReferenceIs(true);
  reactor->isRegisteredNotifieeIs(true);
  reactor->notifierIs(entity);
  return reactor;
}

}  // namespace Toys
