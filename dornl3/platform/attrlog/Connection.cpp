#include "dornl3/platform/attrlog/Connection.h"

#include "dornl3/platform/attrlog/ControlRecords.h"
#include "dornl3/platform/attrlog/Dispatch.h"

#include <algorithm>
#include <exception>
#include <limits>

namespace Vek::NboAttrLog {

namespace {

constexpr std::string_view magic = "DL3 log\n";
constexpr unsigned short version = 1;
constexpr std::size_t greetingSize = 32;  // without the name
constexpr std::size_t mostOfAName = 255;
constexpr std::size_t readAtOnce = 16 * 1024;
constexpr int readsInARow = 16;  // then others have their turn
constexpr double silencesOfTheDead = 3;

U32 someTag(Random const& random) {
  U32 tag = 0;
  while (tag == 0) tag = random();
  return tag;
}

}  // namespace

// While it stands, neither records nor turns begin.
class Connection::Busy {
 public:
  explicit Busy(Connection& connection) noexcept : connection_(connection) {
    connection.isBusy_ = true;
    connection.out_->tellsWhenDue_ = false;  // whoever calls looks himself when it is done
    connection.demuxer_.isBusyIs(true);
  }
  Busy(Busy const&) = delete;
  Busy& operator=(Busy const&) = delete;
  ~Busy() {
    connection_.isBusy_ = false;
    connection_.demuxer_.isBusyIs(false);
    connection_.finish();
    connection_.armDue();
  }

