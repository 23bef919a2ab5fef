#pragma once

inline constexpr char const* ownText = "own text/Text.h";
