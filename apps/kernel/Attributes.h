// Attributes of a netlink message. Every length is checked before anything is read; the bytes are not trusted.
#pragma once

#include "apps/kernel/MessageSource.h"

#include <libmnl/libmnl.h>

#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

namespace Apps::Kernel {

/// Copies a T from the front of `from`; false if it is too short.
template <class T>
[[nodiscard]] bool readFront(Bytes from, T& into) noexcept {
  static_assert(std::is_trivially_copyable_v<T>);
  if (from.size() < sizeof(T)) return false;
  std::memcpy(&into, from.data(), sizeof(T));
  return true;
}

/// What follows the fixed header T of a message, with its padding; empty if nothing does.
template <class T>
[[nodiscard]] Bytes afterHeader(Bytes message) noexcept {
  constexpr std::size_t aligned = MNL_ALIGN(sizeof(T));
  return message.size() > aligned ? message.subspan(aligned) : Bytes{};
}

struct Attribute {
  std::uint16_t type;  // without the nested and byte-order bits
  Bytes payload;

  /// Reads a T that must fill the payload.
  template <class T>
  [[nodiscard]] bool read(T& into) const noexcept {
    return payload.size() == sizeof(T) && readFront(payload, into);
  }

  /// The payload as text, up to its first zero byte.
  [[nodiscard]] std::string_view text() const noexcept {
    std::string_view const all{reinterpret_cast<char const*>(payload.data()), payload.size()};
    return all.substr(0, all.find('\0'));
  }
};

/// Calls `each`, which answers whether it could read the attribute, for the attributes of `region` in turn. False if it
/// could not, or if the region is not a run of whole attributes. The region starts at a multiple of 4.
template <class Each>
[[nodiscard]] bool walkAttributes(Bytes region, Each&& each) {
  while (!region.empty()) {
    auto const* header = reinterpret_cast<nlattr const*>(region.data());
    if (!mnl_attr_ok(header, static_cast<int>(region.size()))) return false;
    Bytes const payload = region.subspan(MNL_ATTR_HDRLEN, mnl_attr_get_payload_len(header));
    if (!each(Attribute{mnl_attr_get_type(header), payload})) return false;
    std::size_t const step = MNL_ALIGN(header->nla_len);  // the last attribute may come without its padding
    region = step < region.size() ? region.subspan(step) : Bytes{};
  }
  return true;
}

}  // namespace Apps::Kernel
