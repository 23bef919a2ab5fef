// Counted: a counted object that tells when it goes, and a reactor for lists without an entity.
#pragma once

#include "dornl3/core/NotifieeConst.h"
#include "dornl3/core/Ptr.h"

#include <functional>
#include <utility>

struct Counted : Vek::PtrInterface {
  explicit Counted(int& destroyed) : destroyed_(destroyed) {}
  ~Counted() override { ++destroyed_; }
  void zeroReferencesIs(bool) override {
    if (lastWords) lastWords(*this);
  }
  Vek::U32 vekAuditErrors(Vek::U32 level) const override { return 7 + level; }

  std::function<void(Counted&)> lastWords;

 private:
  int& destroyed_;
};

struct PlainReactor : Vek::PtrInterface::NotifieeConst {
  explicit PlainReactor(bool isAdapter = false) : adapter(isAdapter) {}
  bool isStreamAdapter() const noexcept override { return adapter; }
  bool adapter;
};
