// The generic way and the typed way agree: for every attribute of every type in the registry, each operation gives the
// same answer and leaves the same state, counts and events behind, whichever way it is done and whichever way it is
// read.
#include "dornl3/platform/vek/EntityText.h"
#include "tests/core/LeakCheck.h"
#include "tests/core/Property.h"
#include "tests/schema/typedWay/NumberedWay.h"

#include <set>

TypedWay::Table& TypedWay::table() {
  static Table all;
  return all;
}

namespace {

using namespace TypedWay;
using Vek::GenericIf;
using Vek::VekAttr;
using Vek::VekType;

/// One way to do things: the operations of every attribute.
using Way = std::map<VekAttr const*, Operations>;

template <class Make>
Way wayOf(Make const& make) {
  Way way;
  for (VekType const* type : entityTypes()) {
    for (auto const& attr : type->attributes()) {
      if (Vek::isOwn(*type, *attr)) way[attr.ptr()] = make(*type, *attr);
    }
  }
  return way;
}

// Throws where the table has no entry for an attribute.
Way const& typedWay() {
  static Way const way = wayOf([](VekType const& type, VekAttr const& attr) {
    return table().entities.at(str(Vek::String8(type.fullName()))).at(attr.id());
  });
  return way;
}

Way const& numberedWay() {
  static Way const way = wayOf([](VekType const&, VekAttr const& attr) { return Numbered(attr).operations(); });
  return way;
}

Text shown(Child const& child) { return str(Vek::valueToStrepOfRawPtr(child.ptr(), typeid(Entity))); }

/// An operation that an attribute has, as a call; what an operation does not need it does not look at.
struct Call {
  Text name;
  std::function<Text(Entity&, Text const& key, Text const& value)> act;
};

std::vector<Call> callsOf(Operations const& ops) {
  std::vector<Call> calls;
  auto const add = [&calls](char const* name, bool isThere, auto act) {
    if (isThere) calls.push_back({name, act});
  };
  using E = Entity;
  using T = Text const;
  add("get", !!ops.get, [&](E& e, T&, T&) { return ops.get(e); });
  add("set", !!ops.set, [&](E& e, T&, T& value) { return ops.set(e, value), Text(); });
  add("set at", !!ops.setAt, [&](E& e, T& key, T& value) { return ops.setAt(e, key, value), Text(); });
  add("get at", !!ops.getAt, [&](E& e, T& key, T&) { return ops.getAt(e, key); });
  add("delete at", !!ops.delAt, [&](E& e, T& key, T&) { return ops.delAt(e, key); });
  add("make child", !!ops.makeChild, [&](E& e, T& key, T&) { return shown(ops.makeChild(e, key)); });
  add("child", !!ops.child, [&](E& e, T& key, T&) { return shown(ops.child(e, key)); });
  add("delete child", !!ops.delChild, [&](E& e, T& key, T&) { return shown(ops.delChild(e, key)); });
  add("count", !!ops.count, [&](E& e, T&, T&) { return std::to_string(ops.count(e)); });
  return calls;
}

/// All that a way shows of an entity and of what is below it, and what stands in the counts before it looks.
struct State {
  Text text;
  Text counts;
};

void show(Entity const& e, Way const& way, State& state) {
  Vek::U32 const reads = e.readCount();
  state.counts += std::to_string(e.writeCount()) + ' ' + std::to_string(reads) + '\n';
  state.text += str(e.fullName()) + " {\n";
  for (auto const& attr : e.fwkType()->attributes()) {
    auto const found = way.find(attr.ptr());
    if (found == way.end()) continue;
    Operations const& ops = found->second;
    state.text += str(Vek::String8(attr->name())) + ": ";
    if (ops.get) state.text += ops.get(e);
    if (ops.count) state.text += std::to_string(ops.count(e)) + " members";
    if (ops.walk) {
      for (auto const& [key, value] : ops.walk(e)) {
        state.text += ' ' + key + '=' + value + (ops.getAt(e, key) == value ? "" : ", or not");
      }
    }
    if (ops.walkChildren) {
      for (auto const& [key, child] : ops.walkChildren(e)) {
        state.text += ' ' + key + (ops.child(e, key) == child ? " is " : " is not ");
        show(*child, way, state);
      }
    } else if (ops.child) {
      Child const child = ops.child(e, {});
      if (child) show(*child, way, state);
    }
    state.text += '\n';
  }
  state.text += "} after " + std::to_string(e.readCount() - reads) + " reads\n";
}

State stateOf(Entity const& e, Way const& way) {
  State state;
  show(e, way, state);
  return state;
}

/// Numbers, each of which is taken modulo what there is to choose from.
struct Act {
  unsigned where = 0;
  unsigned attribute = 0;
  unsigned operation = 0;
  unsigned key = 0;
  unsigned value = 0;
  bool isSwapped = false;  // the first of the twins is the typed one, for this act
};

std::ostream& operator<<(std::ostream& os, Act const& a) {
  return os << '{' << a.where << ", " << a.attribute << ", " << a.operation << ", " << a.key << ", " << a.value << ", "
            << a.isSwapped << '}';
}

class Hears final : public GenericIf::Subscriber {
 public:
  void onAttribute(Vek::AttributeId id, Vek::Ptr<GenericIf const> const& key) override {
    heard += std::to_string(id) + (key ? '[' + str(key->strRep()) + "] " : " ");
  }
  Text heard;
};

/// Two entities of one type, to which the same happens: to one by number, to the other by name.
class Twins {
 public:
  static constexpr unsigned keys = 6;
  struct Pair {
    Child first;
    Child second;
  };

