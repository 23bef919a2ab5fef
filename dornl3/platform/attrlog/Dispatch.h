// Dispatch: applies one record that has come whole.
#pragma once

#include "dornl3/platform/attrlog/ControlRecords.h"

namespace Vek::NboAttrLog {

class Connection;

/// Applies the record whose payload the connection's input stands at.
/// Bytes are decoded before anything is touched. A record that cannot be decoded is the peer's fault: the exception
/// goes to the caller, who ends the connection; one that ends inside a field is passed over and counted. What is thrown
/// while a record is applied is a fault of this side, of a reactor that throws on: the value stands, and the next
/// record comes.
///
/// What a newer peer may say is passed over and counted, each record once: an attribute, kind, id or record of the
/// connection that is not known, and bytes behind the last field. A value that ends between two fields is whole.
///
/// Writes that cross: both ends may change one attribute at once, each applies the other's change, and without more
/// they would stay swapped. So the owner, when it applies a record of a peer that had not yet applied all that was
/// written to it, says again what it holds then. The stream is in order, so its repetition is the last word.
void dispatch(Connection& connection, RecordHeader const& header);

}  // namespace Vek::NboAttrLog
