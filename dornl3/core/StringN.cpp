#include "dornl3/core/StringN.h"

#include "dornl3/core/Name.h"
#include "dornl3/core/Throwers.h"

#include <bit>
#include <cstddef>
#include <cstring>
#include <new>

namespace Vek {

static_assert(sizeof(StringN<U8>) == sizeof(void*));

// Its first reference is never given back.
constinit StringN<U8>::Data StringN<U8>::nullStringData_{1, 0};

StringN<U8>::Data* StringN<U8>::Data::create(std::size_t length) {
  if (length > maxLength) throwRangeException("a text may hold at most 2147483583 bytes");
  static_assert(sizeof(Data) == 12 && alignof(Data) == 4);
  void* const block = ::operator new(sizeof(Data) + length);
  auto* const data = new (block) Data(static_cast<U32>(length));
  data->bytes()[length] = '\0';
  return data;
}

void StringN<U8>::Data::operator delete(void* block) noexcept { ::operator delete(block); }

void StringN<U8>::Data::free() const noexcept { delete this; }

namespace {

using Data = StringN<U8>::Data;

inline U64 load64(char const* bytes) noexcept {
  U64 word = 0;
  std::memcpy(&word, bytes, sizeof word);
  if constexpr (std::endian::native == std::endian::big) word = __builtin_bswap64(word);
  return word;
}

__extension__ using U128 = unsigned __int128;

// Folds the 128-bit product: every bit of both factors reaches every bit of the result.
inline U64 mix(U64 a, U64 b) noexcept {
  U128 const product = static_cast<U128>(a) * b;
  return static_cast<U64>(product) ^ static_cast<U64>(product >> 64);
}

}  // namespace

U32 StringN<U8>::hash() const noexcept {
  constexpr U64 first = 0x9e3779b97f4a7c15;
  constexpr U64 second = 0xd1b54a32d192ed03;
  std::string_view text = view();
  U64 state = first ^ text.size();
  for (; text.size() >= 8; text.remove_prefix(8)) state = mix(state ^ load64(text.data()), second);
  U64 tail = 0;
  for (std::size_t i = 0; i < text.size(); ++i) tail |= static_cast<U64>(static_cast<U8>(text[i])) << (8 * i);
  state = mix(state ^ tail, first);
  return static_cast<U32>(state ^ (state >> 32));
}

void StringN<U8>::init(char const* s, U32 offset, std::size_t length) {
  if (length == 0) {
    data_ = &nullStringData_;
    return;
  }
  Data* const data = Data::create(length);
  std::memcpy(data->bytes(), s + offset, length);
  data_ = data;
}

}  // namespace Vek
