// RequestResponder: the reactor that answers a request for fresh figures.
// It hears `statusRequestId` change, reads the kernel, fills the entities, and answers in `statusResponseId` and
// `statusUpdatedTime`. All of it runs inside the setter of the request, on the caller's thread.
#pragma once

#include "apps/kernel/KernelFigures.h"
#include "apps/show/Roots.h"

#include <exception>
#include <functional>

namespace Apps::Show {

class RequestResponder : public Hardware::DornL3Unicast::Request::Notifiee {
 public:
  using Read = std::function<Kernel::KernelFigures()>;
  using Clock = std::function<double()>;  // seconds since 1970

  /// Keeps the entities of `roots` but for the request, which becomes its notifier only by notifierIs().
  RequestResponder(Roots const& roots, Read read, Clock clock);

  void onStatusRequestId() override;
  void onNotificationException(Vek::AttributeId id) override;  // keeps what was thrown for failure()
  using Hardware::DornL3Unicast::Request::Notifiee::onNotificationException;

  /// Why the last request got no answer; null if it got one.
  [[nodiscard]] std::exception_ptr failure() const noexcept { return failure_; }
  /// The tables that changed while the last answer was made.
  [[nodiscard]] std::vector<std::string_view> const& interrupted() const noexcept { return interrupted_; }

 private:
  Roots roots_;
  Read read_;
  Clock clock_;
  std::exception_ptr failure_;
  std::vector<std::string_view> interrupted_;
};

}  // namespace Apps::Show