 private:
  Connection& connection_;
};

template <class Step>
void Connection::guarded(Step const& step) {
  try {
    step();
  } catch (std::exception const& error) {
    closeIs(error.what());
  }
}

Connection::Connection(Settings settings, Transport& transport, Clock clock, Random const& random)
    : settings_(std::move(settings)),
      transport_(transport),
      clock_(std::move(clock)),
      out_(make<NboAttrLog::Out>(this, settings_.limits)),
      in_(make<NboAttrLog::In>()),
      demuxer_(*out_, someTag(random), settings_.limits),
      exports_(*this),
      mounts_(*this),
      lastHeard_(clock_()),
      lastSaid_(lastHeard_) {
  double& heartbeat = settings_.limits.heartbeatSeconds;
  heartbeat = heartbeat >= leastHeartbeat ? std::min(heartbeat, mostHeartbeat) : leastHeartbeat;  // also no number
  out_->demuxer_ = &demuxer_;
  out_->in_ = in_.ptr();
  in_->demuxer_ = &demuxer_;
  in_->textLimitIs(settings_.limits.textBytes);
  in_->isStrictIs(true);
  greet();
}

Connection::~Connection() {
  if (state() < closing) closeIs("the connection is not wanted any more");
  isBusy_ = false;
  finish();
  out_->connection_ = nullptr;
  out_->in_ = nullptr;
}

void Connection::greet() {
  std::string_view const name = settings_.name.view().substr(0, mostOfAName);
  Limits const& limits = settings_.limits;
  ByteQueue& bytes = out_->bytes_;
  bytes.append(magic.data(), magic.size());
  auto const put = [&](auto value) {
    for (std::size_t left = sizeof value; left-- > 0;) {
      char const byte = static_cast<char>(value >> (8 * left));
      bytes.append(&byte, 1);
    }
  };
  put(version);
  put(demuxer_.adapters().tag());
  put(limits.recordBytes);
  put(limits.textBytes);
  put(limits.entities);
  put(static_cast<U32>(limits.heartbeatSeconds * 1000));
  put(static_cast<unsigned short>(name.size()));
  bytes.append(name.data(), name.size());
}

bool Connection::takeGreeting() {
  ByteQueue& bytes = in_->bytes_;
  std::string_view const come = bytes.view();
  if (!magic.starts_with(come.substr(0, magic.size()))) {
    throw ProtocolException("the peer does not speak this log: is it another program that listens there?");
  }
  if (come.size() < greetingSize) return false;
  in_->recordIs(bytes.at(magic.size()), come.size() - magic.size());
  auto const theirVersion = in_->nextU16();
  U32 const tag = in_->nextU32();
  Limits theirs;
  theirs.recordBytes = in_->nextU32();
  theirs.textBytes = in_->nextU32();
  theirs.entities = in_->nextU32();
  U32 const heartbeat = in_->nextU32();
  auto const nameLength = in_->nextU16();
  if (theirVersion != version) {
    throw ProtocolException(format("the peer speaks version %u of the log, this is version %u. Run the same release on "
                                   "both ends.",
                                   theirVersion, version));
  }
  if (tag == 0 || tag == demuxer_.adapters().tag()) throw ProtocolException("both ends have drawn the same mark");
  if (std::min(theirs.recordBytes, theirs.textBytes) < leastLimit) {
    throw ProtocolException(
        format("the peer takes records of %u bytes and texts of %u, and %u are the least that will do",
               theirs.recordBytes, theirs.textBytes, leastLimit));
  }
  if (heartbeat < leastHeartbeat * 1000 || heartbeat > mostHeartbeat * 1000) {
    throw ProtocolException(format("the peer says something every %u ms, and %.0f to %.0f will do", heartbeat,
                                   leastHeartbeat * 1000, mostHeartbeat * 1000));
  }
  if (nameLength > mostOfAName) throw ProtocolException("the peer's name is too long");
  if (in_->left() < nameLength) return false;
  peerTag_ = tag;
  peerHeartbeat_ = heartbeat / 1000.0;
  out_->peerName_ = Name(come.substr(greetingSize, nameLength));
  Limits& agreed = out_->limits_;
  agreed.recordBytes = std::min(agreed.recordBytes, theirs.recordBytes);
  agreed.messageBytes = std::min(agreed.messageBytes, agreed.recordBytes - 1);  // a piece, and its mark
  agreed.textBytes = std::min(agreed.textBytes, theirs.textBytes);
  demuxer_.adapters().mostIs(std::min(settings_.limits.entities, theirs.entities));
  bytes.consume(greetingSize + nameLength);
  out_->bufferFlagIs(true);
  demuxer_.stateIs(open);
  mounts_.opened();
  if (whenOpen_) whenOpen_();
  return true;
}

bool Connection::takeRecord() {
  ByteQueue& bytes = in_->bytes_;
  if (bytes.size() < headerSize) return false;
  RecordHeader const header = RecordHeader::read(bytes.at(0));
  if (header.length > settings_.limits.recordBytes) {
    throw ProtocolException(
        format("a record of %u bytes, where %u are the most", header.length, settings_.limits.recordBytes));
  }
  std::size_t const whole = headerSize + tokensSize + header.length;
  if (bytes.size() < whole) return false;
  if (*bytes.at(headerSize) != Out::tokenOpen || *bytes.at(whole - 1) != Out::tokenClose) {
    throw ProtocolException("a record that is not framed by its tokens");
  }
  in_->recordIs(bytes.at(headerSize + 1), header.length);
  in_->phaseIs(NboAttrLog::In::Phase::decoding);
  dispatch(*this, header);
  demuxer_.processedInc();
  bytes.consume(whole);
  return true;
}

void Connection::readable() {
  if (isBusy_ || state() >= closing) return;
  Ptr<Connection> const held = references() != 0 ? this : nullptr;
  Busy const busy{*this};
  guarded([this] {
    for (int reads = 0; reads < readsInARow && state() < closing; ++reads) {
      std::size_t const count = transport_.read(in_->bytes_.room(readAtOnce), readAtOnce);
      if (count == 0) break;
      in_->bytes_.extend(count);
      lastHeard_ = clock_();
      if (state() == greeting && !takeGreeting()) continue;
      while (state() == open && takeRecord()) {
      }
      demuxer_.schedule().unblock();
    }
    if (state() < closing && transport_.isEnded()) {
      demuxer_.stateIs(closing);
      closeReason_ = "the peer has ended the connection";
    }
  });
}

void Connection::flush() {
  while (out_->unsent() != 0) {
    std::size_t const count = transport_.write(out_->view());
    if (count == 0) return;
    out_->sent(count);
    lastSaid_ = clock_();
  }
}

void Connection::writable() {
  if (isBusy_ || state() >= closing) return;
  Ptr<Connection> const held = references() != 0 ? this : nullptr;
  Busy const busy{*this};
  guarded([this] {
    flush();
    if (state() != open) return;
    demuxer_.schedule().turn(settings_.turnBytes);
    demuxer_.barriers().writeDue();
    if (!demuxer_.schedule().failure().empty()) throw InternalException(demuxer_.schedule().failure(), {});
    flush();
  });
}

bool Connection::wantsWrite() const noexcept {
  return state() < closing &&
         (out_->unsent() != 0 || (state() == open && (demuxer_.schedule().isDue() || demuxer_.barriers().isDue())));
}

void Connection::whenDueIs(std::function<void()> call) {
  whenDue_ = std::move(call);
  armDue();
}

void Connection::armDue() noexcept { out_->tellsWhenDue_ = whenDue_ && state() < closing && !wantsWrite(); }

void Connection::tellDue() noexcept {
  if (whenDue_) whenDue_();
  armDue();  // what was due may have been for nothing
}

void Connection::tick() {
  if (state() >= closing) return;
  double const now = clock_();
  double const heartbeat = state() == greeting ? settings_.limits.heartbeatSeconds : peerHeartbeat_;
  if (now - lastHeard_ >= silencesOfTheDead * heartbeat) {
    closeIs(format("nothing was heard for %.1f seconds", now - lastHeard_));
    return;
  }
  if (state() != open || now - lastSaid_ < settings_.limits.heartbeatSeconds) return;
  demuxer_.schedule().unblock();
  // Bytes that wait say the same when they move.
  lastSaid_ = now;
  if (out_->unsent() == 0) sendAlive(*out_);
  writable();
}

double Connection::deadline() const noexcept {
  if (state() >= closing) return std::numeric_limits<double>::infinity();
  double const heartbeat = state() == greeting ? settings_.limits.heartbeatSeconds : peerHeartbeat_;
  double const death = lastHeard_ + silencesOfTheDead * heartbeat;
  return state() == greeting ? death : std::min(lastSaid_ + settings_.limits.heartbeatSeconds, death);
}

void Connection::closeIs(String8 const& reason) {
  if (state() >= closing) return;
  closeReason_ = reason;
  try {
    sendBye(*out_, reason);  // behind the greeting, if that is still to go
    flush();
  } catch (std::exception const&) {
    // The peer will see the end of the stream.
  }
  demuxer_.stateIs(closing);
  out_->bufferFlagIs(false);
  if (isBusy_) return;
  finish();
  tellDue();
}

// With no record and no turn on the stack.
void Connection::finish() noexcept {
  if (state() != closing) return;
  out_->bufferFlagIs(false);
  mounts_.ended();  // first: whoever hears that a barrier has no answer finds that nothing can be written
  demuxer_.barriers().ended();
  exports_.ended();
  demuxer_.teardown();
  demuxer_.stateIs(dead);
  out_->demuxer_ = nullptr;
  in_->demuxer_ = nullptr;
}

}  // namespace Vek::NboAttrLog
