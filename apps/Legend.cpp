#include "apps/Legend.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>

namespace Apps {

namespace {

struct Word {
  std::string_view word;
  std::string_view meaning;
};

constexpr Word words[] = {
    {"FAP", "forwarding processor; of a host the kernel is the only one, number 0"},
    {"FEC", "forwarding equivalence class: a set of next hops that routes share"},
    {"LEM", "large exact-match table: routes by prefix length; of a host, all of them"},
    {"LPM", "longest-prefix-match table"},
    {"TCAM", "memory that is looked up by content and mask"},
    {"ECMP", "several paths of equal cost"},
};

bool isLetter(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; }

// By itself, or as several of it.
bool stands(std::string_view word, std::string_view text) {
  for (std::size_t at = text.find(word); at != std::string_view::npos; at = text.find(word, at + 1)) {
    std::string_view rest = text.substr(at + word.size());
    if (rest.starts_with('s')) rest.remove_prefix(1);
    if ((at == 0 || !isLetter(text[at - 1])) && (rest.empty() || !isLetter(rest.front()))) return true;
  }
  return false;
}

}  // namespace

std::string legendOf(std::string_view text) {
  std::string legend;
  for (Word const& one : words) {
    if (stands(one.word, text))
      legend += fmt::format("{}{:<5} {}\n", legend.empty() ? "\n" : "", one.word, one.meaning);
  }
  return legend;
}

}  // namespace Apps
