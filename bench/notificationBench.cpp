// What it costs to set an attribute and tell the reactors, beside a bare loop of virtual calls over a vector of
// pointers: no references, no exceptions caught, nobody may come or go.
#include "bench/SideBySide.h"
#include "dornl3/schema/Status.h"

#include <memory>

namespace {

using Hardware::DornL3Unicast::Request;
using Vek::Ptr;
using Vek::U64;

struct Hearer : Request::Notifiee {
  void onStatusRequestId() override { ++heard; }
  U64 heard = 0;
};

using Reactor = Vek::PtrInterface::NotifieeConst;

// A class that no reactor here belongs to.
struct LogAdapter : Vek::Entity::NotifieeConst {
  bool isStreamAdapter() const noexcept override { return true; }
};

struct BareHearer {
  virtual ~BareHearer() = default;
  virtual void onChange() = 0;
};

// Of several kinds, so that no compiler makes a plain call of the virtual one.
template <int>
struct BareHearerOfAKind : BareHearer {
  void onChange() override { ++heard; }
  U64 heard = 0;
};

std::unique_ptr<BareHearer> bareHearer(int kind) {
  benchmark::DoNotOptimize(kind);
  if (kind == 0) return std::make_unique<BareHearerOfAKind<0>>();
  return std::make_unique<BareHearerOfAKind<1>>();
}

// An attribute, and the least that setting it can cost.
struct BareEntity {
  [[gnu::noinline]] void set(U64 const& value) {
    if (value == field) return;
    field = value;
    ++writes;
    for (BareHearer* hearer : hearers) hearer->onChange();
  }
  U64 field = 0;
  unsigned writes = 0;
  std::vector<BareHearer*> hearers;
};

struct Scene {
  explicit Scene(std::size_t reactors) {
    for (std::size_t i = 0; i < reactors; ++i) {
      auto const& hearer = hearers.emplace_back(Vek::make<Hearer>());
      hearer->isRegisteredNotifieeIs(true);
      hearer->notifierIs(request);
      bare.hearers.push_back(bareHearers.emplace_back(bareHearer(0)).get());
    }
  }
  void set() { request->statusRequestIdIs(++value); }
  void setBare() { bare.set(++value); }
  void setSame() { request->statusRequestIdIs(value); }
  void setSameBare() { bare.set(value); }

  U64 value = 0;
  Ptr<Request> request = Hardware::DornL3Unicast::requestFactory("request");
  std::vector<Ptr<Hearer>> hearers;
  BareEntity bare;
  std::vector<std::unique_ptr<BareHearer>> bareHearers;
};

std::vector<Reactor const*> rawPointers(std::vector<Ptr<Hearer>> const& hearers) {
  std::vector<Reactor const*> raw;
  for (auto const& hearer : hearers) raw.push_back(hearer.ptr());
  return raw;
}

template <class Ours, class Reference>
void add(bench::Table& table, std::string const& row, double aim, std::size_t reactors, Ours ours,
         Reference reference) {
  auto const scene = std::make_shared<Scene>(reactors);
  ((*scene).*ours)();
  ((*scene).*reference)();
  table.add(
      row, aim, [scene, ours] { ((*scene).*ours)(); }, [scene, reference] { ((*scene).*reference)(); });
}

}  // namespace

int main(int argc, char** argv) {
  bench::Table table{"Setting a U64", "entity", "bare"};
  add(table, "the present value, against a compare", 2, 4, &Scene::setSame, &Scene::setSameBare);
  add(table, "no reactor, against a store", 0, 0, &Scene::set, &Scene::setBare);
  add(table, "1 reactor, against a virtual call", 0, 1, &Scene::set, &Scene::setBare);
  add(table, "4 reactors, against a loop of virtual calls", 3, 4, &Scene::set, &Scene::setBare);
  add(table, "16 reactors, against a loop of virtual calls", 3, 16, &Scene::set, &Scene::setBare);
  add(table, "40 reactors, against a loop of virtual calls", 0, 40, &Scene::set, &Scene::setBare);

  // As where a list is entered: the class of the reactor is not known there.
  auto const scene = std::make_shared<Scene>(16);
  std::vector<Reactor const*> const reactors(rawPointers(scene->hearers));
  auto const count = [reactors](auto const& isAdapter) {
    return
        [reactors, isAdapter] { benchmark::DoNotOptimize(std::count_if(reactors.begin(), reactors.end(), isAdapter)); };
  };
  table.add("16 times isStreamAdapter(), against a cast", 0.05,
            count([](Reactor const* reactor) { return reactor->isStreamAdapter(); }),
            count([](Reactor const* reactor) { return dynamic_cast<LogAdapter const*>(reactor) != nullptr; }));
  return table.run(argc, argv);
}
