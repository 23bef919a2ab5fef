#include "dornl3/platform/vek/Path.h"

#include "dornl3/platform/vek/TextReader.h"

#include <algorithm>

namespace Vek {

namespace {

constexpr bool isPlain(char byte) noexcept {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') || byte == '_' ||
         byte == '-' || byte == ':' || byte == '/';
}

std::size_t plainLength(std::string_view text) noexcept {
  return static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isPlain) - text.begin());
}

constexpr std::string_view nullReference = "None";

}  // namespace

String8 pathComponent(Name const& name) {
  std::string_view const text = name;
  bool const plain = !text.empty() && plainLength(text) == text.size() && text != nullReference;
  return plain ? String8(name) : valueToStrep(String8(name));
}

Name readPathComponent(String8::IteratorConst& it, String8::IteratorConst const& end) {
  std::string_view const text = between(it, end);
  if (std::size_t const length = plainLength(text); length > 0) {
    Name const name{text.substr(0, length)};
    it += static_cast<int>(length);
    return name;
  }
  return Name(sequenceToValue(it, end, static_cast<String8*>(nullptr)));
}

}  // namespace Vek
