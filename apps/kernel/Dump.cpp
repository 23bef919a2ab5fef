#include "apps/kernel/Dump.h"

#include "apps/kernel/Datagram.h"
#include "apps/kernel/KernelError.h"

#include <libmnl/libmnl.h>
#include <linux/if_addr.h>
#include <linux/if_link.h>
#include <linux/neighbour.h>
#include <linux/nexthop.h>
#include <linux/rtnetlink.h>

#include <array>
#include <cerrno>

namespace Apps::Kernel {

namespace {

struct TableTraits {
  std::string_view name;
  std::uint16_t request;
  std::uint16_t reply;
  std::size_t headerSize;  // of the family header that the request carries
};

TableTraits const& traits(Table table) noexcept {
  static constexpr std::array<TableTraits, 5> all{{
      {"The kernel's links", RTM_GETLINK, RTM_NEWLINK, sizeof(ifinfomsg)},
      {"The kernel's addresses", RTM_GETADDR, RTM_NEWADDR, sizeof(ifaddrmsg)},
      {"The kernel's neighbours", RTM_GETNEIGH, RTM_NEWNEIGH, sizeof(ndmsg)},
      {"The kernel's next hops", RTM_GETNEXTHOP, RTM_NEWNEXTHOP, sizeof(nhmsg)},
      {"The kernel's routes", RTM_GETROUTE, RTM_NEWROUTE, sizeof(rtmsg)},
  }};
  return all[static_cast<std::size_t>(table)];
}

// Next-hop objects came late to the kernel; it reads fine without them.
bool isAbsence(Table table, int error) noexcept { return table == Table::nextHops && error == EOPNOTSUPP; }

// The system's error number in an error or done message: the kernel sends it negative, as the first word.
int errorNumber(Bytes body) noexcept {
  std::int32_t word = 0;
  if (!readFront(body, word)) return EBADMSG;
  return word <= 0 && word > -4096 ? -word : EBADMSG;
}

}  // namespace

std::string_view tableName(Table table) noexcept { return traits(table).name; }

Outcome Dumper::read(Table table, std::function<void()> const& start, std::function<void(Bytes)> const& take) {
  Attempt last = Attempt::overrun;
  for (int i = 0; i < attempts; ++i) {
    start();
    request(table);
    last = attempt(table, take);
    if (last == Attempt::whole) return Outcome::consistent;
    if (last == Attempt::absent) return Outcome::absent;
    if (last == Attempt::overrun) source_.reopen();  // the end of the answer may be among what was lost
  }
  if (last == Attempt::overrun) throw kernelError(tableName(table), ENOBUFS);
  return Outcome::interrupted;
}

void Dumper::request(Table table) {
  alignas(nlmsghdr) std::array<char, 64> buffer{};
  nlmsghdr* const header = mnl_nlmsg_put_header(buffer.data());
  header->nlmsg_type = traits(table).request;
  header->nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
  header->nlmsg_seq = ++sequence_;
  mnl_nlmsg_put_extra_header(header, traits(table).headerSize);  // zeros: all families, no filter
  if (table == Table::links) mnl_attr_put_u32(header, IFLA_EXT_MASK, RTEXT_FILTER_SKIP_STATS);
  source_.send(std::as_bytes(std::span{buffer}).first(header->nlmsg_len));
}

Dumper::Attempt Dumper::attempt(Table table, std::function<void(Bytes)> const& take) {
  bool interrupted = false;
  std::optional<Attempt> end;
  auto const message = [&](nlmsghdr const& header, Bytes body) {
    if (header.nlmsg_seq != sequence_) return true;  // left over from an answer that was given up

    interrupted = interrupted || (header.nlmsg_flags & NLM_F_DUMP_INTR) != 0;
    if (header.nlmsg_type == NLMSG_OVERRUN) {
      end = Attempt::overrun;
    } else if (header.nlmsg_type == NLMSG_DONE || header.nlmsg_type == NLMSG_ERROR) {
      // A done message without a word is an old kernel's way of saying that all is well.
      bool const bare = header.nlmsg_type == NLMSG_DONE && body.empty();
      int const error = bare ? 0 : errorNumber(body);
      bool const isMissing = isAbsence(table, error);
      if (error != 0 && !isMissing) throw kernelError(tableName(table), error);
      end = isMissing ? Attempt::absent : interrupted ? Attempt::interrupted : Attempt::whole;
    } else if (header.nlmsg_type == traits(table).reply) {
      take(body);
    }
    return !end;
  };
  while (!end) {
    std::optional<Bytes> const datagram = source_.receive();
    if (!datagram) return Attempt::overrun;
    if (forEachMessage(*datagram, message) == Walked::broken) throw kernelError(tableName(table), EBADMSG);
  }
  return *end;
}

}  // namespace Apps::Kernel
