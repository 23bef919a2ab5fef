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
inline PairOptions oneRecord(U32 messageBytes = 1) {
  PairOptions options;
  options.limits.outBytes = 1;
  options.limits.messageBytes = messageBytes;
  return options;
}

/// A number in what a log holds, of that many bytes.
inline U32 numberAt(std::string_view bytes, std::size_t at, std::size_t size = 4) {
  U32 value = 0;
  for (char const c : bytes.substr(at, size)) value = value << 8 | static_cast<unsigned char>(c);
  return value;
}

/// A record that waits, or has come.
struct Record {
  bool isOfConnection;
  int attribute;
  U32 kind;
  bool isVariable;  ///< its size was not known ahead
  std::string_view payload;
};

/// The records of a log, behind the greeting where it opens with one.
inline std::vector<Record> recordsIn(std::string_view bytes) {
  if (bytes.starts_with("DL3 log\n")) bytes.remove_prefix(32 + numberAt(bytes, 30, 2));
  std::vector<Record> records;
  for (; bytes.size() >= 22; bytes.remove_prefix(numberAt(bytes, 12) + 22)) {
    records.push_back({numberAt(bytes, 0) == 0, static_cast<int>(numberAt(bytes, 8)), numberAt(bytes, 16, 2),
                       bytes[18] != 0, bytes.substr(21, numberAt(bytes, 12))});
  }
  return records;
}

/// The records that wait, in order, each as its attribute, '~' where its size was not known ahead, '#' and its kind,
/// and its payload behind a colon. They are taken out.
inline Records said(Connection& connection) {
  Records records;
  for (Record const& each : recordsIn(connection.out()->view())) {
    if (each.attribute == Vek::NboAttrLog::aliveRecord) continue;
    records.push_back(std::to_string(each.attribute) + (each.isVariable ? "~" : "") +
                      (each.kind != 0 ? '#' + std::to_string(each.kind) : "") + ':' + hex(each.payload));
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

/// The digits of a text, and of an entity id of the peer's.
inline std::string textHex(std::string_view raw) {
  return hex(std::string{0, 0, 0, static_cast<char>(raw.size())} + std::string(raw));
}
inline constexpr char const* peersId = "0000020000000003";
inline constexpr char const* othersId = "0000020000000005";

}  // namespace LogTest
