// What it costs to read and set an attribute by its number or its name, beside the typed call, and beside the least
// that handing out a value as a counted object can cost: to make one and drop it.
#include "bench/SideBySide.h"
#include "dornl3/generic/Digest.h"
#include "dornl3/platform/vek/Builtin.h"
#include "dornl3/platform/vek/GenericIfEntity.h"
#include "dornl3/schema/Status.h"

namespace {

using Hardware::DornL3Unicast::Status;
using Vek::GenericIf;
using Vek::Ptr;
using Vek::U32;

// As large as the generic of a number.
struct Counted : GenericIf {
  explicit Counted(U32 v) : GenericIf(false), value(v) {}
  Vek::VekType const* type() const override { return nullptr; }
  void const* voidPtrIs(Ptr<Vek::VekType const> const&) const override { return &value; }
  Vek::String8 strRep() const override { return {}; }
  Ptr<GenericIf> clone() override { return {}; }
  U32 value;
};

struct Scene {
  Ptr<Status> status = Hardware::DornL3Unicast::statusFactory("status");
  Ptr<GenericIf> generic = Vek::VekType::genericIf(status.ptr(), false);
  Vek::String8 const first = "statusResponseId";
  Vek::String8 const last = "restartHelperStats";
  Vek::AttributeId const numVrfs = generic->attributeId("numVrfs");
  Ptr<GenericIf> values[2] = {number(1), number(2)};
  U32 turn = 0;

  static Ptr<GenericIf> number(U32 n) { return Vek::Builtin<U32>::_fwkType()->genericIf(&n, false); }

  void make() { benchmark::DoNotOptimize(Vek::make<Counted>(++turn)); }
  void get() { benchmark::DoNotOptimize(generic->attributeOp({numVrfs, GenericIf::OpGet}, nullptr, nullptr)); }
  void getTyped() { benchmark::DoNotOptimize(status->numVrfs()); }
  void getByName() {
    auto const id = generic->attributeId("numVrfs");
    benchmark::DoNotOptimize(generic->attributeOp({id, GenericIf::OpGet}, nullptr, nullptr));
  }
  void set() { generic->attributeOp({numVrfs, GenericIf::OpSet}, nullptr, values[++turn & 1]); }
  void setFromNumber() { generic->attributeOp({numVrfs, GenericIf::OpSet}, nullptr, number(++turn)); }
  void setTyped() { status->numVrfsIs(++turn & 1); }
  void findFirst() { benchmark::DoNotOptimize(generic->attributeId(first)); }
  void findLast() { benchmark::DoNotOptimize(generic->attributeId(last)); }
  void hundredNanoseconds() {
    auto const end = std::chrono::steady_clock::now() + std::chrono::nanoseconds(100);
    while (std::chrono::steady_clock::now() < end) {
    }
  }
  void digest() { benchmark::DoNotOptimize(Vek::digest(*status)); }
};

void add(bench::Table& table, std::string const& row, double aim, void (Scene::*ours)(), void (Scene::*reference)()) {
  auto const scene = std::make_shared<Scene>();
  table.add(
      row, aim, [scene, ours] { ((*scene).*ours)(); }, [scene, reference] { ((*scene).*reference)(); });
}

}  // namespace

int main(int argc, char** argv) {
  bench::Table table{"A U32 of an entity with 61 attributes", "generic", "reference"};
  add(table, "get by number, against making an object", 2, &Scene::get, &Scene::make);
  add(table, "set by number, against making an object", 2, &Scene::set, &Scene::make);
  add(table, "set to a new generic, against making one", 2, &Scene::setFromNumber, &Scene::make);
  add(table, "get by number, against the typed call", 0, &Scene::get, &Scene::getTyped);
  add(table, "set by number, against the typed call", 0, &Scene::set, &Scene::setTyped);
  add(table, "get by name, against by number", 0, &Scene::getByName, &Scene::get);
  add(table, "find the first name, against 100 ns", 1, &Scene::findFirst, &Scene::hundredNanoseconds);
  add(table, "find the last name, against 100 ns", 1, &Scene::findLast, &Scene::hundredNanoseconds);
  add(table, "digest of it, against one get by number", 0, &Scene::digest, &Scene::get);
  return table.run(argc, argv);
}
