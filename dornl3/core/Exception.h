// Exception: what every failure of the library is thrown as.
// Owner: an exception is a value; copies share its texts. Thread: any; an Expect concerns the thread that opens it.
#pragma once

#include "dornl3/core/Ptr.h"
#include "dornl3/core/String8.h"

#include <exception>
#include <initializer_list>

namespace Vek {

class Exception : public std::exception {
 public:
  /// A small number that names a kind of exception; 0 stands for every kind.
  using Id = U8;
  static constexpr Id any = 0;
  static constexpr Id range = 12;
  static constexpr Id internal = 13;

  /// A set of ids below 64.
  class IdBitArray {
   public:
    constexpr IdBitArray() noexcept = default;
    constexpr void add(Id id) noexcept { bits_ |= bit(id); }
    [[nodiscard]] constexpr bool contains(Id id) const noexcept { return (bits_ & bit(id)) != 0; }

   private:
    static constexpr U64 bit(Id id) noexcept { return U64{1} << (id & 63U); }
    U64 bits_ = 0;
  };

  /// `noteExpectation`: keep whether an Expect in scope covers one of the ids, see expected().
  Exception(String8 message, IdBitArray ids, bool noteExpectation);
  Exception(Exception const&) noexcept;
  Exception& operator=(Exception const&) noexcept;
  ~Exception() override;

  [[nodiscard]] String8 const& message() const noexcept { return message_; }
  [[nodiscard]] char const* what() const noexcept override { return message_.charPtr(); }

  /// The kinds that this exception belongs to.
  [[nodiscard]] IdBitArray ids() const noexcept;
  /// Whether code up the stack said by an Expect that it deals with such an exception.
  [[nodiscard]] bool expected() const noexcept;

 private:
  class Origin;

  String8 message_;
  Ptr<Origin const> origin_;
};

/// A bad text or a bad value.
class RangeException : public Exception {
 public:
  RangeException(String8 message, IdBitArray ids);
  RangeException(RangeException const&) noexcept = default;
  RangeException& operator=(RangeException const&) noexcept = default;
  ~RangeException() override;
};

/// A state that must not occur.
class InternalException : public Exception {
 public:
  InternalException(String8 message, IdBitArray ids);
  InternalException(InternalException const&) noexcept = default;
  InternalException& operator=(InternalException const&) noexcept = default;
  ~InternalException() override;
};

/// A scope that deals with exceptions of one kind, so that one raised in it is known to be expected.
/// Scopes nest; each stands on the stack of the thread that opens it.
class Expect {
 public:
  explicit Expect(Exception::Id id) noexcept : Expect(id, innermost_) {}
  /// The same where innermost() is known: a loop need not look it up for each of its scopes.
  Expect(Exception::Id id, Expect const* innermost) noexcept : id_(id), outer_(innermost) { innermost_ = this; }
  ~Expect() { innermost_ = outer_; }
  Expect(Expect const&) = delete;
  Expect& operator=(Expect const&) = delete;

  /// The scope of this thread that was opened last and is not closed; null without one.
  [[nodiscard]] static Expect const* innermost() noexcept { return innermost_; }

  /// Whether a scope of this thread covers one of the ids. A scope with id 0 covers all.
  [[nodiscard]] static bool covers(Exception::IdBitArray const& ids) noexcept;

 private:
  // Initial-exec: opening a scope costs two moves, and each reactor call opens one.
  [[gnu::tls_model("initial-exec")]] static constinit thread_local Expect const* innermost_;

  Exception::Id id_;
  Expect const* outer_;
};

}  // namespace Vek
