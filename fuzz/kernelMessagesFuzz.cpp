// Tells a follower of the kernel any bytes as notifications. It takes or refuses each, reads on, and what it counts
// stays inside what can be. The input is a run of datagrams, each behind two bytes of its length; the kernel that it
// asks has nothing.
#include "apps/kernel/Attributes.h"
#include "apps/kernel/KernelFollower.h"

#include <linux/netlink.h>

#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

using namespace Apps::Kernel;

void require(bool holds) {
  if (!holds) std::abort();
}

class EmptyKernel final : public MessageSource {
 public:
  void send(Bytes request) override { require(readFront(request, header_)); }
  std::optional<Bytes> receive() override {
    header_.nlmsg_len = sizeof header_;
    header_.nlmsg_type = NLMSG_DONE;
    return std::as_bytes(std::span{&header_, 1});
  }
  void reopen() override {}

 private:
  nlmsghdr header_{};
};

class Datagrams final : public NotificationSource {
 public:
  explicit Datagrams(Bytes all) : rest_{all} {}

  News receive(Bytes& datagram) override {
    std::uint16_t length = 0;
    if (!readFront(rest_, length)) return News::none;
    rest_ = rest_.subspan(sizeof length);
    current_.assign(rest_.begin(), rest_.begin() + std::min<std::ptrdiff_t>(length, std::ssize(rest_)));
    current_.shrink_to_fit();  // a byte behind it is one too far
    rest_ = rest_.subspan(current_.size());
    datagram = current_;
    return News::datagram;
  }

 private:
  Bytes rest_;
  std::vector<std::byte> current_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  EmptyKernel kernel;
  Datagrams datagrams{std::as_bytes(std::span{data, size})};
  KernelFollower follower{kernel, datagrams, [] { return 1.0; }, {.settling = std::chrono::hours{1}}};
  follower.advance();
  KernelFigures const figures = follower.figures();
  std::uint64_t const routes = figures.ipv4.routes + figures.ipv6.routes + figures.mpls.routes;
  require(routes == figures.commands.added - figures.commands.deleted);
  for (RouteCounts const& counts : {figures.ipv4, figures.ipv6, figures.mpls}) {
    require(counts.pendingRoutes <= counts.routes && counts.unprogrammedRoutes <= counts.routes);
    require(counts.pendingAdjacencies <= counts.adjacencies && counts.unprogrammedAdjacencies <= counts.adjacencies);
  }
  return 0;
}
