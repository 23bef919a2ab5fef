#include "dornl3/platform/attrlog/LogException.h"

namespace Vek {

namespace {

Exception::IdBitArray only(Exception::Id id) noexcept {
  Exception::IdBitArray ids;
  ids.add(id);
  return ids;
}

}  // namespace

ReadOnlyException::ReadOnlyException(String8 message) : Exception(std::move(message), {}, true) {}
ReadOnlyException::~ReadOnlyException() = default;

ProtocolException::ProtocolException(String8 message) : Exception(std::move(message), {}, true) {}
ProtocolException::~ProtocolException() = default;

ShortRecordException::ShortRecordException(String8 message) : Exception(std::move(message), {}, true) {}
ShortRecordException::~ShortRecordException() = default;

NameInUseException::NameInUseException() : Exception("the name is in use", only(id), true) {}
NameInUseException::~NameInUseException() = default;

EntityIdUnavailableException::EntityIdUnavailableException(String8 message)
    : Exception(std::move(message), only(id), true) {}
EntityIdUnavailableException::~EntityIdUnavailableException() = default;

AttrLogRecordException::AttrLogRecordException() : Exception("the binding is to be made again", only(id), true) {}
AttrLogRecordException::~AttrLogRecordException() = default;

}  // namespace Vek
