#include "core/SnapshotIterator.h"

namespace Vek {

ReactorSnapshot::ReactorSnapshot(ReactorChain const& chain) {
  U32 const count = chain.count();
  if (count > inPlace) {
    many_ = std::unique_ptr<Reactor*[]>(new Reactor*[count]);
    reactors_ = many_.get();
  }
  for (ReactorChain::Member* member = chain.head(); member != nullptr; member = ReactorChain::next(*member)) {
    member->referencesInc();
    reactors_[size_++] = const_cast<Reactor*>(member);
  }
}

ReactorSnapshot::~ReactorSnapshot() {
  while (index_ < size_) release();
}

}  // namespace Vek
