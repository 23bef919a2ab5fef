// Model: toys and reactors as plain data, and the promises of a notification told step by step.
#pragma once

#include "tests/frame/Script.h"

#include <algorithm>
#include <array>
#include <sstream>
#include <utility>

namespace Toys {

class Model final : public Stage {
 public:
  using Stage::Stage;

  std::string state() override {
    std::ostringstream os;
    for (int number = 0; number < Script::toys; ++number) {
      ModelToy& t = toy(number);
      if (!t.alive) continue;
      os << "t" << number << ": references " << t.references << ", size " << t.size << ", writes " << t.writes
         << ", reads " << t.reads << ", version " << t.version << ", list";
      for (int who : t.list) os << " r" << who;
      os << '\n';
      ++t.reads;
    }
    for (int who = 0; who < Script::reactors; ++who) {
      ModelReactor const& r = reactor(who);
      if (!r.alive) continue;
      os << "r" << who << ": references " << r.references << ", follows " << (hasToy(who) ? r.follows : nobody)
         << ", registered " << r.registered << ", weak " << r.weak << ", active " << r.active << '\n';
    }
    return os.str();
  }

 private:
  struct ModelToy {
    bool alive = true;
    bool going = false;  // its last reference has gone, and it tells so
    bool heldOutside = true;
    int references = 1;
    std::vector<int> list;
    unsigned version = 0;
    Vek::U64 size = 0;
    unsigned writes = 0;
    unsigned reads = 0;
  };
  struct ModelReactor {
    bool alive = false;
    bool heldOutside = false;
    int references = 0;
    int follows = nobody;
    bool registered = false;
    bool weak = false;
    bool active = true;
    bool wasRegistered = false;
  };

  ModelToy& toy(int number) { return toys_[static_cast<std::size_t>(number)]; }
  ModelReactor& reactor(int number) { return reactors_[static_cast<std::size_t>(number)]; }
  // Whether the reactor follows a toy that is there.
  bool hasToy(int who) { return reactor(who).follows != nobody && toy(reactor(who).follows).alive; }
  bool canAct(int who) { return reactor(who).alive && (reactor(who).follows == nobody || hasToy(who)); }

  void takeToy(int number) {
    if (number != nobody) ++toy(number).references;
  }

  void giveToy(int number) {
    if (number == nobody) return;
    ModelToy& t = toy(number);
    if (--t.references != 0 || t.going) return;
    t.going = true;
    try {
      walk(number, endEvent);
    } catch (...) {
      // nobody to tell
    }
    if (t.references == 0) {
      for (int who : std::exchange(t.list, {})) {
        if (reactor(who).weak) reactor(who).follows = nobody;
      }
      t.alive = false;
      note("t" + std::to_string(number) + " died");
    }
    t.going = false;
  }

  void giveReactor(int who) {
    ModelReactor& r = reactor(who);
    if (--r.references != 0 || !r.alive) return;
    r.alive = false;
    note("r" + std::to_string(who) + " died");
    if (r.follows == nobody) return;
    if (r.registered) unlink(r.follows, who);
    if (!r.weak) giveToy(r.follows);
  }

  void link(int number, int who) {
    auto& list = toy(number).list;
    list.insert(plan(who).adapter ? list.begin() : list.end(), who);
    ++toy(number).version;
  }

  void unlink(int number, int who) {
    auto& list = toy(number).list;
    auto const place = std::find(list.begin(), list.end(), who);
    if (place == list.end()) return;
    list.erase(place);
    ++toy(number).version;
  }

  void moveTo(int who, int number) {
    ModelReactor& r = reactor(who);
    int const old = r.follows;
    if (number == old) return;
    takeToy(old);
    r.follows = number;
    if (!r.weak) {
      takeToy(number);
      giveToy(old);
    }
    if (r.registered && old != nobody) unlink(old, who);
    if (r.registered && number != nobody) link(number, who);
    giveToy(old);
  }

  void registerIt(int who, bool on) {
    ModelReactor& r = reactor(who);
    if (r.registered == on) return;
    r.registered = on;
    if (r.follows == nobody) return;
    on ? link(r.follows, who) : unlink(r.follows, who);
    if (!on && r.weak && toy(r.follows).going) r.follows = nobody;
  }

  void walk(int number, Vek::AttributeId event) {
    std::vector<int> const turns = toy(number).list;
    if (turns.empty()) return;
    bool const holds = toy(number).references != 0;
    if (holds) takeToy(number);
    for (int who : turns) ++reactor(who).references;
    std::size_t at = 0;
    auto const over = [&] {
      while (at < turns.size()) giveReactor(turns[at++]);
      if (holds) giveToy(number);
    };
    try {
      while (at < turns.size()) {
        try {
          call(turns[at], event);
        } catch (...) {
          failed(turns[at], event);
        }
        giveReactor(turns[at++]);
        while (at < turns.size() && reactor(turns[at]).references == 1) giveReactor(turns[at++]);
      }
    } catch (...) {
      over();
      throw;
    }
    over();
  }

  void call(int who, Vek::AttributeId event) {
    ModelReactor const& r = reactor(who);
    std::string const name = "r" + std::to_string(who);
    if (event == endEvent) {
      note(name + " told of the end");
      if (r.weak && !r.registered) moveTo(who, nobody);
    } else if (!hasToy(who)) {
      note(name + " told, follows nobody");
    } else {
      ModelToy& t = toy(r.follows);
      ++t.reads;
      note(name + " size " + std::to_string(t.size));
    }
    playTurn(who);
  }

  void set(int number, Vek::U64 value) override {
    ModelToy& t = toy(number);
    if (!t.alive || t.size == value) return;
    t.size = value;
    ++t.writes;
    walk(number, sizeEvent);
  }

  void be(int who, Property property, bool on) override {
    ModelReactor& r = reactor(who);
    if (!canAct(who)) return;
    ++r.references;
    if (property == Property::registered) registerIt(who, on);
    if (property == Property::weak && r.weak != on) {
      r.weak = on;
      on ? giveToy(r.follows) : takeToy(r.follows);
    }
    if (property == Property::active && r.active != on) {
      r.active = on;
      if (!on) r.wasRegistered = r.registered;
      if (!on || r.wasRegistered) registerIt(who, on);
    }
    giveReactor(who);
  }

  void follow(int who, int number) override {
    if (!canAct(who)) return;
    if (number != nobody && !toy(number).alive) number = nobody;
    ++reactor(who).references;
    takeToy(number);
    moveTo(who, number);
    giveToy(number);
    giveReactor(who);
  }

  void drop(int who) override {
    if (std::exchange(reactor(who).heldOutside, false)) giveReactor(who);
  }

  void make(int who) override {
    ModelReactor& r = reactor(who);
    r.alive = r.heldOutside = true;
    r.references = 1;
    registerIt(who, plan(who).registered);
    follow(who, plan(who).toy);
    be(who, Property::weak, plan(who).weak);
  }

  void dropToy(int number) override {
    if (std::exchange(toy(number).heldOutside, false)) giveToy(number);
  }

  std::array<ModelToy, Script::toys> toys_;
  std::array<ModelReactor, Script::reactors> reactors_;
};

}  // namespace Toys
