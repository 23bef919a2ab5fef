// EntityId: the name of an entity on one attribute log.
// An assigned id is a tag of 32 bits, drawn by the process that assigned it, a sequence number of 31 bits, and a low
// bit that is set. Ids of both ends of a connection therefore never collide. Id 1 is the connection itself. An adapter
// whose id is not assigned has an even one, unique in its process, so that it can be told from others all the same.
#pragma once

#include "dornl3/core/BitReverse.h"
#include "dornl3/core/Integers.h"

#include <bit>
#include <cstring>

namespace Vek {

/// An id as it stands in a record: eight bytes in network order, so that one is moved in and out by a plain copy.
class EntityId {
 public:
  constexpr EntityId() noexcept = default;
  constexpr explicit EntityId(U64 number) noexcept : bytes_(swapped(number)) {}

  /// The id whose bytes stand at `at`, of which there are eight.
  [[nodiscard]] static EntityId read(char const* at) noexcept {
    EntityId id;
    std::memcpy(&id.bytes_, at, sizeof id.bytes_);
    return id;
  }
  void write(char* at) const noexcept { std::memcpy(at, &bytes_, sizeof bytes_); }

  [[nodiscard]] constexpr U64 number() const noexcept { return swapped(bytes_); }
  [[nodiscard]] constexpr U32 tag() const noexcept { return static_cast<U32>(number() >> 32); }
  /// Whether it can be looked up in a demuxer.
  [[nodiscard]] constexpr bool isAssigned() const noexcept { return (number() & 1) != 0; }
  /// Reversed, it gives the place of the id in a table.
  [[nodiscard]] constexpr U32 hash() const noexcept { return static_cast<U32>(number()) >> 1; }

  [[nodiscard]] constexpr bool operator==(EntityId const&) const noexcept = default;
  [[nodiscard]] constexpr bool operator<(EntityId other) const noexcept { return number() < other.number(); }

 private:
  static constexpr U64 swapped(U64 number) noexcept {
    return std::endian::native == std::endian::little ? __builtin_bswap64(number) : number;
  }

  U64 bytes_ = 0;
};

/// The connection itself: what is said under it concerns no entity yet.
inline constexpr EntityId connectionId{1};

}  // namespace Vek
