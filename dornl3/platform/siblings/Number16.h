// Number16: reads the 16-bit numbers that ids consist of.
// Thread: any.
#pragma once

#include "dornl3/platform/vek/TextReader.h"

namespace Vek {

/// Reads a number at `it`. One above `max` calls `throwOutOfRange`, with `it` at the number.
[[nodiscard]] inline unsigned short readNumber16(String8::IteratorConst& it, String8::IteratorConst const& end,
                                                 unsigned short max, void (*throwOutOfRange)()) {
  String8::IteratorConst const start = it;
  long long const number = sequenceToValue(it, end, static_cast<long long*>(nullptr));
  if (number < 0 || number > max) {
    it = start;
    throwOutOfRange();
  }
  return static_cast<unsigned short>(number);
}

}  // namespace Vek
