#include "tests/attrlog/LawScript.h"

#include "dornl3/generic/Digest.h"
#include "dornl3/platform/vek/GenericIfEntity.h"

#include <algorithm>
#include <memory>
#include <sstream>

namespace LogTest {

using namespace Toys;
using Generic = Vek::Ptr<Vek::GenericIf const>;

namespace {

constexpr char const* kindNames[] = {"size",   "broken", "played",    "place", "counts",   "countsDel", "countsDelAll",
                                     "faps",   "wanted", "wantedDel", "notes", "notesDel", "vlans",     "text",
                                     "lid",    "lidDel", "lidOpen",   "shelf", "shelfDel", "drawer",    "drawerDel",
                                     "things", "step",   "settle",    "cut",   "beat",     "refused",   "takenBack"};

// What a reactor last saw; complains where it is told of what it has seen.
class Seen {
 public:
  explicit Seen(std::string& complaint) : complaint_(complaint) {}
  void now(std::string const& what, std::string const& value) {
    std::string& last = values_[what];
    if (last == value && complaint_.empty()) complaint_ = what + " was told, and is still " + value;
    last = value;
    if (value.empty() && ++timesGone_[what] == 2) wentTwice_ += what + ' ';
  }
  [[nodiscard]] std::string const& wentTwice() const { return wentTwice_; }
  // What stands before the first call counts as seen.
  void is(std::string const& what, std::string const& value) { values_[what] = value; }
  // What stands otherwise than it was last told.
  [[nodiscard]] std::string missed(Seen const& present) const {
    for (auto const* const some : {&values_, &present.values_}) {
      for (auto const& [what, value] : *some) {
        if (valueOf(what) != present.valueOf(what)) return what + " was not told: it is " + present.valueOf(what);
      }
    }
    return {};
  }

 private:
  [[nodiscard]] std::string valueOf(std::string const& what) const {
    auto const at = values_.find(what);
    return at == values_.end() ? std::string() : at->second;
  }

  std::string& complaint_;
  std::map<std::string, std::string> values_;
  std::map<std::string, int> timesGone_;
  std::string wentTwice_;
};

// Hears of every attribute of an entity, without its class.
class Ear final : public Vek::GenericIf::Subscriber {
 public:
  Ear(Vek::Ptr<Vek::Entity> const& entity, std::string& complaint)
      : seen_(complaint), entity_(Vek::VekType::genericIf(entity.ptr(), true)) {
    for (auto const& attr : entity_->type()->attributes()) {
      if (!Vek::isOwn(*entity_->type(), *attr)) continue;
      if (!attr->flags().isCollection()) {
        seen_.is(place(*attr, nullptr), value(*attr, nullptr));
        continue;
      }
      for (auto it = entity_->attributeIteratorConst(attr->id()); it; ++it) {
        seen_.is(place(*attr, it.key()), value(*attr, it.key()));
      }
    }
    genericIs(entity_.ptr());
  }
  void onAttribute(Vek::AttributeId id, Generic const& key) override {
    for (auto const& attr : entity_->type()->attributes()) {
      if (attr->id() == id) return seen_.now(place(*attr, key), value(*attr, key));
    }
  }
  [[nodiscard]] std::string const& wentTwice() const { return seen_.wentTwice(); }
  // What this was not told of.
  [[nodiscard]] std::string missed() const {
    std::string none;
    return seen_.missed(Ear(&static_cast<Vek::GenericIfEntity&>(*entity_).entity(), none).seen_);
  }

 private:
  static std::string place(Vek::VekAttr const& attr, Generic const& key) {
    return std::string(attr.name().view()) + (key ? '[' + std::string(key->strRep().view()) + ']' : "");
  }
  // Empty where there is none. A child counts as another one when it is another object.
  [[nodiscard]] std::string value(Vek::VekAttr const& attr, Generic const& key) const {
    auto const op = [&](int code) { return entity_->attributeOp({attr.id(), code}, key, nullptr); };
    if (key && op(Vek::GenericIf::OpContains)->strRep() == "False") return {};
    auto const value = op(Vek::GenericIf::OpGet);
    if (!attr.flags().isInstantiating()) return std::string(value->strRep().view());
    std::ostringstream address;
    auto const object = static_cast<Vek::GenericIfPtrInterface&>(*value).obj();
    if (object) address << object.ptr();
    return address.str();
  }

