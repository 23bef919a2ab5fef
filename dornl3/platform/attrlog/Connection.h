// Connection: one duplex stream to one peer, and the entities that are exported and mounted over it.
// It owns no thread, no timer and no socket. A loop calls readable() when bytes have come, writable() when the stream
// takes bytes and wantsWrite() says so, and tick() at the latest at deadline(). Both ends greet each other first, with
// a form, a version and limits; a difference that matters ends the connection with a sentence. A peer that breaks the
// form or a limit costs its own connection and nothing else. A new connection to the same peer is a new object: nothing
// of the old one is used again, but mounts keep their entities. Owner: the loop. Entities outlive it and it outlives
// nothing. Thread: one, that of the entities. Re-entrancy: reactors run inside readable() and writable(). They may
// change, export and mount anything, and close this connection, which then ends when the call returns; they must not
// destroy it. Calls of readable() and writable() from inside do nothing.
#pragma once

#include "dornl3/platform/attrlog/Demuxer.h"
#include "dornl3/platform/attrlog/Exports.h"
#include "dornl3/platform/attrlog/Mounts.h"
#include "dornl3/platform/attrlog/Transport.h"

namespace Vek::NboAttrLog {

class Connection final : public Vek::Connection {
 public:
  struct Settings {
    Name name;  ///< by which the peer knows this end: at most 255 bytes
    Limits limits;
    U32 turnBytes = 64 * 1024;  ///< about how much one turn writes before the loop gets its chance
  };

  /// The transport stays the caller's and outlives the connection, or detach() comes first.
  Connection(Settings settings, Transport& transport, Clock clock, Random const& random);
  ~Connection() override;

  [[nodiscard]] ConnectionState state() const noexcept { return demuxer_.state(); }
  /// Why it has ended; empty before.
  [[nodiscard]] String8 const& closeReason() const noexcept { return closeReason_; }
  /// Ends the connection and tells the peer why. What belongs to it is let go when no record or turn is running.
  void closeIs(String8 const& reason);

  /// Takes what has come and applies each record that is whole.
  void readable();
  /// Writes what is owed and sends what is written, as far as the stream takes it.
  void writable();
  /// Whether writable() has something to do.
  [[nodiscard]] bool wantsWrite() const noexcept;
  /// What to call when wantsWrite() has become true, or the connection has ended, in between these calls: it runs
  /// inside whatever made it so, a setter or closeIs(), and only notes it. It must not throw.
  void whenDueIs(std::function<void()> call);
  /// What to call when the peer has greeted and the connection is open; from inside readable().
  void whenOpenIs(std::function<void()> call) { whenOpen_ = std::move(call); }
  /// Says that this end lives, and looks whether the other does.
  void tick();
  /// When tick() is next wanted, on the connection's clock; never, infinity, when the connection has ended.
  [[nodiscard]] double deadline() const noexcept;

  [[nodiscard]] Ptr<NboAttrLog::In> const& in() const noexcept { return in_; }
  [[nodiscard]] Ptr<NboAttrLog::Out> const& out() const noexcept { return out_; }
  [[nodiscard]] Demuxer& demuxer() noexcept { return demuxer_; }
  [[nodiscard]] Exports& exports() noexcept { return exports_; }
  [[nodiscard]] Mounts& mounts() noexcept { return mounts_; }
  [[nodiscard]] Settings const& settings() const noexcept { return settings_; }
  /// What the peer calls itself; empty until it has greeted.
  [[nodiscard]] Name const& peerName() const noexcept { return out_->peerName(); }
  /// The mark of the ids that the peer gives out.
  [[nodiscard]] U32 peerTag() const noexcept { return peerTag_; }
  [[nodiscard]] double now() const { return clock_(); }
  /// When the last byte of the peer came.
  [[nodiscard]] double lastHeard() const noexcept { return lastHeard_; }

 private:
  friend class NboAttrLog::Out;
  class Busy;

  void greet();
  bool takeGreeting();
  bool takeRecord();
  void apply(std::size_t length);
  void flush();
  void finish() noexcept;
  void tellDue() noexcept;
  void armDue() noexcept;
  /// Runs `step`; what it throws ends the connection.
  template <class Step>
  void guarded(Step const& step);

  Settings settings_;
  Transport& transport_;
  Clock clock_;
  Ptr<NboAttrLog::Out> out_;
  Ptr<NboAttrLog::In> in_;
  Demuxer demuxer_;
  Exports exports_;
  Mounts mounts_;
  U32 peerTag_ = 0;
  double peerHeartbeat_ = 0;
  double lastHeard_;
  double lastSaid_;
  bool isBusy_ = false;
  std::function<void()> whenDue_;
  std::function<void()> whenOpen_;
  String8 closeReason_;
};

}  // namespace Vek::NboAttrLog
