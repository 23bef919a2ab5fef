#include "tests/frame/CollectionScript.h"

#include <rapidcheck.h>

#include <utility>

namespace Toys::Collecting {

std::ostream& operator<<(std::ostream& os, Act const& act) {
  using Kind = Act::Kind;
  auto const key = ' ' + std::to_string(act.key);
  auto const place = ' ' + std::to_string(act.place);
  switch (act.kind) {
  case Kind::set: return os << "set" << key << " to " << act.value;
  case Kind::make: return os << "make" << key << " with " << act.value;
  case Kind::del: return os << "delete" << key;
  case Kind::delAll: return os << "delete all";
  case Kind::notify: return os << "notify" << key;
  case Kind::hold: return os << "hold" << key << " as" << place;
  case Kind::letGo: return os << "let" << place << " go";
  case Kind::changeHeld: return os << "change held" << place << " to " << act.value;
  case Kind::open: return os << "open iterator" << place;
  case Kind::openAt: return os << "open iterator" << place << " at" << key;
  case Kind::step: return os << "step iterator" << place;
  case Kind::copy: return os << "copy iterator" << place;
  case Kind::close: return os << "close iterator" << place;
  case Kind::delAt: return os << "delete at iterator" << place;
  case Kind::fail: return os << "throw";
  case Kind::failTwice: return os << "throw twice";
  }
  return os;
}

std::ostream& operator<<(std::ostream& os, Script const& script) {
  auto const print = [&os](char const* who, Acts const& acts) {
    os << "\n  " << who << ": ";
    for (std::size_t i = 0; i < acts.size(); ++i) os << (i > 0 ? "; " : "") << acts[i];
  };
  for (std::size_t who = 0; who < script.turns.size(); ++who) {
    for (Acts const& turn : script.turns[who]) print(("r" + std::to_string(who) + " when called").c_str(), turn);
  }
  print("outside", script.outside);
  return os << '\n';
}

namespace {

// A number below `limit`, whatever the size of the case.
int below(int limit) { return *rc::gen::resize(rc::kNominalSize, rc::gen::inRange(0, limit)); }

rc::Gen<Act> anyAct() {
  return rc::gen::exec([] {
    using Kind = Act::Kind;
    static constexpr struct {
      Kind kind;
      int weight;
    } mix[] = {{Kind::set, 14},   {Kind::make, 1},   {Kind::del, 3},   {Kind::delAll, 1},
               {Kind::notify, 1}, {Kind::hold, 2},   {Kind::letGo, 1}, {Kind::changeHeld, 1},
               {Kind::open, 2},   {Kind::openAt, 1}, {Kind::step, 8},  {Kind::copy, 1},
               {Kind::close, 1},  {Kind::delAt, 2},  {Kind::fail, 1},  {Kind::failTwice, 1}};
    int total = 0;
    for (auto const& entry : mix) total += entry.weight;
    int drawn = below(total);
    auto const* entry = mix;
    while (drawn >= entry->weight) drawn -= entry++->weight;
    return Act{entry->kind, below(Script::keys), below(3), below(Script::places)};
  });
}

rc::Gen<Acts> anyActs(double scale) { return rc::gen::scale(scale, rc::gen::container<Acts>(anyAct())); }

}  // namespace

Script anyScript() {
  return *rc::gen::exec([] {
    Script script;
    for (int who = 0; who < Script::reactors; ++who) {
      script.turns.push_back(
          *rc::gen::scale(0.3, rc::gen::container<std::vector<Acts>>(rc::gen::scale(3, anyActs(0.05)))));
    }
    script.outside = *anyActs(2);
    return script;
  });
}

void Stage::perform(Act const& doIt) {
  try {
    act(doIt);
  } catch (SecondFailure const&) {
    note("the caller hears a second failure");
  }
}

void Stage::called(int who, int key, int value) {
  note('r' + std::to_string(who) + " hears of " + std::to_string(key) + " with " + std::to_string(value));
  std::size_t const turn = turn_[at(who)]++;
  auto const& turns = script_.turns[at(who)];
  if (turn >= turns.size()) return;
  for (Act const& next : turns[turn]) {
    failsAgain_[at(who)] = next.kind == Act::Kind::failTwice;
    if (next.kind == Act::Kind::fail || failsAgain_[at(who)]) throw Failure{};
    act(next);
  }
}

void Stage::failed(int who) {
  note('r' + std::to_string(who) + " failed");
  if (std::exchange(failsAgain_[at(who)], false)) throw SecondFailure{};
}

void Stage::act(Act const& act) {
  using Kind = Act::Kind;
  switch (act.kind) {
  case Kind::set: return set(act.key, act.value);
  case Kind::make: return make(act.key, act.value);
  case Kind::del: return note("removed " + std::to_string(del(act.key)));
  case Kind::delAll: return delAll();
  case Kind::notify: return notify(act.key);
  case Kind::hold: return hold(act.place, act.key);
  case Kind::letGo: return letGo(act.place);
  case Kind::changeHeld: return changeHeld(act.place, act.value);
  case Kind::open: return open(act.place);
  case Kind::openAt: return openAt(act.place, act.key);
  case Kind::step: return step(act.place);
  case Kind::copy: return copy(act.place, (act.place + 1) % Script::places);
  case Kind::close: return close(act.place);
  case Kind::delAt: return note("removed " + std::to_string(delAt(act.place)));
  case Kind::fail:
  case Kind::failTwice: return;  // a turn's own, see called
  }
}

std::string shown(char const* what, int place, int key, int value, bool present) {
  return std::string(what) + std::to_string(place) + ' ' + std::to_string(key) + '=' + std::to_string(value) +
         (present ? "\n" : " gone\n");
}

}  // namespace Toys::Collecting