  explicit Twins(VekType const& type) : first_(newRoot(type, "'a root'")), second_(newRoot(type, "'a root'")) {
    firstHears_.genericIs(first_.ptr());
    secondHears_.genericIs(second_.ptr());
  }

  /// The roots, and all pairs of children below them.
  std::vector<Pair> pairs() const {
    std::vector<Pair> all;
    enter({&entityOf(first_), &entityOf(second_)}, all);
    return all;
  }

  /// Does an act both ways. Gives what was done, and in `difference` what is not the same afterwards.
  Text perform(Act const& act, Text& difference) {
    std::vector<Pair> const all = pairs();
    Pair const pair = all[act.where % all.size()];
    std::vector<VekAttr const*> own;
    for (auto const& attr : pair.first->fwkType()->attributes()) {
      if (numberedWay().contains(attr.ptr())) own.push_back(attr.ptr());
    }
    VekAttr const& attr = *own[act.attribute % own.size()];
    auto const numbered = callsOf(numberedWay().at(&attr));
    auto const typed = callsOf(typedWay().at(&attr));
    std::size_t const number = act.operation % numbered.size();
    Text const name = numbered[number].name;
    Text const done = str(pair.first->fullName()) + '.' + str(Vek::String8(attr.name())) + ": " + name;
    if (numbered.size() != typed.size() || typed[number].name != name) {
      difference = "another set of operations";
      return done;
    }
    Text const key = Inventor{act.key % keys}.text(keyTypeOf(attr));
    Text const value = attr.flags().isInstantiating() ? Text() : Inventor{act.value}.text(*attr.valueType());
    auto const& firstWay = act.isSwapped ? typed : numbered;
    auto const& secondWay = act.isSwapped ? numbered : typed;
    Text const firstAnswer = firstWay[number].act(*pair.first, key, value);
    Text const secondAnswer = secondWay[number].act(*pair.second, key, value);
    difference = firstAnswer == secondAnswer ? differenceOfStates() : firstAnswer + " is not " + secondAnswer;
    return done + " at " + key + " with " + value + " gives " + firstAnswer;
  }

