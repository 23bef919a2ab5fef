// The wire form: what each kind of record looks like, and what becomes of records that are cut, lie, or come in floods.
#include "dornl3/generic/Digest.h"
#include "tests/attrlog/BareLog.h"
#include "tests/attrlog/RawPeer.h"

#include <gmock/gmock.h>

namespace LogTest {
namespace {

using namespace Vek::NboAttrLog;
using Vek::Dir;
using Vek::U64;

constexpr U64 toyId = idOf(RawPeer::tag, 1);
constexpr U64 boxId = idOf(RawPeer::tag, 2);
constexpr U64 oursId = idOf(RawPeer::theirs, 1);
constexpr U64 shownId = idOf(RawPeer::theirs, 2);

// The connection mounts a toy and a box of the peer's, and the peer mounts two boxes here: `ours`, which it may write,
// and `shown`, which it may not.
struct Scene {
  explicit Scene(Limits const& limits = {}, Limits const& own = {}) : peer(own) {
    peer.connection->exports().exportIs(ours, Access::writable);
    peer.connection->exports().exportIs(shown, Access::readOnly);
    for (auto const& [name, type] : {std::pair{"toy", Toy::_fwkType()}, std::pair{"box", ToyBox::_fwkType()}}) {
      peer.connection->mounts().mountIs(Vek::make<Mount>(name, *type, Access::readOnly, dir));
    }
    peer.says(greeting(RawPeer::tag, limits) + mountOf("ours", "Toys::ToyBox", true) +
              mountOf("shown", "Toys::ToyBox", false) + orphan(toyId, "Toys::Toy", "toy") +
              orphan(boxId, "Toys::ToyBox", "box") + syncMode(toyId, 1) + syncMode(boxId, 1));
    peer.hears();
  }

  [[nodiscard]] Demuxer& demuxer() { return peer.connection->demuxer(); }
  [[nodiscard]] std::string reason() const { return peer.connection->closeReason().charPtr(); }
  [[nodiscard]] Vek::Ptr<Toy> toy() const { return Vek::ptrCast<Toy>(dir->entity("toy")); }
  [[nodiscard]] Vek::Ptr<ToyBox> box() const { return Vek::ptrCast<ToyBox>(dir->entity("box")); }
  /// What all entities hold.
  [[nodiscard]] std::vector<U64> state() const {
    return {digest(*toy()), digest(*box()), digest(*ours), digest(*shown)};
  }

