#include "tests/schema/SharedLibrary.h"

#include <cxxabi.h>
#include <elf.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>

namespace {

using Header = Elf64_Ehdr;
using SectionHeader = Elf64_Shdr;
using Symbol = Elf64_Sym;
using Dynamic = Elf64_Dyn;

std::string_view part(std::string_view whole, std::uint64_t begin, std::uint64_t length) {
  if (begin > whole.size() || length > whole.size() - begin) throw std::runtime_error("the library file is cut short");
  return whole.substr(begin, length);
}

template <class T>
T at(std::string_view whole, std::uint64_t begin) {
  T value;
  std::memcpy(&value, part(whole, begin, sizeof value).data(), sizeof value);
  return value;
}

std::string nameAt(std::string_view names, std::uint64_t begin) {
  std::string_view const rest = part(names, begin, names.size() - std::min<std::uint64_t>(begin, names.size()));
  std::size_t const end = rest.find('\0');
  if (end == std::string_view::npos) throw std::runtime_error("a name in the library file has no end");
  return std::string(rest.substr(0, end));
}

std::string demangled(std::string const& name) {
  int status = 0;
  std::unique_ptr<char, void (*)(void*)> const text(abi::__cxa_demangle(name.c_str(), nullptr, nullptr, &status),
                                                    std::free);
  return status == 0 ? text.get() : name;
}

bool isExported(Symbol const& symbol) {
  unsigned const binding = ELF64_ST_BIND(symbol.st_info);
  unsigned const visibility = ELF64_ST_VISIBILITY(symbol.st_other);
  return symbol.st_shndx != SHN_UNDEF && binding != STB_LOCAL && visibility != STV_HIDDEN && visibility != STV_INTERNAL;
}

}  // namespace

SharedLibrary::SharedLibrary(std::filesystem::path const& path) {
  std::ifstream in(path, std::ios::binary);
  file_.assign(std::istreambuf_iterator<char>(in), {});
  auto const header = at<Header>(file_, 0);
  bool const isElf = std::memcmp(header.e_ident, ELFMAG, SELFMAG) == 0 && header.e_ident[EI_CLASS] == ELFCLASS64 &&
                     header.e_shentsize == sizeof(SectionHeader);
  if (!isElf || header.e_type != ET_DYN) throw std::runtime_error(path.string() + " is no shared library of 64 bits");
  std::vector<std::uint32_t> names;
  for (std::uint64_t i = 0; i < header.e_shnum; ++i) {
    auto const s = at<SectionHeader>(file_, header.e_shoff + i * sizeof(SectionHeader));
    std::string_view const content = s.sh_type == SHT_NOBITS ? std::string_view() : part(file_, s.sh_offset, s.sh_size);
    sections_.push_back({{}, s.sh_type, s.sh_flags, s.sh_addralign, content, s.sh_link});
    names.push_back(s.sh_name);
  }
  std::string_view const text = sections_.at(header.e_shstrndx).content;
  for (std::size_t i = 0; i < sections_.size(); ++i) sections_[i].name = nameAt(text, names[i]);
}

std::optional<SharedLibrary::Section> SharedLibrary::section(std::string_view name) const {
  auto const found = std::find_if(sections_.begin(), sections_.end(), [name](auto const& s) { return s.name == name; });
  return found == sections_.end() ? std::nullopt : std::optional(*found);
}

template <class Entry>
std::vector<Entry> SharedLibrary::entries(std::uint32_t sectionType, std::string_view& names) const {
  std::vector<Entry> all;
  for (Section const& s : sections_) {
    if (s.type != sectionType) continue;
    names = sections_.at(s.link).content;
    for (std::uint64_t begin = 0; begin < s.content.size(); begin += sizeof(Entry)) {
      all.push_back(at<Entry>(s.content, begin));
    }
  }
  return all;
}

std::vector<std::string> SharedLibrary::needed() const {
  std::vector<std::string> libraries;
  std::string_view names;
  for (Dynamic const& entry : entries<Dynamic>(SHT_DYNAMIC, names)) {
    if (entry.d_tag == DT_NEEDED) libraries.push_back(nameAt(names, entry.d_un.d_val));
  }
  return libraries;
}

std::vector<std::string> SharedLibrary::exported() const {
  std::vector<std::string> symbols;
  std::string_view names;
  for (Symbol const& symbol : entries<Symbol>(SHT_DYNSYM, names)) {
    if (isExported(symbol)) symbols.push_back(demangled(nameAt(names, symbol.st_name)));
  }
  std::sort(symbols.begin(), symbols.end());
  return symbols;
}
