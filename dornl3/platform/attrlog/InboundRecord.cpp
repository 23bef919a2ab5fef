#include "dornl3/platform/attrlog/InboundRecord.h"

#include "dornl3/core/Throwers.h"

namespace Vek {

void InboundRecord::throwAlreadyActive() { throwInternalException("entity reactor is already active"); }

}  // namespace Vek
