#include "tests/frame/Model.h"

#include <algorithm>
#include <sstream>
#include <utility>

namespace Toys {

std::string Model::state() {
  std::ostringstream os;
  for (int number = 0; number < Script::toys; ++number) {
    ModelToy& t = toy(number);
    if (!t.alive) continue;
    os << "t" << number << ": references " << t.references << ", size " << t.size << ", broken " << t.broken
       << ", writes " << t.writes << ", reads " << t.reads << ", version " << t.version << ", list";
    for (int who : t.list) os << " r" << who;
    os << '\n';
    t.reads += 2;
  }
  for (int who = 0; who < Script::reactors; ++who) {
    ModelReactor const& r = reactor(who);
    if (!r.alive) continue;
    os << "r" << who << ": references " << r.references << ", follows " << (hasToy(who) ? r.follows : nobody)
       << ", registered " << r.registered << ", weak " << r.weak << ", active " << r.active << '\n';
  }
  return os.str();
}

void Model::takeToy(int number) {
  if (number != nobody) ++toy(number).references;
}

void Model::giveToy(int number) {
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

void Model::giveReactor(int who) {
  ModelReactor& r = reactor(who);
  if (--r.references != 0 || !r.alive) return;
  r.alive = false;
  note("r" + std::to_string(who) + " died");
  if (r.follows == nobody) return;
  if (r.registered) unlink(r.follows, who);
  if (!r.weak) giveToy(r.follows);
}

void Model::link(int number, int who) {
  auto& list = toy(number).list;
  list.insert(plan(who).adapter ? list.begin() : list.end(), who);
  ++toy(number).version;
}

void Model::unlink(int number, int who) {
  auto& list = toy(number).list;
  auto const place = std::find(list.begin(), list.end(), who);
  if (place == list.end()) return;
  list.erase(place);
  ++toy(number).version;
}

void Model::moveTo(int who, int number) {
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

void Model::registerIt(int who, bool on) {
  ModelReactor& r = reactor(who);
  if (r.registered == on) return;
  r.registered = on;
  if (r.follows == nobody) return;
  on ? link(r.follows, who) : unlink(r.follows, who);
  if (!on && r.weak && toy(r.follows).going) r.follows = nobody;
}

void Model::walk(int number, Vek::AttributeId event) {
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

void Model::call(int who, Vek::AttributeId event) {
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
    note(name + (event == sizeEvent ? " size " + std::to_string(t.size) : " broken " + std::to_string(t.broken)));
  }
  playTurn(who);
}

void Model::set(int number, Vek::AttributeId attribute, Vek::U64 value) {
  ModelToy& t = toy(number);
  Vek::U64& field = attribute == sizeEvent ? t.size : t.broken;
  if (!t.alive || field == value) return;
  field = value;
  ++t.writes;
  walk(number, attribute);
}

void Model::increment(int number, Vek::U64 delta) {
  ModelToy& t = toy(number);
  if (!t.alive) return;
  ++t.reads;
  t.size += delta;
  if (delta != 0) walk(number, sizeEvent);
}

void Model::be(int who, Property property, bool on) {
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

void Model::follow(int who, int number) {
  if (!canAct(who)) return;
  if (number != nobody && !toy(number).alive) number = nobody;
  ++reactor(who).references;
  takeToy(number);
  moveTo(who, number);
  giveToy(number);
  giveReactor(who);
}

void Model::drop(int who) {
  if (std::exchange(reactor(who).heldOutside, false)) giveReactor(who);
}

void Model::make(int who) {
  ModelReactor& r = reactor(who);
  if (r.made) return;
  r.made = r.alive = r.heldOutside = true;
  r.references = 1;
  registerIt(who, plan(who).registered);
  follow(who, plan(who).toy);
  be(who, Property::weak, plan(who).weak);
}

void Model::dropToy(int number) {
  if (std::exchange(toy(number).heldOutside, false)) giveToy(number);
}

}  // namespace Toys