  static Text nameOf(VekAttr const& attr, Text const& operation) {
    return str(Vek::String8(attr.owner()->fullName())) + '.' + str(Vek::String8(attr.name())) + ": " + operation;
  }

 private:
  static void enter(Pair const& pair, std::vector<Pair>& all) {
    all.push_back(pair);
    for (auto const& attr : pair.first->fwkType()->attributes()) {
      if (!attr->flags().isInstantiating()) continue;
      Operations const& numbered = numberedWay().at(attr.ptr());
      Operations const& typed = typedWay().at(attr.ptr());
      if (numbered.walkChildren) {
        auto const firsts = numbered.walkChildren(*pair.first);
        auto const seconds = typed.walkChildren(*pair.second);
        for (std::size_t i = 0; i < firsts.size(); ++i) enter({firsts[i].second, seconds.at(i).second}, all);
      } else {
        Pair const children{numbered.child(*pair.first, {}), typed.child(*pair.second, {})};
        if (children.first) enter(children, all);
      }
    }
  }

  // Each of the twins is read each way.
  Text differenceOfStates() {
    if (firstHears_.heard != secondHears_.heard) return firstHears_.heard + "is not " + secondHears_.heard;
    Entity const& first = entityOf(first_);
    Entity const& second = entityOf(second_);
    State const firstTyped = stateOf(first, typedWay());
    State const secondTyped = stateOf(second, typedWay());
    State const firstNumbered = stateOf(first, numberedWay());
    State const secondNumbered = stateOf(second, numberedWay());
    for (State const* other : {&firstNumbered, &secondTyped, &secondNumbered}) {
      if (other->text != firstTyped.text) return other->text + "is not\n" + firstTyped.text;
    }
    if (firstTyped.counts != secondTyped.counts) return firstTyped.counts + "is not\n" + secondTyped.counts;
    if (firstNumbered.counts != secondNumbered.counts) return firstNumbered.counts + "is not\n" + secondNumbered.counts;
    return {};
  }

