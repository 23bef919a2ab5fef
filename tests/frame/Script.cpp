#include "tests/frame/Script.h"

#include <rapidcheck.h>

#include <utility>

namespace Toys {

namespace {

void print(std::ostream& os, Act const& act) {
  constexpr char const* kinds[] = {"set", "be", "follow", "drop", "drop toy", "fail"};
  constexpr char const* properties[] = {"registered", "weak", "active"};
  os << kinds[static_cast<int>(act.kind)] << " r" << act.who << " t" << act.toy << " to " << act.value << ' '
     << properties[static_cast<int>(act.property)] << (act.on ? " on" : " off");
}

void print(std::ostream& os, Acts const& acts) {
  for (Act const& act : acts) {
    print(os, act);
    os << "; ";
  }
}

}  // namespace

std::ostream& operator<<(std::ostream& os, Script const& script) {
  for (std::size_t who = 0; who < script.plans.size(); ++who) {
    ReactorPlan const& plan = script.plans[who];
    os << "\n  r" << who << " of t" << plan.toy << (plan.registered ? "" : " unregistered")
       << (plan.adapter ? " adapter" : "") << (plan.weak ? " weak" : "");
    for (auto const& turn : plan.turns) {
      os << "\n      when called: ";
      print(os, turn);
    }
  }
  os << "\n  outside: ";
  print(os, script.outside);
  return os << '\n';
}

namespace {

// A number below `limit`, whatever the size of the case.
int below(int limit) { return *rc::gen::resize(rc::kNominalSize, rc::gen::inRange(0, limit)); }

rc::Gen<Acts> anyActs(double scale) {
  auto const act = rc::gen::exec([] {
    // The properties are three kinds of act, and as likely each as the others.
    int const kind = below(Act::kinds + 2);
    bool const property = kind >= Act::kinds;
    Act made{property ? Act::Kind::be : static_cast<Act::Kind>(kind)};
    made.who = below(Script::reactors);
    made.toy = made.kind == Act::Kind::follow ? below(Script::toys + 1) - 1 : below(Script::toys);
    made.value = static_cast<Vek::U64>(below(3));
    made.property = property ? static_cast<Property>(kind - Act::kinds + 1) : Property::registered;
    made.on = below(2) == 1;
    return made;
  });
  return rc::gen::scale(scale, rc::gen::container<Acts>(act));
}

rc::Gen<ReactorPlan> anyPlan() {
  return rc::gen::exec([] {
    ReactorPlan plan;
    plan.toy = below(Script::toys);
    plan.registered = below(8) < 6;
    plan.adapter = below(8) == 7;
    plan.weak = below(4) == 3;
    plan.turns = *rc::gen::scale(0.05, rc::gen::container<std::vector<Acts>>(rc::gen::scale(20, anyActs(0.04))));
    return plan;
  });
}

}  // namespace

Script anyScript() {
  return *rc::gen::exec([] {
    Script script;
    script.plans = *rc::gen::container<std::vector<ReactorPlan>>(Script::reactors, anyPlan());
    script.outside = *anyActs(0.25);
    return script;
  });
}

void Stage::begin() {
  for (int who = 0; who < Script::reactors; ++who) make(who);
}

void Stage::perform(Act const& doIt) {
  try {
    act(doIt);
  } catch (SecondFailure const& failure) {
    note("the caller hears the second failure of r" + std::to_string(failure.who));
  }
}

void Stage::end() {
  for (int toy = 0; toy < Script::toys; ++toy) dropToy(toy);
  for (int who = 0; who < Script::reactors; ++who) drop(who);
}

void Stage::playTurn(int who) {
  std::size_t const turn = turn_[who]++;
  if (turn >= plan(who).turns.size()) return;
  for (Act const& next : plan(who).turns[turn]) {
    if (next.kind == Act::Kind::fail) {
      failsAgain_[who] = next.on;
      throw Failure{};
    }
    act(next);
  }
}

void Stage::failed(int who, Vek::AttributeId attribute) {
  note("r" + std::to_string(who) + " failed in " + std::to_string(attribute));
  if (std::exchange(failsAgain_[who], false)) throw SecondFailure{who};
}

void Stage::act(Act const& act) {
  using Kind = Act::Kind;
  switch (act.kind) {
  case Kind::set: return set(act.toy, act.value);
  case Kind::be: return be(act.who, act.property, act.on);
  case Kind::follow: return follow(act.who, act.toy);
  case Kind::drop: return drop(act.who);
  case Kind::dropToy: return dropToy(act.toy);
  case Kind::fail: return;  // a turn's own, see playTurn
  }
}

}  // namespace Toys
