#include "dornl3/platform/link/PeerLink.h"

namespace Vek::Link {

using NboAttrLog::Connection;

PeerLink::PeerLink(Loop& loop, Socket socket, Connection::Settings settings, std::function<void()> whenEnded)
    : transport_(std::move(socket)),
      connection_(
          make<Connection>(std::move(settings), transport_, NboAttrLog::steadyClock(), NboAttrLog::systemRandom())),
      whenEnded_(std::move(whenEnded)),
      watch_(loop.watch(transport_.socket().descriptor(), [this](Readiness readiness) { ready(readiness); })),
      timer_(loop.timer([this] { due(); })) {
  connection_->whenDueIs([this] { settle(); });
  settle();
}

PeerLink::~PeerLink() {
  connection_->whenDueIs(nullptr);
  connection_->closeIs("the process has ended");
}

void PeerLink::ready(Readiness readiness) {
  if (readiness.toRead) connection_->readable();
  if (readiness.toWrite || connection_->wantsWrite()) connection_->writable();
  settle();
}

void PeerLink::due() {
  deadline_ = Timer::never;
  if (connection_->state() >= NboAttrLog::closing) {
    auto const call = std::exchange(whenEnded_, nullptr);
    if (call) call();  // the link may have gone
    return;
  }
  connection_->tick();
  settle();
}

// What the loop is to wait for. It runs also inside setters and reactors: nothing is sent from here, nothing ended.
void PeerLink::settle() {
  bool const isOver = connection_->state() >= NboAttrLog::closing;
  Readiness const wish{.toRead = !isOver, .toWrite = connection_->wantsWrite()};
  if (!(wish == wish_)) watch_->wishIs(wish_ = wish);
  // A deadline moves with each byte; one that has come too early looks again.
  double const deadline = isOver ? 0 : connection_->deadline();
  if (deadline < deadline_) timer_->dueIs(deadline_ = deadline);
}

}  // namespace Vek::Link
