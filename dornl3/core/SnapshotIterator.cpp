#include "dornl3/core/SnapshotIterator.h"

namespace Vek {

void HeldReactors::makeRoom(U32 count) {
  many_ = std::unique_ptr<Reactor*[]>(new Reactor*[count]);
  begin_ = many_.get();
}

}  // namespace Vek
