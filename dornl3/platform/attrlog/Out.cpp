#include "dornl3/platform/attrlog/Out.h"

#include "dornl3/platform/attrlog/Connection.h"

#include <algorithm>

namespace Vek::NboAttrLog {

namespace {

constexpr std::size_t sectionHeader = 5;

}  // namespace

Out::~Out() = default;

void Out::nextHeaderIs(MsgHeader const& header) { open(header); }

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

void Out::dropRecord() noexcept {
  bytes_.truncate(recordStart_);
  ++droppedRecords_;
}

void Out::sent(std::size_t count) noexcept {
  if (isOpen_) dropOpen();
  bytes_.consume(count);
  gone_ += count;
}

void Out::tellDue() {
  tellsWhenDue_ = false;
  if (connection_ != nullptr) connection_->tellDue();
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

Ptr<In> Out::reverseLog() const { return in_; }

OutPtr const& operator<<(OutPtr const& out, String8 text) {
  out->putText(text.view());
  return out;
}

}  // namespace Vek::NboAttrLog
