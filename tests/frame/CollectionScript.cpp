#include "tests/frame/CollectionScript.h"

#include <rapidcheck.h>

#include <utility>

namespace Toys::Collecting {

namespace {

// Every kind of act, and how often it is drawn.
constexpr struct {
  char const* name;
  int weight;
} kinds[] = {{"set", 14},   {"make", 1},        {"delete", 3}, {"delete all", 1}, {"notify", 1}, {"hold", 2},
             {"let go", 1}, {"change held", 1}, {"open", 2},   {"open at", 1},    {"step", 8},   {"copy", 1},
             {"close", 1},  {"delete at", 2},   {"throw", 1},  {"throw twice", 1}};

}  // namespace

std::ostream& operator<<(std::ostream& os, Act const& act) {
  return os << kinds[static_cast<std::size_t>(act.kind)].name << " k" << act.key << " v" << act.value << " p"
            << act.place;
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
    int total = 0;
    for (auto const& kind : kinds) total += kind.weight;
    int drawn = below(total);
    int kind = 0;
    while (drawn >= kinds[kind].weight) drawn -= kinds[kind++].weight;
    int const keys = below(2) == 0 ? 5 : Script::keys;  // few, so that acts meet, or so many that a table grows
    return Act{static_cast<Act::Kind>(kind), below(keys), below(3), below(Script::places)};
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

void Stage::called(int who, int key, int value, Vek::U32 writes) {
  note('r' + std::to_string(who) + " hears of " + std::to_string(key) + " with " + std::to_string(value) + " after " +
       std::to_string(writes) + " writes");
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
