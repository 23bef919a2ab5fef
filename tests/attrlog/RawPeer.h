// RawPeer: a peer made of bytes. It says what a test writes, well formed or not, and shows what the connection answers.
#pragma once

#include "dornl3/platform/attrlog/Connection.h"
#include "dornl3/platform/attrlog/MemoryTransport.h"

#include <string>

namespace LogTest {

/// A number of its type's width, in network order.
template <class T>
[[nodiscard]] std::string number(T value) {
  std::string out(sizeof value, '\0');
  for (std::size_t at = out.size(); at-- > 0; value = static_cast<T>(std::uint64_t{value} >> 8)) {
    out[at] = static_cast<char>(value);
  }
  return out;
}
[[nodiscard]] inline std::string text(std::string_view raw) {
  return number(static_cast<Vek::U32>(raw.size())) + std::string(raw);
}

/// A record. A length of its own is for one that lies.
[[nodiscard]] inline std::string record(Vek::U64 id, int attribute, std::string const& payload,
                                        unsigned short kind = Vek::NboAttrLog::plainRecord) {
  return number(id) + number(static_cast<Vek::U32>(attribute)) + number(static_cast<Vek::U32>(payload.size())) +
         number(kind) + number(static_cast<unsigned short>(0x0100)) + '\1' + payload + '\3';
}
/// One of the connection's own.
[[nodiscard]] inline std::string control(int attribute, std::string const& payload) {
  return record(1, attribute, payload);
}
[[nodiscard]] inline std::string mountOf(std::string_view name, std::string_view type, bool writable) {
  return control(Vek::NboAttrLog::mountRecord, text(name) + text(type) + (writable ? '\1' : '\0'));
}
[[nodiscard]] inline std::string section(Vek::NboAttrLog::PayloadSection which, std::string const& fields) {
  return static_cast<char>(which) + text(fields);
}
[[nodiscard]] inline std::string orphan(Vek::U64 id, std::string_view type, std::string_view name) {
  using namespace Vek::NboAttrLog;
  return control(orphanRecord, section(typeSection, text(type)) + section(argumentsSection, text(name)) +
                                   section(idSection, number(id)));
}
[[nodiscard]] inline std::string syncMode(Vek::U64 id, Vek::U32 mode) {
  return record(id, Vek::NboAttrLog::syncModeRecord, number(mode));
}
[[nodiscard]] inline std::string marker(Vek::U64 id, Vek::U32 attribute, Vek::U32 type) {
  return record(id, Vek::NboAttrLog::transactionRecord, number(attribute) + number(type) + number(Vek::U32{0}));
}

[[nodiscard]] inline std::string greeting(Vek::U32 tag, Vek::NboAttrLog::Limits const& limits = {},
                                          unsigned short version = 1) {
  return "DL3 log\n" + number(version) + number(tag) + number(limits.recordBytes) + number(limits.textBytes) +
         number(limits.entities) + number(static_cast<Vek::U32>(limits.heartbeatSeconds * 1000)) +
         number(static_cast<unsigned short>(4)) + "peer";
}

/// The first ids that an end with a tag gives out, and the next.
[[nodiscard]] constexpr Vek::U64 idOf(Vek::U32 tag, Vek::U32 sequence) {
  return Vek::U64{tag} << 32 | Vek::U64{sequence} << 1 | 1;
}

class RawPeer {
 public:
  static constexpr Vek::U32 tag = 0x7e570000;     // its own
  static constexpr Vek::U32 theirs = 0x0ddba110;  // the connection's

  explicit RawPeer(Vek::NboAttrLog::Limits const& limits = {}) {
    Vek::NboAttrLog::MemoryTransport::join(near, far_);
    connection = Vek::make<Vek::NboAttrLog::Connection>(
        Vek::NboAttrLog::Connection::Settings{"here", limits, 64 * 1024}, near, [] { return 1000.0; },
        [] { return theirs; });
  }

  void says(std::string_view raw) {
    static_cast<void>(far_.write(raw));
    connection->readable();
    connection->writable();
  }
  /// What has come since it was last asked.
  std::string hears() {
    std::string heard(far_.incoming().size(), '\0');
    static_cast<void>(far_.read(heard.data(), heard.size()));
    return heard;
  }

  Vek::NboAttrLog::MemoryTransport near;

 private:
  Vek::NboAttrLog::MemoryTransport far_;

 public:
  Vek::Ptr<Vek::NboAttrLog::Connection> connection;
};

}  // namespace LogTest
