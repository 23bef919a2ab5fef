// Reader of messages about the forwarding switch.
#pragma once

#include "apps/kernel/RouteMessage.h"

#include <optional>

namespace Apps::Kernel {

/// The switch for all interfaces of a family.
struct ForwardingSwitch {
  Family family = Family::other;
  bool isOn = false;
};

/// Nothing if the message is malformed, or tells of one interface, or of something else.
[[nodiscard]] std::optional<ForwardingSwitch> readForwarding(Bytes body);

}  // namespace Apps::Kernel
