#pragma once

inline constexpr char const* ownStatus = "own schema/Status.h";
