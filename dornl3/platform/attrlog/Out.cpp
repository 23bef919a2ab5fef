#include "dornl3/platform/attrlog/Out.h"

#include "dornl3/platform/attrlog/Connection.h"

#include <algorithm>
#include <cassert>

namespace Vek::NboAttrLog {

namespace {

constexpr std::size_t lengthAt = 12;  // of the payload's length in a header
constexpr std::size_t sectionHeader = 5;

void write32(char* at, U32 value) noexcept {
  U32 const swapped = __builtin_bswap32(value);
  std::memcpy(at, &swapped, sizeof swapped);
}

}  // namespace

Out::~Out() = default;

void Out::nextHeaderIs(MsgHeader const& header) {
  if (isOpen_) bytes_.truncate(recordStart_);
  isOpen_ = false;
  recordStart_ = bytes_.size();
  char* const at = bytes_.room(headerSize + tokensSize);
  header.entityId.write(at);
  write32(at + 8, static_cast<U32>(header.attribute));
  write32(at + lengthAt, header.payloadSize);
  at[16] = static_cast<char>(header.recordKind >> 8);
  at[17] = static_cast<char>(header.recordKind);
  at[18] = static_cast<char>(header.variableSize != 0 ? variableSizeFlag : 0);
  at[19] = static_cast<char>(header.headerTail);
  bytes_.extend(headerSize);
  isOpen_ = true;
  isVariable_ = header.variableSize != 0;
  attribute_ = header.attribute;
  expected_ = header.payloadSize;
  sectionStart_ = 0;
  payload_ = 0;
}

void Out::currentPayloadSectionIs(PayloadSection section) {
  endSection();
  sectionStart_ = bytes_.size() - recordStart_;
  putByte(section);
  putInteger(U32{0});
}

void Out::endSection() noexcept {
  if (sectionStart_ == 0 || payload_ > mostPayload()) return;
  std::size_t const length = bytes_.size() - recordStart_ - sectionStart_ - sectionHeader;
  write32(bytes_.at(recordStart_ + sectionStart_ + 1), static_cast<U32>(length));
}

void Out::closeRecord() {
  endSection();
  isOpen_ = false;
  droppedLast_ = payload_ > mostPayload();
  if (droppedLast_) {
    bytes_.truncate(recordStart_);
    ++droppedRecords_;
    return;
  }
  auto const length = static_cast<U32>(payload_ - 1);
  assert((isVariable_ || length == expected_) && "a record of fixed size has another length");
  if (isVariable_) write32(bytes_.at(recordStart_ + lengthAt), length);
  *bytes_.room(1) = static_cast<char>(tokenClose);
  bytes_.extend(1);
  ++records_;
  written_ += bytes_.size() - recordStart_;
}

void Out::sent(std::size_t count) noexcept {
  if (std::exchange(isOpen_, false)) bytes_.truncate(recordStart_);
  bytes_.consume(count);
}

void Out::putBytes(std::string_view bytes) {
  payload_ += bytes.size();
  if (payload_ <= mostPayload()) bytes_.append(bytes.data(), bytes.size());
}

void Out::putText(std::string_view text) {
  putInteger(static_cast<U32>(text.size()));
  putBytes(text);
  if (text.size() > limits_.textBytes) payload_ = std::max(payload_, mostPayload() + 1);
}

void* Out::spare(std::size_t) noexcept { return spare_; }

Ptr<In> Out::reverseLog() const { return connection_ != nullptr ? connection_->in() : Ptr<In>{}; }

OutPtr const& operator<<(OutPtr const& out, String8 text) {
  out->putText(text.view());
  return out;
}

}  // namespace Vek::NboAttrLog
