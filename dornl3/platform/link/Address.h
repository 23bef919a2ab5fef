// Address: where a process listens for those who mount its entities: a Unix socket or a TCP port.
// Owner: a value. Thread: any.
#pragma once

#include <sys/socket.h>

#include <stdexcept>
#include <string>
#include <string_view>

namespace Vek::Link {

/// A text that is no address, or an address that cannot be used. The message says what to do.
class AddressError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class Address {
 public:
  /// "unix:PATH", "tcp:HOST:PORT" or "tcp:[HOST]:PORT". A host is a number or a name; a name is looked up here, once,
  /// which may take its time. Throws AddressError.
  [[nodiscard]] static Address parse(std::string_view text);

  /// As parse() takes it.
  [[nodiscard]] std::string const& text() const noexcept { return text_; }
  [[nodiscard]] bool isUnix() const noexcept { return !path_.empty(); }
  /// Of a Unix socket; empty for TCP.
  [[nodiscard]] std::string const& path() const noexcept { return path_; }

  [[nodiscard]] int family() const noexcept { return storage_.ss_family; }
  [[nodiscard]] sockaddr const* socketAddress() const noexcept {
    return reinterpret_cast<sockaddr const*>(&storage_);  // NOLINT(cppcoreguidelines-pro-type-reinterpret-cast)
  }
  [[nodiscard]] socklen_t length() const noexcept { return length_; }

 private:
  Address() = default;

  std::string text_;
  std::string path_;
  sockaddr_storage storage_{};
  socklen_t length_ = 0;
};

}  // namespace Vek::Link
