#include "dornl3/platform/attrlog/In.h"

namespace Vek {

String8 ByteConnection::In::nextString() {
  U32 const length = nextU32();
  if (length > textLimit_) {
    throw ProtocolException(format("a text of %u bytes, where %u are the most", length, textLimit_));
  }
  return String8(std::string_view(take(length), length));
}

void ByteConnection::In::positionIs(U32 position) {
  if (position > static_cast<std::size_t>(limit_ - begin_)) throwShort();
  at_ = begin_ + position;
}

void ByteConnection::In::throwShort() { throw ShortRecordException("a record that ends inside a field"); }
void ByteConnection::In::throwBadBool() { throw ProtocolException("a truth value that is neither 0 nor 1"); }

void NboAttrLog::In::overwriteId(EntityId id) noexcept { id.write(take(0) - 8); }

}  // namespace Vek
