// BareLog: entities bound to a log by hand, with no export and no mount: what an adapter does by itself. Records are
// read off the log where they wait, and handed to the adapter as if they had come.
#pragma once

#include "dornl3/platform/attrlog/ControlRecords.h"
#include "dornl3/platform/vek/Dir.h"
#include "tests/attrlog/LogPair.h"
#include "tests/core/LeakCheck.h"
#include "tests/frame/Listener.h"

#include <vector>

namespace LogTest {

using Toys::Toy;
using Toys::ToyBox;
using Vek::EntityId;
using Vek::Ptr;
using Vek::U32;
using Sa = Vek::Entity::VekNboAttrLogSa;
using Records = std::vector<std::string>;

/// A log that is short of room as soon as one record waits in it.
inline PairOptions oneRecord(U32 messageBytes = 1) { return {.limits = {.outBytes = 1, .messageBytes = messageBytes}}; }

/// The records that wait, in order, each as its attribute, '~' where its size was not known ahead, '#' and its kind,
/// and its payload behind a colon. They are taken out.
inline Records said(Connection& connection) {
  Records records;
  auto const number = [](std::string_view bytes) {
    U32 value = 0;
    for (char const c : bytes) value = value << 8 | static_cast<unsigned char>(c);
    return value;
  };
  for (std::string_view left = connection.out()->view(); !left.empty();) {
    U32 const length = number(left.substr(12, 4));
    U32 const kind = number(left.substr(16, 2));
    auto const attribute = static_cast<int>(number(left.substr(8, 4)));
    if (attribute != Vek::NboAttrLog::aliveRecord) {
      records.push_back(std::to_string(attribute) + (left[18] != 0 ? "~" : "") +
                        (kind != 0 ? '#' + std::to_string(kind) : "") + ':' + hex(left.substr(21, length)));
    }
    left.remove_prefix(length + 22);
  }
  connection.out()->sent(connection.out()->unsent());
  return records;
}

struct BareLog : LeakCheck {
  explicit BareLog(PairOptions const& options = oneRecord()) : pair(options) {
    pair.settle();
    said();
  }

  LogPair pair;

  Connection& log() { return pair.owner(); }
  Records said() { return LogTest::said(log()); }
  /// One record waits from now on.
  void fill() { Vek::NboAttrLog::sendAlive(*log().out()); }

  template <class X>
  Ptr<typename X::VekNboAttrLogSa> bound(Ptr<X> const& entity, U32 flags = 0) {
    return bound(entity, flags, log());
  }
  template <class X>
  static Ptr<typename X::VekNboAttrLogSa> bound(Ptr<X> const& entity, U32 flags, Connection& to) {
    auto const adapter = entity->vekNboAttrLogSaIs(Sa::Vek_BitSet(flags), 1, to.out(), nullptr);
    adapter->doAssignEntityId();
    return Vek::ptrCast<typename X::VekNboAttrLogSa>(adapter);
  }

  /// Hands a record to an adapter; `resend`: in the form that only moves past it.
  void receive(Sa& adapter, int attr, std::string_view digits, bool resend = false) {
    payload_ = bytes(digits);
    log().in()->recordIs(payload_.data(), payload_.size());
    Ptr<Vek::NboAttrLog::In> const form = resend ? log().in() : Ptr<Vek::NboAttrLog::In>{};
    adapter.handleAttrDeserialization(attr, 0, static_cast<U32>(payload_.size()), form);
  }
  std::string const& payload() const { return payload_; }

 private:
  std::string payload_;
};

/// With a toy, a box, and what their reactors are called for. Whoever makes them has the types of the toys registered
/// too: not for tests of the real types, which go over all that the registry holds.
struct BareToys : BareLog {
  using BareLog::BareLog;
  Ptr<Toy> toy = Toys::toyFactory("toy");
  Ptr<ToyBox> box = Toys::toyBoxFactory("box");
  Toys::Calls calls;
};

/// The digits of a text, and of an entity id of the peer's.
inline std::string textHex(std::string_view raw) {
  return hex(std::string{0, 0, 0, static_cast<char>(raw.size())} + std::string(raw));
}
inline constexpr char const* peersId = "0000020000000003";
inline constexpr char const* othersId = "0000020000000005";

}  // namespace LogTest
