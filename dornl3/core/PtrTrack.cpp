#include "dornl3/core/PtrTrack.h"

#include "dornl3/core/PtrInterface.h"

#include <cxxabi.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <typeinfo>
#include <unordered_set>

namespace Vek {

bool ptrifTrackOn_ = false;

namespace {

struct Tracked {
  std::mutex mutex;
  std::unordered_set<PtrInterface const*> objects;
};

Tracked& tracked() {
  static auto& table = *new Tracked;  // objects may go after main() ends
  return table;
}

}  // namespace

void PtrTrack::ptrifAdd(PtrInterface const* object) {
  std::scoped_lock const lock{tracked().mutex};
  tracked().objects.insert(object);
}

void PtrTrack::ptrifDel(PtrInterface const* object) noexcept {
  std::scoped_lock const lock{tracked().mutex};
  tracked().objects.erase(object);
}

std::vector<std::string> PtrTrack::alive() {
  std::scoped_lock const lock{tracked().mutex};
  std::vector<std::string> names;
  for (PtrInterface const* object : tracked().objects) {
    char const* mangled = typeid(*object).name();
    std::unique_ptr<char, void (*)(void*)> const name{abi::__cxa_demangle(mangled, nullptr, nullptr, nullptr),
                                                      std::free};
    names.emplace_back(name ? name.get() : mangled);
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace Vek