  Seen seen_;
  Vek::Ptr<Vek::GenericIf> entity_;
};

}  // namespace

std::ostream& operator<<(std::ostream& os, Act const& act) {
  return os << "{Act::" << kindNames[act.kind] << ", " << (act.byReplica ? "true" : "false") << ", " << act.key << ", "
            << act.value << '}';
}

// A process that mounts toy and box from another, whose directory is `from`.
class LawScript::Replica {
 public:
  Replica(LawOptions const& options, Vek::Ptr<Vek::Dir> from, std::string& heard)
      : link(options.pair),
        dir(Vek::make<Vek::Dir>()),
        toyMount(Vek::make<Mount>("toy", *Toy::_fwkType(), options.access, dir)),
        boxMount(Vek::make<Mount>("box", *ToyBox::_fwkType(), options.access, dir)),
        access_(options.access),
        from_(std::move(from)),
        heard_(heard) {
    mountBoth();
  }
  ~Replica() { link.cut(); }
  Replica(Replica const&) = delete;
  Replica& operator=(Replica const&) = delete;

  void reconnect() {
    if (link.reader().closeReason() == "more entities than this end takes") heard_ = "too many entities came";
    link.connect();
    exported_ = 0;
    mountBoth();
  }

  void mountBoth() {
    for (auto const& mount : {toyMount, boxMount}) link.reader().mounts().mountIs(mount);
  }
  void beat() {
    link.world.now += 10;
    link.owner().tick();
    link.reader().tick();
  }
  void wantsWhatIsNot() {
    link.owner().exports().exportIs(Toys::toyFactory("other"), access_);
    link.reader().mounts().mountIs(Vek::NboAttrLog::mountOf<ToyBox>("other", access_));
  }

  // Exports what has come into being where this mounts from, and listens to what has come here.
  void lookRound() {
    for (char const* name : {"toy", "box"}) {
      auto const entity = from_->entity(name);
      unsigned const bit = *name == 't' ? 1U : 2U;
      if (!entity || (exported_ & bit) != 0) continue;
      exported_ |= bit;
      link.owner().exports().exportIs(entity, access_);
    }
    for (char const* name : {"toy", "box"}) {
      auto const entity = dir->entity(name);
      if (entity && !ears_.contains(name)) ears_[name] = std::make_unique<Ear>(entity, heard_);
    }
  }

  [[nodiscard]] std::string missed() const {
    std::string what;
    for (auto const& [name, ear] : ears_) what += ear->missed();
    return what;
  }

  [[nodiscard]] std::string wentTwice() const {
    auto const at = ears_.find("box");
    return at == ears_.end() ? std::string() : at->second->wentTwice();
  }

  LogPair link;
  Vek::Ptr<Vek::Dir> dir;
  Vek::Ptr<Mount> toyMount;
  Vek::Ptr<Mount> boxMount;

