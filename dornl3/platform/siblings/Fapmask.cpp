#include "dornl3/platform/siblings/Fapmask.h"

#include "dornl3/core/Throwers.h"
#include "dornl3/platform/vek/PlainGeneric.h"

#include <charconv>

namespace Kiln {

namespace {

constexpr std::size_t digits = 8;  // of a word
constexpr std::size_t textLength = 4 * digits + 3;

}  // namespace

Fapmask::Fapmask(Vek::String8::IteratorConst& it, Vek::String8::IteratorConst const& end) {
  Vek::String8::IteratorConst const start = it;
  Vek::String8 const text = Vek::sequenceToValue(it, end, static_cast<Vek::String8*>(nullptr));
  std::string_view const view = text;
  bool good = view.size() == textLength;
  for (std::size_t i = 0; good && i < words_.size(); ++i) {
    char const* const first = view.data() + i * (digits + 1);
    auto const [last, error] = std::from_chars(first, first + digits, words_[i], 16);
    good = error == std::errc{} && last == first + digits && (i + 1 == words_.size() || *last == ':');
  }
  if (good) return;
  it = start;
  Vek::throwExpected("a FAP mask: four words of eight hexadecimal digits with colons between, in quotes", it, end);
}

Vek::String8 valueToStrep(Fapmask const& mask) {
  auto const& words = mask.words();
  return Vek::format("'%08x:%08x:%08x:%08x'", words[0], words[1], words[2], words[3]);
}

Vek::VekType* Fapmask::_fwkType() {
  static Vek::VekType* const type = Vek::plainType<Fapmask>(vekDeclaredName);
  return type;
}

Fapmask::Fapmask(Vek::NboAttrLog::In* in, Vek::StreamBogon) {
  for (Vek::U32& word : words_) word = in->nextU32();
}

Vek::NboAttrLog::OutPtr const& operator<<(Vek::NboAttrLog::OutPtr const& out, Fapmask const& mask) {
  for (Vek::U32 const word : mask.words()) out << word;
  return out;
}

}  // namespace Kiln
