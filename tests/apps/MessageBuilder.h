// Builds netlink messages byte by byte, as the kernel lays them out.
#pragma once

#include "apps/kernel/Attributes.h"

#include <arpa/inet.h>
#include <linux/if_addr.h>
#include <linux/lwtunnel.h>
#include <linux/neighbour.h>
#include <linux/nexthop.h>
#include <linux/rtnetlink.h>
#include <net/if.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace Apps::Kernel {

using Buffer = std::vector<std::byte>;

template <class T>
Buffer bytesOf(T const& value) {
  Buffer buffer(sizeof value);
  std::memcpy(buffer.data(), &value, sizeof value);
  return buffer;
}

inline Buffer bytesOf(std::string_view text) {
  Buffer buffer(text.size());
  std::memcpy(buffer.data(), text.data(), text.size());
  return buffer;
}

inline Buffer joined(std::vector<Buffer> const& all) {
  Buffer whole;
  for (Buffer const& one : all) whole.insert(whole.end(), one.begin(), one.end());
  return whole;
}

// Fills up with zeros to where the next attribute or message may begin.
inline void pad(Buffer& buffer) { buffer.resize(MNL_ALIGN(buffer.size())); }

// The bytes of an address as people write it: "10.0.0.1", "fd00::1".
inline Buffer ip(char const* text) {
  Buffer buffer(16);
  if (inet_pton(AF_INET, text, buffer.data()) == 1) {
    buffer.resize(4);
  } else if (inet_pton(AF_INET6, text, buffer.data()) != 1) {
    throw std::invalid_argument{text};
  }
  return buffer;
}

inline std::uint8_t familyOf(char const* address) { return ip(address).size() == 4 ? AF_INET : AF_INET6; }

// The payload of RTA_VIA.
inline Buffer via(char const* address) {
  return joined({bytesOf(__kernel_sa_family_t{familyOf(address)}), ip(address)});
}

// A fixed header and attributes behind it: the body of a message, or a next hop of a multi-path route. What comes last
// has no padding, which readers must bear.
class Message {
 public:
  template <class Header>
  explicit Message(std::uint16_t type, Header const& header) : type_{type}, bytes_{bytesOf(header)} {
    pad(bytes_);
  }

  template <class T>
  Message& put(std::uint16_t attribute, T const& value) {
    return put(attribute, bytesOf(value));
  }
  Message& put(std::uint16_t attribute, Buffer const& payload) {
    nlattr const header{static_cast<std::uint16_t>(sizeof(nlattr) + payload.size()), attribute};
    pad(bytes_);
    bytes_ = joined({bytes_, bytesOf(header), payload});
    return *this;
  }
  // Attributes that are put together already.
  Message& append(Buffer const& attributes) {
    bytes_ = joined({bytes_, attributes});
    return *this;
  }

  [[nodiscard]] std::uint16_t type() const { return type_; }
  // The same message of another type: of the end of what it tells.
  [[nodiscard]] Message as(std::uint16_t type) const {
    Message other = *this;
    other.type_ = type;
    return other;
  }
  [[nodiscard]] Buffer const& body() const { return bytes_; }

  // The whole message.
  [[nodiscard]] Buffer framed(std::uint32_t sequence, std::uint16_t flags = NLM_F_MULTI) const {
    auto const length = static_cast<std::uint32_t>(sizeof(nlmsghdr) + bytes_.size());
    nlmsghdr const header{length, type_, flags, sequence, 0};
    return joined({bytesOf(header), bytes_});
  }

 private:
  std::uint16_t type_;
  Buffer bytes_;
};

inline Buffer nested(std::uint16_t attribute, Buffer const& payload) {
  Buffer withEmptyHeader = Message{0, nlattr{}}.put(attribute, payload).body();
  pad(withEmptyHeader);
  return {withEmptyHeader.begin() + sizeof(nlattr), withEmptyHeader.end()};
}

inline Message link(int index, unsigned flags, std::string_view kind = {}, std::uint32_t master = 0,
                    std::uint32_t below = 0) {
  ifinfomsg const header{AF_UNSPEC, {}, {}, index, flags, {}};
  Message message{RTM_NEWLINK, header};
  if (!kind.empty()) message.put(IFLA_LINKINFO, nested(IFLA_INFO_KIND, bytesOf(kind)));
  if (master != 0) message.put(IFLA_MASTER, master);
  if (below != 0) message.put(IFLA_LINK, below);
  return message;
}

inline Message linkAddress(std::uint32_t link, std::uint8_t scope) {
  return Message{RTM_NEWADDR, ifaddrmsg{AF_INET, {}, {}, scope, link}};
}

inline Message neighbour(int link, char const* address, std::uint16_t state, std::uint8_t flags = 0) {
  ndmsg const header{familyOf(address), {}, {}, link, state, flags, {}};
  return Message{RTM_NEWNEIGH, header}.put(NDA_DST, ip(address));
}

inline Message nextHop(std::uint32_t id, std::uint32_t link, char const* gateway, unsigned flags = 0) {
  nhmsg const header{familyOf(gateway), {}, {}, {}, flags};
  return Message{RTM_NEWNEXTHOP, header}.put(NHA_ID, id).put(NHA_OIF, link).put(NHA_GATEWAY, ip(gateway));
}

inline Message nextHopGroup(std::uint32_t id, std::vector<std::uint32_t> const& members) {
  std::vector<Buffer> entries;
  for (std::uint32_t member : members) entries.push_back(bytesOf(nexthop_grp{member, {}, {}, {}}));
  return Message{RTM_NEWNEXTHOP, nhmsg{}}.put(NHA_ID, id).put(NHA_GROUP, joined(entries));
}

// Of a route to a prefix of that length.
inline rtmsg routeHeader(std::uint8_t family, std::uint8_t length, std::uint8_t type, std::uint32_t flags = 0) {
  return {family, length, {}, {}, {}, {}, {}, type, flags};
}

inline Message route(std::uint8_t family, std::uint8_t type = RTN_UNICAST, std::uint32_t flags = 0) {
  return Message{RTM_NEWROUTE, routeHeader(family, 0, type, flags)};
}

// A route that discards what goes to a prefix of that length.
inline Message prefix(std::uint8_t family, std::uint8_t length, std::uint8_t type = RTN_BLACKHOLE) {
  return Message{RTM_NEWROUTE, routeHeader(family, length, type)};
}

inline Message routeVia(std::uint32_t link, char const* gateway, std::uint32_t flags = 0) {
  return route(familyOf(gateway), RTN_UNICAST, flags).put(RTA_OIF, link).put(RTA_GATEWAY, ip(gateway));
}

// One next hop of RTA_MULTIPATH.
inline Buffer pathBy(int link, Buffer const& attributes, std::uint8_t flags = 0, std::uint8_t weight = 1) {
  auto const length = static_cast<std::uint16_t>(sizeof(rtnexthop) + attributes.size());
  return joined({bytesOf(rtnexthop{length, flags, static_cast<std::uint8_t>(weight - 1), link}), attributes});
}

inline Buffer hop(int link, char const* gateway, std::uint8_t flags = 0, std::uint8_t weight = 1) {
  return pathBy(link, nested(RTA_GATEWAY, ip(gateway)), flags, weight);
}

inline Message routeVia(std::uint8_t family, std::vector<Buffer> const& hops) {
  return route(family).put(RTA_MULTIPATH, joined(hops));
}

}  // namespace Apps::Kernel
