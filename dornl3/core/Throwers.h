// Throwers: raise the library's exceptions from code that need not know their classes.
// Thread: any.
#pragma once

namespace Vek {

class String8;

/// Raise RangeException, a bad text or a bad value, with that message.
[[noreturn]] void throwRangeException(char const* message);
[[noreturn]] void throwRangeException(String8 const& message);

/// Raise InternalException, a state that must not occur, with that message.
[[noreturn]] void throwInternalException(char const* message);
[[noreturn]] void throwInternalException(String8 const& message);

}  // namespace Vek
