// In: the input half of a connection: reads the fields of one record, and nothing beside it.
// Every read is checked against the record's limit: one that would pass it throws ShortRecordException, with the
// position at the field. A record lies whole in memory while it is read.
// Owner: its connection. Thread: the connection's. Re-entrancy: one record is read at a time; nothing new is taken in
// meanwhile.
#pragma once

#include "dornl3/platform/attrlog/LogException.h"
#include "dornl3/platform/attrlog/Out.h"

namespace Vek {

/// Selects the constructor of a value that reads it from a log.
struct StreamBogon {};

class Connection::In : public PtrInterface {};

/// A stream of bytes, in fields of network order.
class ByteConnection {
 public:
  class In;
};

class ByteConnection::In : public Connection::In {
 public:
  [[nodiscard]] U8 nextU8() { return static_cast<U8>(*take(1)); }
  [[nodiscard]] unsigned short nextU16() { return __builtin_bswap16(raw<unsigned short>()); }
  [[nodiscard]] U32 nextU32() { return __builtin_bswap32(raw<U32>()); }
  [[nodiscard]] U64 nextU64() { return __builtin_bswap64(raw<U64>()); }
  [[nodiscard]] int nextint() { return static_cast<int>(nextU32()); }
  /// Throws ProtocolException for a byte above 1, from a peer that must keep to the form.
  [[nodiscard]] bool nextbool() {
    U8 const byte = nextU8();
    if (byte > 1 && isStrict_) [[unlikely]]
      throwBadBool();
    return byte != 0;
  }
  /// Throws ProtocolException for a text longer than the limit of texts.
  [[nodiscard]] String8 nextString();

  /// Bytes between the beginning of the payload and what is read next.
  [[nodiscard]] U32 position() const noexcept { return static_cast<U32>(at_ - begin_); }
  void positionIs(U32 position);
  /// Bytes that are left to read.
  [[nodiscard]] U32 left() const noexcept { return static_cast<U32>(limit_ - at_); }
  /// All that is left, read.
  [[nodiscard]] std::string_view rest() noexcept {
    std::size_t const count = left();
    return {std::exchange(at_, limit_), count};
  }
  [[nodiscard]] U32 textLimit() const noexcept { return textLimit_; }
  [[nodiscard]] bool isAtLimit() const noexcept { return at_ == limit_; }

  /// Reads from these bytes, which the caller keeps in place, in the place of what was read before.
  void recordIs(char* begin, std::size_t length) noexcept {
    begin_ = at_ = begin;
    limit_ = begin + length;
  }
  void isStrictIs(bool on) noexcept { isStrict_ = on; }
  void textLimitIs(U32 bytes) noexcept { textLimit_ = bytes; }

 protected:
  [[nodiscard]] char* take(std::size_t count) {
    if (static_cast<std::size_t>(limit_ - at_) < count) [[unlikely]]
      throwShort();
    char* const from = at_;
    at_ += count;
    return from;
  }

  [[noreturn]] static void throwShort();

 private:
  template <class T>
  [[nodiscard]] T raw() {
    T value;
    std::memcpy(&value, take(sizeof value), sizeof value);
    return value;
  }
  [[noreturn]] static void throwBadBool();

  char* begin_ = nullptr;
  char* at_ = nullptr;
  char* limit_ = nullptr;
  U32 textLimit_ = NboAttrLog::Limits{}.textBytes;
  bool isStrict_ = false;
};

namespace NboAttrLog {

class In final : public ByteConnection::In {
 public:
  /// How far the record that is read has come: as long as it is decoded nothing has been touched, and a fault is the
  /// peer's; once it is applied a fault is ours.
  enum class Phase : U8 { decoding, applying };

  [[nodiscard]] Seconds nextSeconds() { return std::bit_cast<Seconds>(nextU64()); }
  [[nodiscard]] EntityId nextEntityId() { return EntityId::read(take(8)); }
  /// Writes an id over the eight bytes that end at the position.
  void overwriteId(EntityId id) noexcept;

  /// The connection's demuxer; null when the connection has gone.
  [[nodiscard]] Demuxer* demuxer() const noexcept { return demuxer_; }

  /// Reads a wrapper of a child record, up to the child record's payload: a number behind which comes the place of the
  /// child's id, numbers of attributes up to the first place, and of the first of them that `isChild` knows the record.
  /// Returns that number, below 0 where the child is gone, or the wrapper's own where there is none.
  template <class IsChild>
  [[nodiscard]] int unwrapped(int attr, U32& idAt, IsChild const& isChild) {
    U32 const end = nextU16();
    U32 const place = nextU16();
    int found = attr;
    while (position() < end) {
      int const number = nextint();
      auto const absolute = static_cast<AttributeId>(number);
      if (!isChild(number < 0 ? AttributeId{0} - absolute : absolute)) continue;
      if (end < position()) throwShort();
      positionIs(end);
      found = number;
      break;
    }
    if (found > 0) static_cast<void>(nextU32());
    idAt = place;
    return found;
  }

  [[nodiscard]] Phase phase() const noexcept { return phase_; }
  void phaseIs(Phase phase) noexcept { phase_ = phase; }

 private:
  friend class Connection;
  ByteQueue bytes_;
  Demuxer* demuxer_ = nullptr;
  Phase phase_ = Phase::decoding;
};

}  // namespace NboAttrLog

}  // namespace Vek
