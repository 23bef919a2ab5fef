// Out: the output half of a connection: records, written straight into the bytes that wait to be sent.
// A record is a header and a payload between two tokens. It begins with nextHeaderIs() and nobody sees it until its
// closing token is written: a record that is left in the middle, by an exception say, is dropped by the next one.
// Bounded: a record is begun only where hasSufficientBuffer() says that there is room, and then may go beyond the limit
// by its own length. One whose payload, or a text in it, is longer than the peer takes is dropped whole and counted,
// and the connection goes on: whoever wrote it must treat it as sent, or it would come back for ever. Owner: its
// connection, and each adapter that writes to it. Thread: the connection's.
#pragma once

#include "dornl3/core/Name.h"
#include "dornl3/core/Ptr.h"
#include "dornl3/platform/attrlog/ByteQueue.h"
#include "dornl3/platform/attrlog/EntityId.h"
#include "dornl3/platform/attrlog/Wire.h"

#include <cassert>

namespace Vek {

namespace NboAttrLog {
class Demuxer;
class In;
class Connection;
}  // namespace NboAttrLog

/// A duplex stream to one peer, by its two halves.
class Connection : public PtrInterface {
 public:
  class In;
  class Out;
};

class Connection::Out : public PtrInterface {
 public:
  enum TransactToken : U8 { tokenOpen = 1, tokenClose = 3 };
};

namespace NboAttrLog {

/// What opens a record.
struct MsgHeader {
  EntityId entityId;
  int attribute = 0;    ///< the attribute's number; below 0 what it names is gone
  U8 variableSize = 0;  ///< 1: the payload's size is not known ahead
  U32 payloadSize = 0;  ///< in bytes without the tokens, where variableSize is 0
  U32 recordKind = plainRecord;
  U8 headerTail = 0;
};

/// The last four bytes of a header: the kind in two, the flags and the tail.
[[nodiscard]] constexpr U32 headerEnd(U32 kind, bool isVariable, U8 tail) noexcept {
  U32 const flags = isVariable ? variableSizeFlag : 0;
  return kind << 16 | flags << 8 | tail;
}

/// What stands behind the id in the header of a plain record, as it stands there: a constant of each attribute.
class RecordHead {
 public:
  constexpr RecordHead() noexcept = default;
  /// `isVariable`: the header does not promise that others of this attribute have the same size.
  constexpr RecordHead(int attribute, U32 size, bool isVariable) noexcept
      : attribute_(networkOrder(static_cast<U32>(attribute))),
        size_(networkOrder(size)),
        rest_(networkOrder(headerEnd(plainRecord, isVariable, 0))) {}

  [[nodiscard]] constexpr int attribute() const noexcept { return static_cast<int>(networkOrder(attribute_)); }
  void write(char* at) const noexcept { std::memcpy(at, this, sizeof *this); }

 private:
  U32 attribute_ = 0;
  U32 size_ = 0;
  U32 rest_ = 0;
};
static_assert(sizeof(RecordHead) + sizeof(EntityId) == headerSize);

class Out : public Vek::Connection::Out {
 public:
  Out(Connection* connection, Limits const& limits) noexcept : connection_(connection), limits_(limits) {}
  ~Out() override;

  /// Opens a record. One that stands open is dropped.
  void nextHeaderIs(MsgHeader const& header);
  /// A plain record of so few bytes that every peer takes it, written and closed but for its payload, which the caller
  /// writes where the answer points before anything else is written. `size`: as the head has it.
  [[nodiscard]] char* smallRecordIs(EntityId id, RecordHead const& head, U32 size) {
    assert(size <= leastLimit);
    if (isOpen_) [[unlikely]]
      dropOpen();
    std::size_t const whole = headerSize + tokensSize + size;
    char* const at = bytes_.room(whole);
    id.write(at);
    head.write(at + sizeof id);
    at[headerSize] = tokenOpen;
    at[whole - 1] = tokenClose;
    bytes_.extend(whole);
    ++records_;
    due();
    return at + headerSize + 1;
  }
  /// Opens a plain record of a size that is not told ahead, and its payload.
  void variableRecordIs(EntityId id, int attribute) {
    open({.entityId = id, .attribute = attribute, .variableSize = 1});
    *bytes_.at(recordStart_ + headerSize) = tokenOpen;
    bytes_.extend(1);
    payload_ = 1;
  }
  /// Closes the record that is open.
  void closeRecord() {
    if (sectionStart_ != 0) endSection();
    isOpen_ = false;
    droppedLast_ = payload_ > mostPayload();
    if (droppedLast_) [[unlikely]] {
      dropRecord();
      return;
    }
    auto const length = static_cast<U32>(payload_ - 1);
    assert((isVariable_ || length == expected_) && "a record of fixed size has another length");
    if (isVariable_) putNumber(bytes_.at(recordStart_ + lengthAt), length);
    *bytes_.room(1) = static_cast<char>(tokenClose);
    bytes_.extend(1);
    ++records_;
    due();
  }
  /// Opens a part of the payload; the part before it ends there.
  void currentPayloadSectionIs(PayloadSection section);
  void tokenIs(TransactToken token) { token == tokenOpen ? putByte(token) : closeRecord(); }

