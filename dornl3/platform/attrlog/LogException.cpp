#include "dornl3/platform/attrlog/LogException.h"

namespace Vek {

ReadOnlyException::ReadOnlyException(String8 message) : Exception(std::move(message), {}, true) {}
ReadOnlyException::~ReadOnlyException() = default;

ProtocolException::ProtocolException(String8 message) : Exception(std::move(message), {}, true) {}
ProtocolException::~ProtocolException() = default;

ShortRecordException::ShortRecordException(String8 message) : Exception(std::move(message), {}, true) {}
ShortRecordException::~ShortRecordException() = default;

}  // namespace Vek
