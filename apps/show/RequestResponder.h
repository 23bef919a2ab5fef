// RequestResponder: hears requests for fresh figures, and answers them when these are in place.
// It does nothing inside the setter of the request: whoever owns the entities reads the kernel when it suits him, once
// for all that have asked by then, and answers. Owner: whoever makes the figures. Thread: the entities'.
#pragma once

#include "apps/show/Roots.h"

#include <functional>

namespace Apps::Show {

class RequestResponder : public Hardware::DornL3Unicast::Request::Notifiee {
 public:
  /// Ids that leap farther are put back: one requester cannot use up those of all.
  static constexpr Vek::U64 farthestLeap = Vek::U64{1} << 32;

  /// `whenAsked` is called inside the setter of the request, once until it is answered.
  explicit RequestResponder(std::function<void()> whenAsked = {}) : whenAsked_{std::move(whenAsked)} {}

  void onStatusRequestId() override;

  /// Whether somebody waits for an answer.
  [[nodiscard]] bool isAsked() const noexcept { return isAsked_; }
  /// Answers all that have asked, with the highest of their ids; figures that were read since are in `roots`. The id
  /// never goes back, whatever was asked for. `time`: in seconds since 1970.
  void answer(Roots const& roots, double time);

 private:
  std::function<void()> whenAsked_;
  Vek::U64 highest_ = 0;  // id that was asked for
  bool isAsked_ = false;
};

}  // namespace Apps::Show
