// LogException: what goes wrong between an entity and a log.
#pragma once

#include "dornl3/core/Exception.h"

namespace Vek {

/// A local write to an entity that is not this process's to change: a read-only mount, or one that is not in step with
/// its owner. Nothing was stored, counted or told.
class ReadOnlyException : public Exception {
 public:
  explicit ReadOnlyException(String8 message);
  ~ReadOnlyException() override;
};

/// A peer has sent what no peer may send; its connection ends.
class ProtocolException : public Exception {
 public:
  explicit ProtocolException(String8 message);
  ~ProtocolException() override;
};

/// A record ends inside a field. It is passed over and counted; its connection goes on.
class ShortRecordException : public Exception {
 public:
  explicit ShortRecordException(String8 message);
  ~ShortRecordException() override;
};

/// The name of a child is taken by another object: it makes way.
class NameInUseException : public Exception {
 public:
  static constexpr Id id = 16;
  NameInUseException();
  ~NameInUseException() override;
};

/// A child has no entity id yet: its binding waits.
class EntityIdUnavailableException : public Exception {
 public:
  static constexpr Id id = 48;
  explicit EntityIdUnavailableException(String8 message);
  ~EntityIdUnavailableException() override;
};

/// A child's binding must be made again. Where it is thrown again and again for one binding, that has failed.
class AttrLogRecordException : public Exception {
 public:
  static constexpr Id id = 48;
  AttrLogRecordException();
  ~AttrLogRecordException() override;
};

}  // namespace Vek
