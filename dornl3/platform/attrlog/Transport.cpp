#include "dornl3/platform/attrlog/Transport.h"

#include <chrono>
#include <memory>
#include <random>

namespace Vek::NboAttrLog {

Clock steadyClock() {
  return [] { return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count(); };
}

Random systemRandom() {
  auto const device = std::make_shared<std::random_device>();
  return [device] { return static_cast<U32>((*device)()); };
}

}  // namespace Vek::NboAttrLog
