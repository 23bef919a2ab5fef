// LeakCheck: the fixture of tests that make counted objects. At its end as many are alive as at its beginning.
// What a test makes for good by using it first, say a type's record, its fixture makes before this one counts.
#pragma once

#include "dornl3/core/CountedHeap.h"
#include "dornl3/core/VFPtrInterface.h"

#include <gtest/gtest.h>

class LeakCheck : public testing::Test {
 protected:
  LeakCheck() : before_(Vek::CountedHeap::liveObjects()) {}
  ~LeakCheck() override { EXPECT_EQ(Vek::CountedHeap::liveObjects(), before_) << "counted objects were left behind"; }

 private:
  Vek::U64 before_;
};

/// Counting is atomic as long as this stands.
struct ThreadSafePointers {
  ThreadSafePointers() { Vek::VFPtrInterface::enableThreadSafePointers = true; }
  ~ThreadSafePointers() { Vek::VFPtrInterface::enableThreadSafePointers = false; }
  ThreadSafePointers(ThreadSafePointers const&) = delete;
  ThreadSafePointers& operator=(ThreadSafePointers const&) = delete;
};
