#include "tests/attrlog/LawScript.h"

#include "dornl3/generic/Digest.h"

#include <memory>

namespace LogTest {

using Toys::Toy;
using Toys::ToyBox;

namespace {

constexpr char const* kindNames[] = {"size",      "broken", "played",   "place", "counts", "countsDel", "countsDelAll",
                                     "faps",      "wanted", "wantedDel", "notes", "notesDel", "vlans",
                                     "step",      "settle", "cut"};

// What a reactor last saw; complains where it is told of what it has seen.
class Seen {
 public:
  explicit Seen(std::string& complaint) : complaint_(complaint) {}
  void now(std::string const& what, std::string const& value) {
    std::string& last = values_[what];
    if (last == value && complaint_.empty()) complaint_ = what + " was told, and is still " + value;
    last = value;
  }
  // What stands before the first call counts as seen.
  void is(std::string const& what, std::string const& value) { values_[what] = value; }

 private:
  std::string& complaint_;
  std::map<std::string, std::string> values_;
};

template <class V>
std::string text(V const& value) {
  if constexpr (std::is_arithmetic_v<V>) {
    return std::to_string(value);
  } else {
    return std::string(valueToStrep(value).view());
  }
}

struct ToyEar final : Toy::Notifiee {
  explicit ToyEar(std::string& complaint) : seen(complaint) {}
  void onSize() override { seen.now("size", text(notifier()->size())); }
  void onBroken() override { seen.now("broken", text(notifier()->broken())); }
  void onPlayed() override { seen.now("played", text(notifier()->played())); }
  void onPlace() override { seen.now("place", text(notifier()->place())); }
  void start() {
    seen.is("size", text(notifier()->size()));
    seen.is("broken", text(notifier()->broken()));
    seen.is("played", text(notifier()->played()));
    seen.is("place", text(notifier()->place()));
  }
  Seen seen;
};

struct BoxEar final : ToyBox::Notifiee {
  explicit BoxEar(std::string& complaint) : seen(complaint) {}
  template <class Map, class K>
  void key(char const* name, Map const& it, K const& key) {
    for (auto at = it; at; ++at) {
      if (at->key() == key) return seen.now(std::string(name) + text(key), text(at->value()));
    }
    seen.now(std::string(name) + text(key), "");
  }
  static std::string text(Vek::String8 const& key) { return std::string(key.view()); }
  template <class V>
  static std::string text(V const& value) {
    return LogTest::text(value);
  }
  void onCounts(Vek::U32 k) override { key("counts ", notifier()->countsIteratorConst(), k); }
  void onFaps(Hardware::Dorn::FapId k) override { key("faps ", notifier()->fapsIteratorConst(), k); }
  void onWanted(Vek::U32 k) override { key("wanted ", notifier()->wantedIteratorConst(), k); }
  void onNotes(Vek::String8 k) override { key("notes ", notifier()->notesIteratorConst(), k); }
  void onVlans(Bridging::VlanIdOrNone k) override { key("vlans ", notifier()->vlansIteratorConst(), k); }
  template <class It>
  void startAt(char const* name, It it) {
    for (; it; ++it) seen.is(std::string(name) + text(it->key()), text(it->value()));
  }
  void start() {
    startAt("counts ", notifier()->countsIteratorConst());
    startAt("faps ", notifier()->fapsIteratorConst());
    startAt("wanted ", notifier()->wantedIteratorConst());
    startAt("notes ", notifier()->notesIteratorConst());
    startAt("vlans ", notifier()->vlansIteratorConst());
  }
  Seen seen;
};

template <class Ear>
Vek::Ptr<Ear> listening(Vek::Ptr<Vek::Entity> const& entity, std::string& complaint) {
  auto const ear = Vek::make<Ear>(complaint);
  ear->notifierIs(entity);
  ear->isRegisteredNotifieeIs(true);
  ear->start();
  return ear;
}

}  // namespace

std::ostream& operator<<(std::ostream& os, Act const& act) {
  return os << "{Act::" << kindNames[act.kind] << ", " << (act.byReplica ? "true" : "false") << ", " << act.key << ", "
            << act.value << '}';
}

class LawScript::Ears {
 public:
  Vek::Ptr<ToyEar> toy;
  Vek::Ptr<BoxEar> box;
};

LawScript::LawScript(LawOptions const& options)
    : options_(options), pair_(options.pair), ears_(std::make_unique<Ears>()) {
  toyMount_ = Vek::make<Mount>("toy", *Toy::_fwkType(), options_.access, dir_);
  boxMount_ = Vek::make<Mount>("box", *ToyBox::_fwkType(), options_.access, dir_);
  bind();
}

LawScript::~LawScript() {
  pair_.cut();
  if (ears_->toy) ears_->toy->notifierIs(nullptr);
  if (ears_->box) ears_->box->notifierIs(nullptr);
}

void LawScript::bind() {
  pair_.owner().exports().exportIs(toy_, options_.access);
  pair_.owner().exports().exportIs(box_, options_.access);
  pair_.reader().mounts().mountIs(toyMount_);
  pair_.reader().mounts().mountIs(boxMount_);
}

void LawScript::watch() {
  if (!ears_->toy && dir_->entity("toy")) ears_->toy = listening<ToyEar>(dir_->entity("toy"), heard_);
  if (!ears_->box && dir_->entity("box")) ears_->box = listening<BoxEar>(dir_->entity("box"), heard_);
}

void LawScript::change(Toy& toy, ToyBox& box, Act const& act) {
  Vek::U32 const key = act.key;
  Vek::U32 const value = act.value;
  Vek::String8 const name(std::string(1, static_cast<char>('a' + key)));
  auto const id = static_cast<unsigned short>(key);
  switch (act.kind) {
  case Act::size: return toy.sizeIs(value);
  case Act::broken: return toy.brokenIs(value % 2 == 1);
  case Act::played: return toy.playedIs(value / 2.0);
  case Act::place: return toy.placeIs({key, value / 4.0, name});
  case Act::counts: return box.countsIs(key, value);
  case Act::countsDel: return static_cast<void>(box.countsDel(key));
  case Act::countsDelAll: return box.countsDelAll();
  case Act::faps: return box.fapsIs(id, value);
  case Act::wanted: return box.wantedIs(key, value % 2 == 1);
  case Act::wantedDel: return static_cast<void>(box.wantedDel(key));
  case Act::notes: return box.notesIs(name, {key, value / 2.0, name});
  case Act::notesDel: return static_cast<void>(box.notesDel(name));
  case Act::vlans: return box.vlansIs(Bridging::VlanIdOrNone(id), Kiln::Fapmask({value, 0, 0, key}));
  default: return;
  }
}

void LawScript::act(Act const& act) {
  switch (act.kind) {
  case Act::step: return pair_.step();
  case Act::settle: return pair_.settle();
  case Act::cut:
    pair_.connect();
    return bind();
  default: break;
  }
  if (!act.byReplica) return change(*toy_, *box_, act);
  auto const toy = Vek::ptrCast<Toy>(dir_->entity("toy"));
  auto const box = Vek::ptrCast<ToyBox>(dir_->entity("box"));
  if (!toy || !box) return;
  try {
    change(*toy, *box, act);
  } catch (Vek::ReadOnlyException const&) {
    // Read-only, or not in step: nothing was stored, as the digest will tell.
  }
}

void LawScript::play(std::vector<Act> const& acts) {
  for (Act const& each : acts) {
    act(each);
    watch();
  }
  pair_.settle();
  watch();
}

std::string LawScript::complaint() {
  if (!heard_.empty()) return heard_;
  if (toyMount_->state() != Vek::Dir::inStep) return "the toy's mount is not in step";
  if (boxMount_->state() != Vek::Dir::inStep) return "the box's mount is not in step";
  if (Vek::digest(*toy_) != Vek::digest(*dir_->entity("toy"))) return "the toys differ";
  if (Vek::digest(*box_) != Vek::digest(*dir_->entity("box"))) return "the boxes differ";
  if (pair_.owner().demuxer().skipped() + pair_.reader().demuxer().skipped() != 0) return "a record was passed over";
  return {};
}

}  // namespace LogTest
