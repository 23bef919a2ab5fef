// PtrTrack: names the counted objects that are alive, to find who leaks. Off unless ptrifTrackOn_ is set, since a
// tracked object costs a table entry.
// Owner: it holds no reference on what it names. Thread: any. Re-entrancy: it calls nobody.
#pragma once

#include <string>
#include <vector>

namespace Vek {

class PtrInterface;

/// Object tracking is on. Set it before the objects of interest are made.
extern bool ptrifTrackOn_;

class PtrTrack {
 public:
  /// An object has come; called by the constructor of PtrInterface.
  static void ptrifAdd(PtrInterface const* object);
  /// An object has gone, or is meant to stay for good. An object that is not tracked is passed over.
  static void ptrifDel(PtrInterface const* object) noexcept;
  /// The class names of all tracked objects, sorted. Takes no reference: no other thread may release objects meanwhile.
  [[nodiscard]] static std::vector<std::string> alive();
};

}  // namespace Vek
