// MsgChannel: a road beside the log that several adapters of one entity may share. None is set up today: adapters then
// have no entry, and are told apart by their logs alone.
#pragma once

#include "dornl3/core/Ptr.h"

namespace Vek {

class MsgChannel {
 public:
  class Constrainer;
  /// The constrainer of this process; null without one.
  [[nodiscard]] static Constrainer* constrainer() noexcept { return nullptr; }
};

class MsgChannel::Constrainer {
 public:
  class VekEntry;
};

/// What an adapter has of the channel that it serves.
class MsgChannel::Constrainer::VekEntry : public PtrInterface {
 public:
  /// Told 3 after a sync mode record.
  [[nodiscard]] U32 mode() const noexcept { return mode_; }
  virtual void modeIs(U32 mode) { mode_ = mode; }

 private:
  U32 mode_ = 0;
};

}  // namespace Vek
