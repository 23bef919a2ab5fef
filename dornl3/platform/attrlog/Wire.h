// Wire: the numbers of the attribute log's wire form. Each stands here once; docs/wire-format.md tells the form.
#pragma once

#include "dornl3/core/Integers.h"

#include <cstddef>

namespace Vek::NboAttrLog {

/// What kind of record a header opens, beside its attribute number.
enum RecordKind : U32 {
  plainRecord = 0,
  childBindRecord = 151,
};

/// Attribute numbers of the framework's own records.
enum Control : int {
  syncModeRecord = 135,     ///< of an entity: its sync mode
  orphanRecord = 136,       ///< of the connection: an entity without parent is announced
  transactionRecord = 137,  ///< of an entity: a begin, abort or end marker
  wrapperRecord = 144,      ///< of an entity: a child record in a wrapper
  mountRecord = 160,        ///< of the connection: the peer wants an entity of that name
  refusedRecord = 161,      ///< of the connection: a mount is refused, and why
  goneRecord = 162,         ///< of the connection: an entity has left the log
  aliveRecord = 163,        ///< of the connection: nothing has changed, the peer lives
  ackRecord = 164,          ///< of the connection: so many records have been applied
  byeRecord = 165,          ///< of the connection: it ends, and why
  stateRecord = 166,        ///< of the connection: how far an entity's own mount has come
};

/// Parts of an orphan record. Each is a byte with its number and four with its length, so that a reader passes over what
/// it does not want.
enum PayloadSection : U8 {
  typeSection = 1,
  argumentsSection = 3,
  idSection = 4,
};

inline constexpr std::size_t headerSize = 20;
inline constexpr std::size_t tokensSize = 2;
inline constexpr U8 variableSizeFlag = 1;

inline constexpr U32 fixedKeyRecord = 5;        // a U32 key and a bool
inline constexpr U32 fixedKeyDeleteRecord = 4;  // a U32 key

/// The least that a peer must take, as the payload of a record and as a text: mounts, refusals and farewells fit.
inline constexpr U32 leastLimit = 1024;

/// What each end allows the other, and itself. Announced in the greeting: neither sends what the other would refuse.
struct Limits {
  U32 outBytes = 64 * 1024;      ///< unsent bytes, but for one record that was begun with room
  U32 recordBytes = 256 * 1024;  ///< payload of one record
  U32 messageBytes = 32 * 1024;  ///< what is free in a log that has room; the longest piece of a text
  U32 textBytes = 16 * 1024 * 1024;
  U32 entities = 64 * 1024;    ///< ids that the peer may assign
  U32 waitingMounts = 64;      ///< mounts that wait for an entity that is not exported
  U32 marks = 1024;            ///< keys of one collection that are owed, beyond twice its members
  double heartbeatSeconds = 10;  ///< after this long without a word one is sent; thrice as long without one is death
};

}  // namespace Vek::NboAttrLog
