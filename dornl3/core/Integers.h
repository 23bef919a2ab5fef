// Integers: the widths that attributes, counts and wire fields are made of.
// Thread: any; there is nothing but types.
#pragma once

static_assert(__cplusplus >= 202002L, "DornL3 needs C++20: compile with -std=c++20 or later");

namespace Vek {

using U8 = unsigned char;
using U32 = unsigned int;
using U64 = unsigned long long;

static_assert(sizeof(U8) == 1 && sizeof(U32) == 4 && sizeof(U64) == 8);

/// Number of an attribute. Stable for good: notifications, logs and the generic interface all use it.
using AttributeId = U32;

/// A time in seconds of the epoch.
using Seconds = double;

}  // namespace Vek
