#pragma once

inline constexpr char const* ownPtr = "own core/Ptr.h";
