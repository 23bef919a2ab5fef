// Wire: the numbers of the attribute log's wire form. Each stands here once; docs/wire-format.md tells the form.
#pragma once

#include "dornl3/core/Integers.h"

#include <bit>
#include <cstddef>
#include <cstring>
#include <type_traits>

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
  stateRecord = 166,        ///< of the connection: whether an entity is in step where its owner mounts it from
  barrierRecord = 167,      ///< of the connection: whether all up to here has been applied, and that it has
};

/// What a barrier record is.
enum BarrierKind : U8 { barrierRequest = 0, barrierApplied = 1, barrierUnknown = 2 };

/// Parts of an orphan record. Each is a byte with its number and four with its length, so that a reader passes over
/// what it does not want.
enum PayloadSection : U8 {
  typeSection = 1,
  argumentsSection = 3,
  idSection = 4,
};

inline constexpr std::size_t headerSize = 20;
inline constexpr std::size_t tokensSize = 2;
inline constexpr U8 variableSizeFlag = 1;

/// A number in network order, which is its own inverse.
template <class T>
[[nodiscard]] constexpr T networkOrder(T value) noexcept {
  static_assert(std::is_unsigned_v<T> && std::endian::native == std::endian::little);
  if constexpr (sizeof(T) == 1) {
    return value;
  } else if constexpr (sizeof(T) == 2) {
    return static_cast<T>(__builtin_bswap16(static_cast<unsigned short>(value)));
  } else if constexpr (sizeof(T) == 4) {
    return static_cast<T>(__builtin_bswap32(static_cast<U32>(value)));
  } else {
    return static_cast<T>(__builtin_bswap64(value));
  }
}

template <class T>
void putNumber(char* at, T value) noexcept {
  T const swapped = networkOrder(value);
  std::memcpy(at, &swapped, sizeof swapped);
}
template <class T>
[[nodiscard]] T takeNumber(char const* at) noexcept {
  T value;
  std::memcpy(&value, at, sizeof value);
  return networkOrder(value);
}
/// A number of 1, 2, 4 or 8 bytes in memory.
inline void putNumber(char* at, void const* number, std::size_t size) noexcept {
  auto const put = [at, number]<class T>(T value) {
    std::memcpy(&value, number, sizeof value);
    putNumber(at, value);
  };
  if (size == 4) return put(U32{});
  if (size == 8) return put(U64{});
  if (size == 2) return put(static_cast<unsigned short>(0));
  *at = *static_cast<char const*>(number);
}

/// The least that a peer must take, as the payload of a record and as a text: mounts, refusals and farewells fit.
inline constexpr U32 leastLimit = 1024;

/// Seconds between the words of an end that has nothing to say: what is worth the while, and what a dead peer may cost.
inline constexpr double leastHeartbeat = 0.01;
inline constexpr double mostHeartbeat = 3600;

/// The most connections that an entity may have come through.
inline constexpr std::size_t mostOfAChain = 64;

/// What each end allows the other, and itself. Announced in the greeting: neither sends what the other would refuse.
struct Limits {
  U32 outBytes = 64 * 1024;      ///< unsent bytes, but for one record that was begun with room
  U32 recordBytes = 256 * 1024;  ///< payload of one record
  U32 messageBytes = 32 * 1024;  ///< what is free in a log that has room; the longest piece of a text
  U32 textBytes = 16 * 1024 * 1024;
  U32 entities = 64 * 1024;  ///< ids that the peer may assign
  U32 waitingMounts = 64;    ///< mounts that wait for an entity that is not exported
  U32 marks = 1024;          ///< keys of one collection that are owed, beyond twice its members
  /// After this long without a word one is sent; thrice as long without one is death. Kept within the bounds above.
  double heartbeatSeconds = 10;
};

}  // namespace Vek::NboAttrLog