  Generic first_;
  Generic second_;
  Hears firstHears_;
  Hears secondHears_;
};

// What is made for good by its first use.
struct Prepared {
  Prepared() { GenericIf::List::_fwkType(); }
};

class TwoWays : private Prepared, public LeakCheck {};

std::vector<VekType const*> rootTypes() {
  std::vector<VekType const*> types;
  for (VekType const* type : entityTypes()) {
    if (newRoot(*type, "'a root'")) types.push_back(type);
  }
  return types;
}

TEST_F(TwoWays, EveryAttributeOfEveryTypeIsInTheTable) {
  for (VekType const* type : entityTypes()) {
    auto const& calls = table().entities[str(Vek::String8(type->fullName()))];
    for (auto const& attr : type->attributes()) {
      EXPECT_EQ(calls.count(attr->id()), Vek::isOwn(*type, *attr) ? 1U : 0U) << type->fullName() << '.' << attr->name();
    }
  }
  EXPECT_EQ(table().entities.size(), entityTypes().size());
  for (VekType const* type : recordTypes()) {
    auto const& fields = table().values[str(Vek::String8(type->fullName()))].fields;
    for (auto const& attr : type->attributes()) {
      EXPECT_EQ(fields.count(attr->id()), 1U) << type->fullName() << '.' << attr->name();
    }
  }
  EXPECT_EQ(table().values.size(), recordTypes().size());
}

TEST_F(TwoWays, EveryOperationOfEveryAttributeDoesTheSame) {
  std::set<Text> expected;
  for (auto const& [attr, operations] : numberedWay()) {
    for (Call const& call : callsOf(operations)) expected.insert(Twins::nameOf(*attr, call.name));
  }
  std::set<Text> done;
  for (VekType const* type : rootTypes()) {
    Twins twins(*type);
    for (unsigned where = 0; where < twins.pairs().size(); ++where) {
      VekType const& at = *twins.pairs()[where].first->fwkType();
      unsigned attribute = 0;
      for (auto const& attr : at.attributes()) {
        if (!Vek::isOwn(at, *attr)) continue;
        auto const calls = callsOf(numberedWay().at(attr.ptr()));
        for (unsigned i = 0; i < 4 * calls.size(); ++i) {
          Text difference;
          Text const act = twins.perform({where, attribute, i, i / 3, i, i % 2 != 0}, difference);
          ASSERT_EQ(difference, "") << act;
          done.insert(Twins::nameOf(*attr, calls[i % calls.size()].name));
        }
        for (unsigned i = 0; i < calls.size(); ++i) {  // leaves a child, to go on there
          Text difference;
          if (calls[i].name == "make child") twins.perform({where, attribute, i, 0, 0, false}, difference);
          ASSERT_EQ(difference, "");
        }
        ++attribute;
      }
    }
  }
  EXPECT_EQ(done, expected);
}

TEST_F(TwoWays, AnyScriptDoesTheSame) {
  auto const number = [] { return rc::gen::resize(rc::kNominalSize, rc::gen::inRange(0U, 1000U)); };
  auto const anyAct = rc::gen::build<Act>(rc::gen::set(&Act::where, number()), rc::gen::set(&Act::attribute, number()),
                                          rc::gen::set(&Act::operation, number()), rc::gen::set(&Act::key, number()),
                                          rc::gen::set(&Act::value, number()), rc::gen::set(&Act::isSwapped));
  for (VekType const* type : rootTypes()) {
    SCOPED_TRACE(type->fullName());
    expectLaw(100, [&] {
      Twins twins(*type);
      for (Act const& act : *rc::gen::container<std::vector<Act>>(anyAct)) {
        Text difference;
        RC_LOG() << twins.perform(act, difference) << '\n';
        RC_ASSERT(difference == Text());
      }
    });
  }
}

TEST_F(TwoWays, AValueReadsComparesAndIsBuiltTheSame) {
  for (VekType const* type : recordTypes()) {
    SCOPED_TRACE(type->fullName());
    Value const& typed = table().values.at(str(Vek::String8(type->fullName())));
    EXPECT_EQ(str(type->genericIf(static_cast<void const*>(nullptr), false)->strRep()), typed.byDefault);
    for (std::uint64_t seed = 0; seed < 100; ++seed) {
      Text const text = Inventor{seed}.text(*type);
      Text const another = seed % 2 == 0 ? text : Inventor{seed + 1}.text(*type);
      Generic const value = valueOf(*type, text);
      ASSERT_EQ(str(value->strRep()), text) << "the text is the one that would be written";
      ASSERT_EQ(typed.again(text), text);
      ASSERT_EQ(typed.equal(text, another), text == another);
      ASSERT_EQ(str(value->attributeOp({0, GenericIf::OpEquals}, valueOf(*type, another), nullptr)->strRep()),
                typed.equal(text, another) ? "True" : "False");
      std::vector<Generic> fields;
      for (auto const& attr : type->attributes()) {
        fields.push_back(value->attributeOp({attr->id(), GenericIf::OpGet}, nullptr, nullptr));
        ASSERT_EQ(str(fields.back()->strRep()), typed.fields.at(attr->id()).get(text)) << attr->name();
      }
      std::size_t i = 0;
      for (auto const& attr : type->attributes()) {
        Text const changed = Inventor{seed + 7}.text(*attr->valueType());
        auto arguments = fields;
        arguments[i++] = valueOf(*attr->valueType(), changed);
        Text const whole = typed.fields.at(attr->id()).set(text, changed);
        ASSERT_EQ(str(type->genericIf(listOf(arguments).ptr(), false)->strRep()), whole) << attr->name();
        ASSERT_EQ(typed.equal(text, whole), text == whole) << "where " << attr->name() << " alone may differ";
      }
    }
  }
}

}  // namespace
