// RecordedNotifications: notifications of a kernel, made of recorded messages.
#pragma once

#include "apps/kernel/NotificationSource.h"
#include "tests/apps/MessageBuilder.h"

#include <deque>
#include <utility>

namespace Apps::Kernel {

class RecordedNotifications final : public NotificationSource {
 public:
  void tell(Message const& message, std::uint16_t flags = 0) { datagrams_.push_back(message.framed(0, flags)); }
  void tellBytes(Buffer bytes) { datagrams_.push_back(std::move(bytes)); }
  // What was not received yet is lost.
  void lose() {
    datagrams_.clear();
    overrun_ = true;
  }

  News receive(Bytes& datagram) override {
    if (std::exchange(overrun_, false)) return News::overrun;
    if (datagrams_.empty()) return News::none;
    current_ = std::move(datagrams_.front());
    datagrams_.pop_front();
    datagram = current_;
    return News::datagram;
  }

 private:
  std::deque<Buffer> datagrams_;
  Buffer current_;
  bool overrun_ = false;
};

}  // namespace Apps::Kernel