  /// Whether the connection takes records.
  [[nodiscard]] bool bufferFlag() const noexcept { return bufferFlag_; }
  /// Whether answers wait that the peer does not read: records that were begun with room stay below.
  [[nodiscard]] bool isUnread() const noexcept {
    return unsent() > std::size_t{limits_.outBytes} + limits_.recordBytes;
  }
  /// Whether the connection takes records, there is room, and nothing comes in over several records.
  [[nodiscard]] bool takesPlainly() const noexcept { return bytes_.size() < plainEnd_; }
  /// Whether something comes in over several records.
  void hasFlowInsIs(bool on) noexcept {
    hasFlowIns_ = on;
    setPlainEnd();
  }
  /// Whether the closing of every record is to be looked at: the far side lacks what was too long for it.
  [[nodiscard]] bool isWatched() const noexcept { return isWatched_; }
  void isWatchedIs(bool on) noexcept { isWatched_ = on; }
  /// Whether there is room for one more ordinary record. An empty log always has room.
  [[nodiscard]] bool hasSufficientBuffer() const noexcept {
    return bufferFlag_ && (unsent() == 0 || freeSpace() >= maxMessageSize());
  }
  /// Bytes that a text may take.
  [[nodiscard]] U32 freeSpace() const noexcept {
    if (!bufferFlag_) return 0;
    std::size_t const waiting = unsent();
    if (waiting == 0) return limits_.outBytes > maxMessageSize() ? limits_.outBytes : maxMessageSize();
    return waiting < limits_.outBytes ? static_cast<U32>(limits_.outBytes - waiting) : 0;
  }
  /// The longest piece of a text.
  [[nodiscard]] U32 maxMessageSize() const noexcept { return limits_.messageBytes; }

  /// The input half of the same connection; null when the connection has gone.
  [[nodiscard]] Ptr<In> reverseLog() const;
  [[nodiscard]] In* input() const noexcept { return in_; }
  /// The connection's demuxer; null when the connection has gone.
  [[nodiscard]] Demuxer* demuxer() const noexcept { return demuxer_; }
  [[nodiscard]] Connection* connection() const noexcept { return connection_; }
  [[nodiscard]] Name const& peerName() const noexcept { return peerName_; }

  /// What both ends take.
  [[nodiscard]] Limits const& limits() const noexcept { return limits_; }

  /// Records closed so far, the connection's own among them.
  [[nodiscard]] U64 records() const noexcept { return records_; }
  /// Records that were longer than the peer takes.
  [[nodiscard]] U64 droppedRecords() const noexcept { return droppedRecords_; }
  /// One was not even begun.
  void droppedInc() noexcept { ++droppedRecords_; }
  /// Whether the record closed last was one of them; small ones never are.
  [[nodiscard]] bool droppedLast() const noexcept { return droppedLast_; }
  /// The attribute of the record opened last, small ones apart.
  [[nodiscard]] int attribute() const noexcept { return attribute_; }
  /// Bytes of closed records, since the beginning.
  [[nodiscard]] U64 written() const noexcept { return gone_ + unsent(); }
  /// Bytes of closed records that wait.
  [[nodiscard]] std::size_t unsent() const noexcept { return isOpen_ ? recordStart_ : bytes_.size(); }
  [[nodiscard]] std::string_view view() const noexcept { return bytes_.view().substr(0, unsent()); }

  /// There is something to send, or an adapter owes something: whoever drives the connection is told, once.
  void due() {
    if (tellsWhenDue_) [[unlikely]]
      tellDue();
  }

  /// The first bytes have gone.
  void sent(std::size_t count) noexcept;

  // Fields of the payload.
  void putByte(U8 byte) { *static_cast<U8*>(space(1)) = byte; }
  template <class T>
  void putInteger(T value) {
    putNumber(static_cast<char*>(space(sizeof(T))), value);
  }
  /// Room for fields of so many bytes, which the caller writes; null where they are not kept.
  [[nodiscard]] char* fieldsIs(std::size_t count) {
    payload_ += count;
    if (payload_ > mostPayload()) [[unlikely]]
      return nullptr;
    char* const to = bytes_.room(count);
    bytes_.extend(count);
    return to;
  }
  void putId(EntityId id) { id.write(static_cast<char*>(space(8))); }
  void putBytes(std::string_view bytes);
  /// Its length in four bytes, and its bytes. A record with a text that is longer than the peer takes is dropped.
  void putText(std::string_view text);

