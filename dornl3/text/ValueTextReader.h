// ValueTextReader: the steps of reading a value's text that do not depend on its type.
// Owner: the function that reads. Thread: that function's.
#pragma once

#include "dornl3/platform/vek/TextReader.h"

namespace Vek {

class ValueTextReader {
 public:
  /// Reads up to and with the opening brace. `it` is moved; it and the names outlive the reader.
  /// Throws RangeException, as all reading here.
  ValueTextReader(String8::IteratorConst& it, String8::IteratorConst const& end, char const* shortName,
                  char const* fullName);

  /// Reads the next attribute's name and the colon behind it; false before the closing brace.
  [[nodiscard]] bool nextAttribute();
  /// Reads the closing brace, the parenthesis and the blanks behind it.
  void close();
  /// Throws RangeException: the type has no attribute of that name.
  [[noreturn]] void throwNoSuchAttribute() const;

  [[nodiscard]] String8::IteratorConst& it() noexcept { return it_; }
  [[nodiscard]] String8::IteratorConst const& end() const noexcept { return end_; }
  /// The name as read from the text.
  [[nodiscard]] String8 const& name() const noexcept { return name_; }

 private:
  String8::IteratorConst& it_;
  String8::IteratorConst const& end_;
  char const* shortName_;
  String8 name_;
  bool first_ = true;
};

/// Throws RangeException: the attribute is below `min` or above `max`.
[[noreturn]] void throwOutOfLimits(char const* type, char const* attribute, U64 min, U64 max);

}  // namespace Vek
