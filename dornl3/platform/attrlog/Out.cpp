#include "dornl3/platform/attrlog/Out.h"

#include "dornl3/platform/attrlog/Connection.h"

#include <cassert>

namespace Vek::NboAttrLog {

namespace {

constexpr std::size_t sectionHeader = 5;

}  // namespace

Out::~Out() = default;

void Out::nextHeaderIs(MsgHeader const& header) {
  if (isOpen_) bytes_.truncate(recordStart_);
  isOpen_ = false;
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

void Out::currentPayloadSectionIs(PayloadSection section) {
  endSection();
  sectionStart_ = bytes_.size() - recordStart_;
  putByte(section);
  putInteger(U32{0});
}

void Out::endSection() noexcept {
  if (sectionStart_ == 0 || payload_ > mostPayload()) return;
  std::size_t const length = bytes_.size() - recordStart_ - sectionStart_ - sectionHeader;
  putNumber(bytes_.at(recordStart_ + sectionStart_ + 1), static_cast<U32>(length));
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
  if (isVariable_) putNumber(bytes_.at(recordStart_ + lengthAt), length);
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

Ptr<In> Out::reverseLog() const { return connection_ != nullptr ? connection_->in() : Ptr<In>{}; }

OutPtr const& operator<<(OutPtr const& out, String8 text) {
  std::string_view const bytes = text.view();
  out->putInteger(static_cast<U32>(bytes.size()));
  out->putBytes(bytes);
  return out;
}

}  // namespace Vek::NboAttrLog
