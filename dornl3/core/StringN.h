// StringN: one word, a counted pointer to a shared, immutable block of length and bytes, or null for the empty text.
// String8 is the general text value, Name the key of directories and of named attributes; both are this one word.
// Owner: the strings and cursors that hold a block; the last to go frees it. Re-entrancy: it calls nobody.
// Thread: blocks may be shared between threads, see VFPtrInterface::enableThreadSafePointers; the word itself may not.
#pragma once

#include "dornl3/core/Ptr.h"

#include <string_view>

namespace Vek {

template <class Unit>
class StringN;

template <>
class StringN<U8> {
 public:
  /// Longest text: a cursor's position is a signed 32-bit number.
  static constexpr U32 maxLength = 0x7fffffff - 64;

  class Data;
  class IteratorBase;

  /// The one shared block of the empty string.
  static Data nullStringData_;

  StringN(StringN const&) noexcept = default;
  StringN(StringN&&) noexcept = default;
  StringN& operator=(StringN const&) noexcept = default;
  StringN& operator=(StringN&&) noexcept = default;
  ~StringN() = default;

  [[nodiscard]] inline U32 length() const noexcept;
  [[nodiscard]] bool empty() const noexcept { return length() == 0; }
  /// The bytes; good for as long as some string or cursor holds the block.
  [[nodiscard]] inline std::string_view view() const noexcept;
  operator std::string_view() const noexcept { return view(); }

  /// 32 bits from the bytes alone, the same on every machine and for every string class.
  [[nodiscard]] U32 hash() const noexcept;

  /// The shared block; that of the empty string for a null word.
  [[nodiscard]] inline Data const& data() const noexcept;

 protected:
  constexpr StringN() noexcept = default;
  explicit StringN(std::string_view text) { init(text.data(), 0, text.size()); }

  /// Fills the word with `length` bytes of `s` from `offset`. Throws RangeException above maxLength, std::bad_alloc.
  void init(char const* s, U32 offset, std::size_t length);

  Ptr<Data const> data_;
};

/// The shared block. Freed with its last reference; it has no destructor to run.
class StringN<U8>::Data final : public VFPtrInterface {
 public:
  /// A new block with no reference yet, whose bytes the caller fills before anyone else sees it.
  [[nodiscard]] static Data* create(std::size_t length);

  [[nodiscard]] U32 length() const noexcept { return length_; }
  [[nodiscard]] char const* bytes() const noexcept {
    return reinterpret_cast<char const*>(this) + sizeof(VFPtrInterface) + sizeof(length_);
  }
  [[nodiscard]] char* bytes() noexcept { return const_cast<char*>(static_cast<Data const*>(this)->bytes()); }
  [[nodiscard]] std::string_view view() const noexcept { return {bytes(), length_}; }

  [[nodiscard]] bool operator==(Data const& other) const noexcept { return this == &other || view() == other.view(); }
  /// A total order of the bytes as unsigned numbers; nothing folds case.
  [[nodiscard]] bool operator<(Data const& other) const noexcept { return view() < other.view(); }

  U32 referencesDec() const noexcept {
    U32 const left = drop();
    if (left == 0) free();
    return left;
  }

  static void operator delete(void* block) noexcept;

 private:
  friend class StringN;
  explicit Data(U32 length) noexcept : length_(length) {}
  constexpr Data(U32 references, U32 length) noexcept : VFPtrInterface(references), length_(length) {}
  ~Data() = default;
  void free() const noexcept;

  U32 length_;
  [[maybe_unused]] unsigned char firstBytes_[4] =
      {};  // a block is as long as its text needs; a zero byte stands behind the text
};

U32 StringN<U8>::length() const noexcept { return data_ ? data_->length() : 0; }

std::string_view StringN<U8>::view() const noexcept { return data_ ? data_->view() : std::string_view{}; }

StringN<U8>::Data const& StringN<U8>::data() const noexcept { return data_ ? *data_ : nullStringData_; }

/// A position in a text. It holds the text's block, so it outlives the string it came from.
class StringN<U8>::IteratorBase {
 public:
  /// End of text. A negative position is not at the end.
  [[nodiscard]] bool eot() const noexcept { return position_ >= 0 && static_cast<U32>(position_) >= data_->length(); }
  /// Byte index; 0 at the start.
  [[nodiscard]] int position() const noexcept { return position_; }
  void positionIs(int position) noexcept { position_ = position; }

  /// Whether a byte stands under the cursor.
  [[nodiscard]] bool inside() const noexcept { return position_ >= 0 && static_cast<U32>(position_) < data_->length(); }
  /// The byte under the cursor; only where inside().
  [[nodiscard]] char operator*() const noexcept { return data_->bytes()[position_]; }
  /// From the cursor to the end of the text; empty at the end and at a negative position.
  [[nodiscard]] std::string_view rest() const noexcept {
    return inside() ? data_->view().substr(static_cast<U32>(position_)) : std::string_view{};
  }
  /// The block of the whole text.
  [[nodiscard]] Data const& data() const noexcept { return *data_; }

  [[nodiscard]] bool operator==(IteratorBase const& other) const noexcept { return position_ == other.position_; }

 protected:
  IteratorBase() noexcept : data_(&nullStringData_) {}
  IteratorBase(Data const& data, int position) noexcept : data_(&data), position_(position) {}

  Ptr<Data const> data_;
  int position_ = 0;
};

}  // namespace Vek
