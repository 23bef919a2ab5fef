// Recorder: a toy's reactor that writes down every call and does what a test tells it.
#pragma once

#include "tests/frame/Toy.h"

#include <functional>
#include <string>
#include <vector>

namespace Toys {

using Calls = std::vector<std::string>;

struct Recorder : Toy::Notifiee {
  Recorder(Calls& calls, std::string label, bool adapter = false)
      : calls_(calls), label_(std::move(label)), adapter_(adapter) {}
  ~Recorder() override { calls_.push_back(label_ + " gone"); }

  void onSize() override { called("size"); }
  void onBroken() override { called("broken"); }
  void onPlayed() override { called("played"); }
  void onText() override { called("text"); }
  void onPlace() override { called("place"); }
  void onZeroReferences() override {
    Toy::Notifiee::onZeroReferences();
    called("end");
  }
  using Toy::Notifiee::onNotificationException;
  void onNotificationException(Vek::AttributeId id) override { called("exception " + std::to_string(id)); }
  bool isStreamAdapter() const noexcept override { return adapter_; }

  /// What the next call does; it happens once.
  std::function<void()> next;
  /// What the call after that does, and so on.
  void thenDo(std::function<void()> act) { later_.push_back(std::move(act)); }

 private:
  void called(std::string const& what) {
    calls_.push_back(label_ + ' ' + what);
    auto const act = std::exchange(next, nullptr);
    if (!later_.empty()) {
      next = later_.front();
      later_.erase(later_.begin());
    }
    if (act) act();
  }

  Calls& calls_;
  std::string label_;
  bool adapter_;
  std::vector<std::function<void()>> later_;
};

}  // namespace Toys