 private:
  Access access_;
  Vek::Ptr<Vek::Dir> from_;
  std::string& heard_;
  unsigned exported_ = 0;
  std::map<std::string, std::unique_ptr<Ear>> ears_;
};

LawScript::LawScript(LawOptions const& options) : options_(options) {
  home_->entryIs(Toys::toyFactory("toy"));
  home_->entryIs(Toys::toyBoxFactory("box"));
  replicas_.push_back(std::make_unique<Replica>(options_, home_, heard_));
  if (options_.joined == Joined::pair) return;
  auto const& from = options_.joined == Joined::star ? home_ : replicas_.front()->dir;
  replicas_.push_back(std::make_unique<Replica>(options_, from, heard_));
}

LawScript::~LawScript() = default;

void LawScript::lookRound() {
  for (auto const& replica : replicas_) replica->lookRound();
}

void LawScript::ask() {
  for (auto const& replica : replicas_) {
    // What others write may reach the owner behind the answer.
    bool const isLastWriter = options_.joined != Joined::star && replica == replicas_.back();
    for (auto const& mount : {replica->toyMount, replica->boxMount}) {
      ++unanswered_;
      mount->barrier([this, isLastWriter, mount](Vek::NboAttrLog::Barriers::Outcome outcome) {
        --unanswered_;
        if (outcome == Vek::NboAttrLog::Barriers::Outcome::unknown || !isLastWriter || !heard_.empty()) return;
        if (Vek::digest(*home_->entity(mount->name())) != Vek::digest(*mount->entity())) {
          heard_ = "all of the " + std::string(mount->name().view()) + " was called applied, and it differs";
        }
      });
    }
  }
}

void LawScript::step() {
  if (stepsLeft_ <= 0) return;
  --stepsLeft_;
  for (auto const& replica : replicas_) replica->link.step();
}

// A chain comes to rest link by link, and news from the end of it goes back the same way.
void LawScript::settle() {
  if (stepsLeft_ != std::numeric_limits<int>::max()) {
    do {
      step();
      lookRound();
    } while (stepsLeft_ > 0 && !isAtRest());
    return;
  }
  for (int i = 0; i < 8; ++i) {
    lookRound();
    for (auto const& replica : replicas_) replica->link.settle();
  }
}

void LawScript::change(Toy& toy, ToyBox& box, Act const& act) {
  Vek::U32 const key = act.key;
  Vek::U32 const value = act.value;
  Vek::String8 const name(std::string(1, static_cast<char>('a' + key)));
  auto const id = static_cast<unsigned short>(key);
  // Few names, so that the same ones come and go; two children below each.
  Vek::Name const shelf(std::string(1, static_cast<char>('p' + key / 2)));
  Vek::String8 const label(key % 2 == 0 ? "left" : "right");
  Vek::Ptr<Toys::Shelf> const standing = box.shelves(shelf);
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
  case Act::text:
    return toy.textIs(Vek::String8(std::string_view(std::string(key * key * 10, static_cast<char>('a' + value)))));
  case Act::lid: return static_cast<void>(box.lidIs(value == 0 ? "flap" : "lid"));
  case Act::lidDel: return static_cast<void>(box.lidDel());
  case Act::lidOpen:
    if (Vek::Ptr<Toys::Lid> const lid = box.lid()) lid->openIs(value % 2 == 1);
    return;
  case Act::shelf: return static_cast<void>(box.shelvesIs(shelf));
  case Act::shelfDel: return static_cast<void>(box.shelvesDel(shelf));
  case Act::drawer:
    if (standing) standing->drawersIs(label)->thingsIs(value);
    return;
  case Act::drawerDel:
    if (standing) standing->drawersDel(label);
    return;
  case Act::things:
    if (standing && standing->drawers(label)) standing->drawers(label)->thingsInc(value);
    return;
  default: return;
  }
}

void LawScript::act(Act const& act) {
  Replica& replica = *replicas_[act.key % replicas_.size()];
  switch (act.kind) {
  case Act::step: return step();
  case Act::settle: return settle();
  case Act::cut: return replica.reconnect();
  case Act::beat:
    for (auto const& each : replicas_) each->beat();
    return;
  case Act::refused: return replica.wantsWhatIsNot();
  case Act::takenBack: return replica.link.owner().exports().exportDel("toy");
  default: break;
  }
  Vek::Dir const& dir = act.byReplica ? *replica.dir : *home_;
  auto const toy = Vek::ptrCast<Toy>(dir.entity("toy"));
  auto const box = Vek::ptrCast<ToyBox>(dir.entity("box"));
  if (!toy || !box) return;
  try {
    change(*toy, *box, act);
  } catch (Vek::ReadOnlyException const&) {
    // Read-only, or not in step: nothing was stored, as the digest will tell.
    if (!act.byReplica) throw;
  }
}

int LawScript::playOn(std::vector<Act> const& acts, int steps) {
  stepsLeft_ = steps;
  lookRound();
  for (Act const& each : acts) {
    if (stepsLeft_ <= 0) return 0;
    act(each);
    lookRound();
  }
  return stepsLeft_;
}

void LawScript::play(std::vector<Act> const& acts) {
  playOn(acts);
  ask();
  settle();
}

std::string LawScript::wentTwice() const {
  std::string what;
  for (auto const& replica : replicas_) what += replica->wentTwice();
  return what;
}

bool LawScript::isAtRest() const {
  return std::all_of(replicas_.begin(), replicas_.end(), [](auto const& replica) { return replica->link.isAtRest(); });
}

std::string LawScript::complaint() {
  if (!heard_.empty()) return heard_;
  if (unanswered_ != 0) return "a barrier was answered not once";
  for (auto const& replica : replicas_) {
    for (auto const& mount : {replica->toyMount, replica->boxMount}) {
      std::string const name(mount->name().view());
      if (mount->state() != Vek::Dir::inStep) return "the mount of the " + name + " is not in step";
      if (std::string const missed = replica->missed(); !missed.empty()) return missed;
      if (Vek::digest(*home_->entity(mount->name())) != Vek::digest(*mount->entity()))
        return "the " + name + " differs";
    }
    bool const hasOneWriter = options_.access == Access::readOnly;
    if (hasOneWriter && replica->link.reader().demuxer().skipped() != 0) return "a record was passed over";
  }
  return {};
}

}  // namespace LogTest