  Vek::Ptr<ToyBox> ours = Toys::toyBoxFactory("ours");
  Vek::Ptr<ToyBox> shown = Toys::toyBoxFactory("shown");
  Vek::Ptr<Dir> dir = Vek::make<Dir>();
  RawPeer peer;
};

struct Wire : LeakCheck {};

TEST_F(Wire, TheKindOfAttributeDecidesTheHeader) {
  Scene scene;
  ToyBox& box = *scene.ours;
  Ptr<Toy> const toy = Toys::toyFactory("a toy");
  scene.peer.connection->exports().exportIs(toy, Access::readOnly);
  scene.peer.says(mountOf("a toy", "Toys::Toy", false));
  scene.peer.hears();
  Toys::ToyPoint const place(3, -2, "ab");
  Kiln::Fapmask const mask({1, 2, 3, 4});
  std::pair<std::function<void()>, std::string> const cases[] = {
      {[&] { toy->sizeIs(7); }, "258: 0000000000000007"},
      {[&] { toy->brokenIs(true); }, "259: 01"},
      {[&] { toy->playedIs(0.5); }, "260~: 3fe0000000000000"},
      {[&] { toy->textIs("ab"); }, "261~: 01 6162"},
      {[&] { toy->placeIs(place); }, "262~: 00000003 c000000000000000 00000002 6162"},
      {[&] { box.countsIs(1, 10); }, "258~: 00000001 0000000a"},
      {[&] { box.countsDel(1); }, "-258~: 00000001"},
      {[&] { box.fapsIs(2048, 3); }, "259~: 0800 0000000000000003"},
      {[&] { box.wantedIs(5, true); }, "260: 00000005 01"},
      {[&] { box.wantedDel(5); }, "-260: 00000005"},
      {[&] { box.notesIs("k", {}); }, "261~: 00000001 6b 00000000 0000000000000000 00000000"},
      {[&] { box.notesDel("k"); }, "-261~: 00000001 6b"},
      {[&] { box.vlansIs(Bridging::VlanIdOrNone(4094), mask); }, "263~: 0ffe 00000001 00000002 00000003 00000004"},
      {[&] { box.lidIs("top"); }, "265~#151: 00000003 746f70 0ddba11000000009"},
      {[&] { box.lidDel(); }, "-265:"},
      {[&] { box.shelvesIs("s"); }, "266~#151: 00000001 73 0ddba1100000000b"},
      {[&] { box.shelvesDel("s"); }, "-266~: 00000001 73"},
  };
  for (auto const& [change, written] : cases) {
    change();
    std::string expected = written;
    std::erase(expected, ' ');
    EXPECT_EQ(said(*scene.peer.connection).front(), expected);  // what a child holds follows
  }
  toy->sizeIs(8);
  scene.peer.connection->writable();
  EXPECT_EQ(hex(scene.peer.hears()),
            hex(number(idOf(RawPeer::theirs, 3)) + bytes("00000102 00000008 0000 00 00 01 0000000000000008 03")));
}

TEST_F(Wire, WhatAPeerMayNotSayEndsItsConnectionWithNothingApplied) {
  std::string const one = number(U32{1});
  std::string const good = record(toyId, 258, number(U64{7}));
  std::string noOpening = good;
  noOpening[20] = '\2';
  std::string noClosing = good;
  noClosing.back() = '\1';
  std::string tooLong = good;
  tooLong.replace(12, 4, bytes("00040001"));
  std::pair<std::string, char const*> const cases[] = {
      {noOpening, "a record that is not framed by its tokens"},
      {noClosing, "a record that is not framed by its tokens"},
      {tooLong, "a record of 262145 bytes, where 262144 are the most"},
      {record(toyId, 259, "\2"), "a truth value that is neither 0 nor 1"},
      {record(boxId, 263, bytes("0fff")), "VlanIdOrNone::value > 4094 not allowed"},
      {record(boxId, -263, bytes("0fff")), "VlanIdOrNone::value > 4094 not allowed"},
      {record(boxId, 259, bytes("0801 0000000000000001")), "FapId::value < FapId::min or > FapId::null not allowed"},
      {record(toyId, 261, std::string(1, '\0')), "a piece of a text without a byte"},
      {record(boxId, 261, bytes("01000001")), "a text of 16777217 bytes, where 16777216 are the most"},
      {syncMode(toyId, 3), "sync mode 3"},
      {marker(boxId, 258, 3), "a marker of kind 3"},
      {syncMode(oursId, 1), "a replica that tells its owner how far it has come"},
      {marker(oursId, 258, 0), "a replica that begins or ends a walk"},
      {marker(oursId, 258, 2), "a replica that begins or ends a walk"},
      {record(shownId, 258, one + one), "write-update from readonly proxy: shown peerName: peer"},
      {marker(shownId, 258, 1), "write-update from readonly proxy: shown peerName: peer"},
      {control(orphanRecord, section(typeSection, text("Toys::Toy"))), "announced without a name"},
      {orphan(idOf(RawPeer::theirs, 9), "Toys::Toy", "toy"), "an id that is not the peer's"},
      {orphan(idOf(RawPeer::tag, 9) - 1, "Toys::Toy", "toy"), "an id that is not the peer's"},
      {orphan(boxId, "Toys::Toy", "toy"), "an entity id that another entity has"},
      {control(orphanRecord, bytes("03 00000006 00000001 61")), "longer than the record"},
      {control(orphanRecord, bytes("01 00000004 00000001 61")), "shorter than its fields"},
      {control(orphanRecord, bytes("03 00000004 00000003") + section(idSection, number(toyId))),
       "shorter than its fields"},
      {record(boxId, 266, text("s") + number(boxId), 151), "an entity id that another entity has"},
      {record(boxId, 266, text("s") + number(idOf(RawPeer::tag, 9) - 1), 151), "a child under an id that is none"},
      {record(boxId, 265, text("s") + number(idOf(RawPeer::theirs, 9)), 151), "an id that is not the peer's"},
      {record(boxId, 266, text("s") + number(idOf(0x12345678, 9)), 151), "an id that is not the peer's"},
      {control(ackRecord, number(U64{1000})), "more records applied than were written"},
      {control(byeRecord, text("enough")), "the peer ended the connection: enough"},
  };
  for (auto const& [said, reason] : cases) {
    Scene scene;
    auto const before = scene.state();
    scene.peer.says(said + good);
    EXPECT_THAT(scene.reason(), testing::HasSubstr(reason)) << hex(said);
    EXPECT_EQ(scene.state(), before) << hex(said);
    EXPECT_THAT(scene.peer.hears(), testing::HasSubstr(reason)) << "the peer is told";
  }
}

TEST_F(Wire, GreetingsThatDoNotMatchEndTheConnection) {
  std::pair<std::string, char const*> const cases[] = {
      {"SSH-", "does not speak this log"},
      {greeting(RawPeer::tag, {}, 2), "the peer speaks version 2 of the log, this is version 1"},
      {greeting(RawPeer::theirs), "both ends have drawn the same mark"},
      {greeting(0), "both ends have drawn the same mark"},
      {greeting(RawPeer::tag, {.recordBytes = 100}),
       "records of 100 bytes and texts of 16777216, and 1024 are the least"},
  };
  for (auto const& [said, reason] : cases) {
    RawPeer peer;
    peer.says(said);
    EXPECT_THAT(peer.connection->closeReason().charPtr(), testing::HasSubstr(reason));
  }
}

TEST_F(Wire, WhatIsNotKnownOrEndsInsideAFieldIsPassedOverAndCounted) {
  std::string const one = number(U32{1});
  std::string const said[] = {
      record(idOf(RawPeer::tag, 9), 258, number(U64{7})),
      record(2, 258, number(U64{7})),
      record(toyId, 999, number(U64{7})),
      record(toyId, -258, number(U64{7})),
      record(toyId, -135, one),
      record(toyId, std::numeric_limits<int>::min(), one),
      record(toyId, 258, number(U64{7}), 7),
      record(toyId, 258, one),
      record(toyId, 259, ""),
      record(toyId, 262, one + "\1\2\3"),
      record(toyId, 262, one + number(U64{0}) + number(U32{4}) + "abc"),
      record(boxId, 260, "\1\2\3"),
      record(boxId, 263, bytes("0001 00000001 0000")),
      record(boxId, 137, number(U32{258}) + number(U32{0})),
      record(boxId, 144, bytes("00")),
      record(boxId, 144, bytes("00ff 00000000 0000010a") + text("s") + number(idOf(RawPeer::tag, 9))),
      record(boxId, 144, bytes("0008 00ff 0000010a 00000000") + text("s") + number(idOf(RawPeer::tag, 9))),
      record(boxId, 266, text("s") + number(U32{0}), 151),
      control(200, "anything"),
      control(mountRecord, text("toy")),
      control(byeRecord, "\1"),
      orphan(idOf(RawPeer::tag, 9), "Toys::Toy", "never asked for"),
      orphan(idOf(RawPeer::tag, 9), "Toys::ToyBox", "toy"),
  };
  Scene scene;
  auto const before = scene.state();
  U64 counted = scene.demuxer().skipped();
  for (std::string const& each : said) {
    scene.peer.says(each);
    EXPECT_EQ(scene.demuxer().skipped(), ++counted) << hex(each);
  }
  EXPECT_EQ(scene.reason(), "");
  EXPECT_EQ(scene.state(), before);
}

TEST_F(Wire, PeersOfOtherSchemasAgreeOnTheFieldsThatBothKnow) {
  Scene scene;
  scene.peer.says(record(toyId, 262, number(U32{5})) + record(boxId, 258, number(U32{9})));
  EXPECT_EQ(scene.toy()->place(), Toys::ToyPoint(5, 0, ""));
  EXPECT_EQ(scene.box()->countsCount(), 1U);
  EXPECT_EQ(scene.demuxer().skipped(), 0U);
  scene.peer.says(record(toyId, 258, number(U64{7}) + "a field of tomorrow"));
  EXPECT_EQ(scene.toy()->size(), 7U);
  EXPECT_EQ(scene.demuxer().skipped(), 1U);
}

TEST_F(Wire, AsMuchAsIsAllowedIsTaken) {
  Limits const own{.recordBytes = 2048, .textBytes = 1024, .waitingMounts = 2};
  Scene scene({}, own);
  std::string const longest(1024, 'x');
  std::string const fits(own.recordBytes - 4 - 1024 - 4 - 8 - 4, 'y');
  scene.peer.says(record(toyId, 261, '\1' + longest) +
                  record(boxId, 261, text(longest) + number(U32{1}) + number(U64{0}) + text(fits)));
  EXPECT_EQ(scene.toy()->text().view(), longest);
  EXPECT_EQ(scene.box()->notes(std::string_view(longest)).label().view(), fits);
  for (char const* name : {"one", "two", "three"}) {
    scene.peer.says(mountOf(name, "Toys::Toy", false));
    EXPECT_EQ(scene.peer.hears().find("too many mounts wait") == std::string::npos, std::string_view(name) != "three");
  }
  EXPECT_EQ(scene.reason(), "");
  scene.peer.says(record(toyId, 261, '\1' + longest + 'x'));
  EXPECT_EQ(scene.reason(), "a text of more than 1024 bytes");
}

TEST_F(Wire, RecordsThatThePeerDoesNotTakeAreDroppedWholeAndCounted) {
  Limits const small{.recordBytes = 2048, .textBytes = 1024};
  Scene scene(small);
  Vek::Ptr<Toy> const toy = Toys::toyFactory("a toy");
  scene.peer.connection->exports().exportIs(toy, Access::readOnly);
  scene.peer.says(mountOf("a toy", "Toys::Toy", false));
  scene.peer.hears();
  std::string const longest(1024, 'x');
  toy->textIs(std::string_view(longest + 'x'));
  scene.ours->notesIs("a", {1, 2, std::string_view(longest + 'x')});                  // a text too long
  scene.ours->notesIs(std::string_view(longest), {1, 2, std::string_view(longest)});  // a record too long
  std::string const fits(small.recordBytes - 4 - 1024 - 4 - 8 - 4, 'y');
  scene.ours->notesIs(std::string_view(longest), {1, 0, std::string_view(fits)});  // as long as may be
  scene.peer.connection->writable();
  EXPECT_EQ(scene.peer.connection->out()->droppedRecords(), 3U);
  EXPECT_EQ(hex(scene.peer.hears()),
            hex(record(oursId, 261, text(longest) + number(U32{1}) + number(U64{0}) + text(fits))));
  EXPECT_EQ(scene.reason(), "");
}

TEST_F(Wire, FloodsAreBounded) {
  Scene scene;
  for (U32 n = 10; n < 2000; ++n) scene.peer.says(orphan(idOf(RawPeer::tag, n), "Toys::Toy", "toy"));
  EXPECT_EQ(scene.demuxer().adapters().foreign(), 2U);
  EXPECT_EQ(scene.reason(), "");

  scene.peer.near.capacityIs(0);  // the peer asks, and reads no answer
  auto const before = Vek::CountedHeap::liveObjects();
  for (U32 n = 0; n < 20000; ++n) {
    scene.ours->countsIs(n, 1);
    scene.ours->countsDel(n);
  }
  EXPECT_LT(Vek::CountedHeap::liveObjects(), before + 2000);
  for (int n = 0; n < 1000 && scene.reason().empty(); ++n) {
    scene.peer.says(mountOf(std::to_string(n) + std::string(1000, 'x'), "Toys::Toy", false));
  }
  EXPECT_EQ(scene.reason(), "more mounts are asked for than answers are read");
  EXPECT_LT(scene.peer.connection->out()->unsent(), 400U * 1024);

  Scene other;
  other.peer.near.capacityIs(0);
  for (U32 n = 3; n < 20000 && other.reason().empty(); ++n) {
    U64 const id = idOf(RawPeer::tag, n);
    other.peer.says(orphan(id, "Toys::Toy", "toy") + control(goneRecord, number(id)));
  }
  EXPECT_EQ(other.reason(), "more is announced than answers are read");
}

TEST_F(Wire, WhatFlapsAboveIsToldBelowWhenThereIsRoom) {
  Scene above;
  RawPeer below;
  below.connection->exports().exportIs(above.toy(), Access::readOnly);
  below.says(greeting(RawPeer::tag + 1) + mountOf("toy", "Toys::Toy", false));
  below.near.capacityIs(0);
  for (int i = 0; i < 20001; ++i) {
    above.peer.says(control(stateRecord, number(toyId) + static_cast<char>(i % 2)));
    below.says("");
  }
  EXPECT_LT(below.connection->out()->unsent(), 100U * 1024);
  below.near.capacityIs(1 << 20);
  below.says("");
  std::string const heard = below.hears();
  EXPECT_EQ(heard.substr(heard.rfind(number(U32{stateRecord})) + 13, 9), number(idOf(RawPeer::theirs, 1)) + '\0');
}

TEST_F(Wire, AChildBoundOnceMoreWhileItsTreeIsWalkedIsOneOfThem) {
  RawPeer peer{{.outBytes = 1, .messageBytes = 1}};
  Ptr<ToyBox> const box = Toys::toyBoxFactory("box");
  for (char name = 'a'; name < 'u'; ++name) box->shelvesIs("p")->drawersIs(std::string_view(&name, 1));
  peer.connection->exports().exportIs(box, Access::writable);
  peer.says(greeting(RawPeer::tag) + mountOf("box", "Toys::ToyBox", true));
  std::string const bind = record(oursId, 266, text("p") + number(shownId), childBindRecord);
  for (int i = 0; i < 400; ++i) peer.says(i == 30 ? bind : "");
  EXPECT_EQ(box->vekNboAttrLogSa(peer.connection->out())->syncMode(), Sa::inStep);
}

}  // namespace
}  // namespace LogTest
