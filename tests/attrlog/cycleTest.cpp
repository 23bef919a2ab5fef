// Entities that would come back to where they are from: whoever closes the ring refuses.
#include "tests/attrlog/BareLog.h"

#include <gmock/gmock.h>

#include <deque>

namespace LogTest {
namespace {

using testing::StartsWith;
using Vek::Dir;

// Processes in a row, each with a directory and a toy of its own in the first; the links from one to another.
struct Ring : LeakCheck {
  struct Process {
    Ptr<Dir> dir = Vek::make<Dir>();
    [[nodiscard]] Ptr<Toy> toy() const { return Vek::ptrCast<Toy>(dir->entity("toy")); }
  };
  struct Link {
    // Each with marks of its own.
    explicit Link(U32 number) {
      pair.world.lastRandom = number << 8;
      pair.connect();
    }
    LogPair pair;
    Ptr<Mount> mount;
  };

  explicit Ring() { processes.front().dir->entryIs(Toys::toyFactory("toy")); }

  Process& process(std::size_t at) {
    while (processes.size() <= at) processes.emplace_back();
    return processes[at];
  }
  // `to` wants the toy of `from`.
  Mount& wanted(std::size_t from, std::size_t to) {
    Link& link = links.emplace_back(static_cast<U32>(links.size()));
    if (process(from).toy()) link.pair.owner().exports().exportIs(process(from).toy(), Access::writable);
    link.mount = Vek::make<Mount>("toy", *Toy::_fwkType(), Access::writable, process(to).dir);
    link.pair.reader().mounts().mountIs(link.mount);
    return *link.mount;
  }
  Mount& mounted(std::size_t from, std::size_t to) {
    Mount& mount = wanted(from, to);
    settle();
    return mount;
  }
  void settle() {
    for (int rounds = 0; rounds < 8; ++rounds) {
      for (auto& link : links) link.pair.settle();
    }
  }

  std::deque<Process> processes{1};
  std::deque<Link> links;
};

TEST_F(Ring, IsRefusedByWhoeverClosesIt) {
  for (std::size_t const length : {1U, 2U, 5U}) {
    SCOPED_TRACE(length);
    processes.resize(1);
    for (std::size_t at = 1; at <= length; ++at) EXPECT_EQ(mounted(at - 1, at).state(), Dir::inStep);
    Mount const& back = mounted(length, 0);
    EXPECT_THAT(back.refusal().charPtr(), StartsWith("a cycle of mounts: "));
    EXPECT_EQ(back.state(), Dir::neverSynced);
    EXPECT_EQ(back.entity(), nullptr);
    EXPECT_EQ(process(0).dir->entry("toy")->state(), Dir::inStep);
    process(0).toy()->sizeInc(1);
    process(length).toy()->brokenIs(!process(0).toy()->broken());
    settle();
    for (std::size_t at = 1; at <= length; ++at) {
      EXPECT_EQ(process(at).toy()->size(), process(0).toy()->size());
      EXPECT_EQ(process(at).toy()->broken(), process(0).toy()->broken());
    }
    // Nothing is left of it at the other end, which may export to somebody else.
    EXPECT_EQ(process(length).toy()->vekNboAttrLogSa(links.back().pair.owner().out()), nullptr);
    links.clear();
  }
}

TEST_F(Ring, OfTwoWhoHadTheEntityBothIsRefusedByOneAtLeast) {
  process(1).dir->entryIs(Toys::toyFactory("toy"));
  for (std::size_t const from : {0U, 1U}) wanted(from, 1 - from);
  for (int rounds = 0; rounds < 8; ++rounds) {
    for (auto& link : links) link.pair.step();
  }
  settle();
  EXPECT_FALSE(links[0].mount->refusal().empty() && links[1].mount->refusal().empty());
  for (Link const& link : links) {
    EXPECT_TRUE(link.mount->state() == Dir::inStep || !link.mount->refusal().empty());
  }
  process(0).toy()->sizeIs(1);
  process(1).toy()->brokenIs(true);
  settle();
}

TEST_F(Ring, OverOneConnection) {
  process(1).dir->entryIs(Toys::toyFactory("toy"));
  Mount const& there = wanted(0, 1);
  LogPair& pair = links.front().pair;
  pair.reader().exports().exportIs(process(1).toy(), Access::writable);
  auto const here = Vek::make<Mount>("toy", *Toy::_fwkType(), Access::writable, process(0).dir);
  pair.owner().mounts().mountIs(here);
  settle();
  EXPECT_EQ(pair.owner().state(), Vek::NboAttrLog::open);
  EXPECT_FALSE(here->refusal().empty() && there.refusal().empty());
  process(0).toy()->sizeIs(3);
  settle();
}

TEST_F(Ring, AChainThatIsTooLongIsRefused) {
  std::size_t last = 0;
  while (mounted(last, last + 1).state() == Dir::inStep) ++last;
  EXPECT_EQ(last, Vek::NboAttrLog::mostOfAChain + 1);
  EXPECT_EQ(links.back().mount->refusal(), "it has come through more than 64 connections");
}

// A mount that is given up ends at the owner too, and may be had again.
TEST_F(Ring, WhatIsGivenUpMayBeHadAgain) {
  mounted(0, 1);
  Link& link = links.front();
  link.pair.reader().mounts().mountDel(*link.mount);
  settle();
  EXPECT_EQ(process(0).toy()->vekNboAttrLogSa(link.pair.owner().out()), nullptr);
  link.pair.reader().mounts().mountIs(link.mount);
  settle();
  EXPECT_EQ(link.mount->state(), Dir::inStep);
}

}  // namespace
}  // namespace LogTest
