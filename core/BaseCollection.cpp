#include "core/BaseCollection.h"

namespace Vek {

BaseCollection::~BaseCollection() = default;

BaseCollection::StrepIterator::~StrepIterator() = default;

}  // namespace Vek
