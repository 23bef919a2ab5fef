#include "dornl3/platform/link/Address.h"

#include <netdb.h>
#include <sys/un.h>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstring>
#include <memory>

namespace Vek::Link {

namespace {

constexpr char const* form = "Write unix:PATH or tcp:HOST:PORT.";

[[noreturn]] void refuse(std::string_view text, std::string const& why) {
  throw AddressError("'" + std::string(text) + "' is no address to listen at: " + why);
}

}  // namespace

Address Address::parse(std::string_view text) {
  Address address;
  address.text_ = text;
  if (text.starts_with("unix:")) {
    std::string_view const path = text.substr(5);
    sockaddr_un place{};
    if (path.empty() || path.find('\0') != std::string_view::npos) refuse(text, std::string("it has no path. ") + form);
    if (path.size() >= sizeof place.sun_path) {
      refuse(text, "its path is longer than " + std::to_string(sizeof place.sun_path - 1) +
                       " bytes, the most of a socket. Choose a shorter one.");
    }
    place.sun_family = AF_UNIX;
    std::copy(path.begin(), path.end(), static_cast<char*>(place.sun_path));
    std::memcpy(&address.storage_, &place, sizeof place);
    address.length_ = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + path.size() + 1);
    address.path_ = path;
    return address;
  }
  if (!text.starts_with("tcp:")) refuse(text, std::string("it begins with neither unix: nor tcp:. ") + form);
  std::string_view const rest = text.substr(4);
  auto const colon = rest.rfind(':');
  if (colon == std::string_view::npos || colon == 0) refuse(text, std::string("it has no host and port. ") + form);
  std::string host(rest.substr(0, colon));
  std::string const port(rest.substr(colon + 1));
  unsigned short number = 0;
  auto const [end, error] = std::from_chars(port.data(), port.data() + port.size(), number);
  if (error != std::errc{} || end != port.data() + port.size()) {
    refuse(text, "'" + port + "' is no port: a number from 0 to 65535.");
  }
  if (host.size() > 2 && host.front() == '[' && host.back() == ']') host = host.substr(1, host.size() - 2);
  addrinfo hints{};
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  int const status = getaddrinfo(host.c_str(), port.c_str(), &hints, &found);
  if (status != 0) refuse(text, "the host " + host + " is not found: " + gai_strerror(status) + ".");
  std::unique_ptr<addrinfo, void (*)(addrinfo*)> const held(found, freeaddrinfo);
  std::memcpy(&address.storage_, found->ai_addr, found->ai_addrlen);
  address.length_ = found->ai_addrlen;
  return address;
}

}  // namespace Vek::Link