 private:
  friend class Connection;

  static constexpr std::size_t lengthAt = 12;  // of the payload's length in a header

  // What goes behind the payload's limit is not kept.
  void* space(std::size_t count) {
    char* const to = fieldsIs(count);
    return to != nullptr ? to : spare_;
  }
  static void putHeader(char* at, MsgHeader const& header) noexcept {
    header.entityId.write(at);
    putNumber(at + 8, static_cast<U32>(header.attribute));
    putNumber(at + lengthAt, header.payloadSize);
    putNumber(at + 16, headerEnd(header.recordKind, header.variableSize != 0, header.headerTail));
  }
  [[nodiscard]] std::size_t mostPayload() const noexcept { return std::size_t{limits_.recordBytes} + 1; }
  // Opens a record, with room for its tokens.
  void open(MsgHeader const& header) {
    if (isOpen_) dropOpen();
    recordStart_ = bytes_.size();
    putHeader(bytes_.room(headerSize + tokensSize), header);
    bytes_.extend(headerSize);
    isOpen_ = true;
    isVariable_ = header.variableSize != 0;
    attribute_ = header.attribute;
    expected_ = header.payloadSize;
    sectionStart_ = 0;
    payload_ = 0;
  }
  void dropOpen() noexcept {
    isOpen_ = false;
    bytes_.truncate(recordStart_);
  }
  void bufferFlagIs(bool on) noexcept {
    bufferFlag_ = on;
    setPlainEnd();
  }
  void setPlainEnd() noexcept {
    std::size_t const most = limits_.outBytes > maxMessageSize() ? limits_.outBytes - maxMessageSize() : 0;
    plainEnd_ = bufferFlag_ && !hasFlowIns_ ? most + 1 : 0;
  }
  void endSection() noexcept;
  void dropRecord() noexcept;
  void tellDue();

  ByteQueue bytes_;
  Connection* connection_;  // null when it has gone
  Demuxer* demuxer_ = nullptr;
  In* in_ = nullptr;
  std::size_t plainEnd_ = 0;  // see takesPlainly(): with more bytes there is no room; 0 where it says no at all
  bool bufferFlag_ = false;
  bool hasFlowIns_ = false;
  bool isWatched_ = false;
  bool tellsWhenDue_ = false;
  bool isOpen_ = false;
  bool isVariable_ = false;
  bool droppedLast_ = false;
  int attribute_ = 0;
  U32 expected_ = 0;              // payload of a record of fixed size
  std::size_t recordStart_ = 0;   // of the open record, from the front of bytes_
  std::size_t sectionStart_ = 0;  // of its open part; 0 without one
  std::size_t payload_ = 0;       // bytes behind its header, the opening token among them
  U64 records_ = 0;
  U64 gone_ = 0;  // bytes that have been sent
  U64 droppedRecords_ = 0;
  Limits limits_;
  Name peerName_;
  char spare_[16] = {};
};

using OutPtr = Ptr<Out>;

inline OutPtr const& operator<<(OutPtr const& out, Vek::Connection::Out::TransactToken token) {
  out->tokenIs(token);
  return out;
}
inline OutPtr const& operator<<(OutPtr const& out, bool value) {
  out->putByte(value ? 1 : 0);
  return out;
}
inline OutPtr const& operator<<(OutPtr const& out, unsigned char value) {
  out->putByte(value);
  return out;
}
inline OutPtr const& operator<<(OutPtr const& out, unsigned short value) {
  out->putInteger(value);
  return out;
}
inline OutPtr const& operator<<(OutPtr const& out, unsigned int value) {
  out->putInteger(value);
  return out;
}
inline OutPtr const& operator<<(OutPtr const& out, unsigned long long const& value) {
  out->putInteger(value);
  return out;
}
/// Seconds: the bits of the double.
inline OutPtr const& operator<<(OutPtr const& out, double const& value) {
  out->putInteger(std::bit_cast<unsigned long long>(value));
  return out;
}
/// A text: its length in four bytes, and its bytes.
OutPtr const& operator<<(OutPtr const& out, String8 text);
inline OutPtr const& operator<<(OutPtr const& out, Name const& name) { return out << String8(name); }
inline OutPtr const& operator<<(OutPtr const& out, EntityId const& id) {
  out->putId(id);
  return out;
}

}  // namespace NboAttrLog

}  // namespace Vek
