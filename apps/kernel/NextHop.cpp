#include "apps/kernel/NextHop.h"

#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <algorithm>

namespace Apps::Kernel {

namespace {

bool suits(std::uint8_t family, std::size_t length) noexcept {
  switch (family) {
  case AF_INET: return length == 4;
  case AF_INET6: return length == 16;
  case AF_PACKET: return length <= Address::limit;  // a link without addresses of its own has an empty one
  default: return false;
  }
}

}  // namespace

bool Address::set(std::uint8_t newFamily, Bytes from) noexcept {
  if (!suits(newFamily, from.size())) return false;
  bytes = {};
  std::copy(from.begin(), from.end(), bytes.begin());
  length = static_cast<std::uint8_t>(from.size());
  family = newFamily;
  return true;
}

bool isDown(std::uint32_t flags) noexcept { return (flags & (RTNH_F_DEAD | RTNH_F_LINKDOWN)) != 0; }

}  // namespace Apps::Kernel
