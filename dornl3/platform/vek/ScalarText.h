// ScalarText: builtin scalars to text and back, as Python literals: True, 17, 0.5, 'it\'s'.
// Whatever valueToStrep and writeText write, the matching reader reads back the same.
// Thread: any. Re-entrancy: it calls nobody.
#pragma once

#include "dornl3/platform/vek/TextBuffer.h"

namespace Vek {

/// Append the text of a value.
void writeText(TextBuffer& out, U64 value);
void writeText(TextBuffer& out, bool value);
/// The shortest digits that read back the same: 0.5, 3.0, 1e+16, inf, nan.
void writeText(TextBuffer& out, double value);
/// In single quotes; what is not printable ASCII stands as an escape, so that every byte string reads back the same.
void writeText(TextBuffer& out, String8 const& value);
inline void writeText(TextBuffer& out, U32 value) { writeText(out, U64{value}); }
inline void writeText(TextBuffer& out, U8 value) { writeText(out, U64{value}); }

/// The text of a value on its own.
[[nodiscard]] String8 valueToStrep(unsigned long long value);
[[nodiscard]] String8 valueToStrep(bool value);
[[nodiscard]] String8 valueToStrep(double value);
[[nodiscard]] String8 valueToStrep(String8 const& value);

/// Read one value at `it` and leave `it` behind it; the pointer only selects the type. On bad text they throw
/// RangeException and leave `it` where it was. No blank is skipped.
///
/// A string in single or double quotes.
[[nodiscard]] String8 sequenceToValue(String8::IteratorConst& it, String8::IteratorConst const& end, String8*);
/// A decimal number with an optional sign. One above the largest signed number, up to 18446744073709551615, gives the
/// same 64 bits; beyond that, and below the smallest signed number, the text is bad.
[[nodiscard]] long long sequenceToValue(String8::IteratorConst& it, String8::IteratorConst const& end, long long*);
/// A decimal number, inf or nan, with an optional sign. It is rounded once, to double, and then widened: a number read
/// for a double is the nearest one. Too large a number gives an infinity, too small a one zero.
[[nodiscard]] long double sequenceToValue(String8::IteratorConst& it, String8::IteratorConst const& end, long double*);
/// True or False.
[[nodiscard]] bool sequenceToValue(String8::IteratorConst& it, String8::IteratorConst const& end, bool*);

}  // namespace Vek
