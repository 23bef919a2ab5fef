#include "dornl3/core/Exception.h"

#include "dornl3/core/Throwers.h"

#include <utility>

namespace Vek {

class Exception::Origin final : public PtrInterface {
 public:
  Origin(IdBitArray idSet, bool wasExpected) noexcept : ids(idSet), expected(wasExpected) {}
  IdBitArray const ids;
  bool const expected;
};

Exception::Exception(String8 message, IdBitArray ids, bool noteExpectation)
    : message_(std::move(message)), origin_(new Origin(ids, noteExpectation && Expect::covers(ids))) {}

Exception::Exception(Exception const&) noexcept = default;
Exception& Exception::operator=(Exception const&) noexcept = default;
Exception::~Exception() = default;

Exception::IdBitArray Exception::ids() const noexcept { return origin_->ids; }

bool Exception::expected() const noexcept { return origin_->expected; }

namespace {

Exception::IdBitArray with(Exception::IdBitArray ids, Exception::Id id) noexcept {
  ids.add(id);
  return ids;
}

}  // namespace

RangeException::RangeException(String8 message, IdBitArray ids)
    : Exception(std::move(message), with(ids, range), true) {}

RangeException::~RangeException() = default;

InternalException::InternalException(String8 message, IdBitArray ids)
    : Exception(std::move(message), with(ids, internal), true) {}

InternalException::~InternalException() = default;

constinit thread_local Expect const* Expect::innermost_ = nullptr;

bool Expect::covers(Exception::IdBitArray const& ids) noexcept {
  for (Expect const* scope = innermost_; scope != nullptr; scope = scope->outer_) {
    if (scope->id_ == Exception::any || ids.contains(scope->id_)) return true;
  }
  return false;
}

void throwRangeException(char const* message) { throwRangeException(String8(message)); }
void throwRangeException(String8 const& message) { throw RangeException(message, {}); }
void throwInternalException(char const* message) { throwInternalException(String8(message)); }
void throwInternalException(String8 const& message) { throw InternalException(message, {}); }

}  // namespace Vek
