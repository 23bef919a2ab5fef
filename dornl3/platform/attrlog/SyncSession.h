// SyncSession: how far an exported entity, with all below it, has been brought in step at the far side. It counts the
// walks that stand: that of the root, and those of the children that it came to. When all have ended the far side is
// told. Owner: the adapters that take part. Thread: the connection's.
#pragma once

#include "dornl3/core/Ptr.h"

namespace Vek {

class StreamAdapter;

namespace NboAttrLog {

class SyncSession final : public PtrInterface {
 public:
  explicit SyncSession(StreamAdapter& root) noexcept : root_(&root) {}

  [[nodiscard]] bool isRunning() const noexcept { return walks_ != 0; }
  /// The adapter of the exported entity; null when it has left.
  [[nodiscard]] StreamAdapter* root() const noexcept { return root_; }
  void rootDel() noexcept { root_ = nullptr; }
  void walkBegins() noexcept { ++walks_; }
  /// Whether it was the last.
  [[nodiscard]] bool walkEnds() noexcept { return --walks_ == 0; }

 private:
  StreamAdapter* root_;
  U32 walks_ = 0;
};

}  // namespace NboAttrLog

}  // namespace Vek
