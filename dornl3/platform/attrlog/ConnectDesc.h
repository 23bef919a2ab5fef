// ConnectDesc: which two entities a flow-out joins, by their paths. A flow-out that follows changes names none.
#pragma once

#include "dornl3/core/String8.h"

namespace Vek {

/// The place of an entity as a path.
class EntityUriPath {
 public:
  EntityUriPath() noexcept = default;
  explicit EntityUriPath(String8 path) noexcept : path_(std::move(path)) {}
  [[nodiscard]] String8 const& path() const noexcept { return path_; }

 private:
  String8 path_;
};

class ConnectDesc {
 public:
  ConnectDesc() noexcept = default;
  ConnectDesc(EntityUriPath source, EntityUriPath target) noexcept
      : source_(std::move(source)), target_(std::move(target)) {}
  [[nodiscard]] EntityUriPath const& source() const noexcept { return source_; }
  [[nodiscard]] EntityUriPath const& target() const noexcept { return target_; }

 private:
  EntityUriPath source_;
  EntityUriPath target_;
};

}  // namespace Vek
