// SomeFigures: what a kernel might have, none of it zero and each number another where that tells figures apart.
#pragma once

#include "apps/kernel/KernelFigures.h"

namespace Apps::Show {

inline Kernel::KernelFigures someFigures() {
  Kernel::KernelFigures figures{
      .vrfs = 3,
      .vxlanTunnels = 2,
      .tunnels = 4,
      .routesVxlan = true,
      .ipv4 = {10, 9, 8, 7, 6, 5},
      .ipv6 = {20, 19, 18, 17, 16, 15},
      .mpls = {30, 29, 28, 27, 26, 25},
      .ipv4Prefixes = {.hosts = 40},
      .ipv6Prefixes = {.hosts = 41},
      .mplsPops = 8,
      .mplsPushes = 9,
      .ipSets = {1, 2},
      .mplsSets = {3, 4},
      .tunnelSets = {5, 6},
      .commands = {100, 60, 50, 40, 1},
      .times = {{1, 2, 3, 4}, {5, 6, 7, 8}},
      .linkLayerNeighbours = 7,
      .failedNeighbours = 11,
      .routesTrapped = 12,
      .failedNextHops = 13,
      .nestedGroups = 14,
      .missingNextHops = 15,
      .interrupted = {},
  };
  figures.ipv4Prefixes.byLength[0] = 1;
  figures.ipv4Prefixes.byLength[24] = 50;
  figures.ipv4Prefixes.byLength[3] = 2;  // a hashed collection walks in another order
  figures.ipv6Prefixes.byLength[127] = 60;
  return figures;
}

}  // namespace Apps::Show
