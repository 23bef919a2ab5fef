// The file of the types library, as tools see it that do not run it: the names of its types, what it needs, and what it
// offers.
#include "schemac/Names.h"
#include "tests/schemac/Schemas.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace {

using namespace Schemac;
using Names = std::set<std::string>;

// What one of the linker's companions writes about the library.
std::istringstream toldBy(std::string const& tool) {
  std::string text;
  std::FILE* const pipe = ::popen((tool + " '" DORNL3_TYPES_LIBRARY "'").c_str(), "r");
  if (pipe == nullptr) throw std::runtime_error("cannot start a shell");
  char block[4096];
  while (std::size_t const length = std::fread(block, 1, sizeof block, pipe)) text.append(block, length);
  if (::pclose(pipe) != 0) throw std::runtime_error("no answer of " + tool);
  return std::istringstream(text);
}

std::vector<File> houseFiles() {
  std::vector<File> files;
  for (std::string const& stem : Test::houseStems()) files.push_back(Test::houseFile(stem));
  return files;
}

constexpr bool isSanitized = std::string_view(DORNL3_SANITIZE) != "";

TEST(LibraryFile, NamesItsTypes) {
  std::istringstream sections = toldBy("readelf -SW");
  std::string word;
  while (sections >> word && word != ".vek.type") continue;
  std::string type, address, offset, size, entrySize, flags, link, info, alignment;
  sections >> type >> address >> offset >> size >> entrySize >> flags >> link >> info >> alignment;
  EXPECT_EQ(type, "PROGBITS");
  EXPECT_EQ(flags, "WA");
  EXPECT_EQ(alignment, "32");

  // File by file, in each the type defined last stands first. Each name begins on a boundary of 32 bytes, zeros fill
  // the space between, and nothing stands behind the last.
  std::string expected;
  for (File const& schema : houseFiles()) {
    for (auto it = schema.types.rbegin(); it != schema.types.rend(); ++it) {
      expected.resize((expected.size() + 31) / 32 * 32);
      expected += fullName(schema, *it) + '\0';
    }
  }
  EXPECT_EQ(expected.size(), 2006U);
  if (isSanitized) GTEST_SKIP() << "sanitizers put space of their own behind each file's names";
  std::string content(std::stoul(size, nullptr, 16), '\0');
  std::ifstream file(DORNL3_TYPES_LIBRARY, std::ios::binary);
  file.seekg(std::stol(offset, nullptr, 16)).read(content.data(), static_cast<std::streamsize>(content.size()));
  EXPECT_EQ(content, expected);
}

TEST(LibraryFile, NeedsTheFrameworkAndTheLanguageAlone) {
  std::istringstream entries = toldBy("readelf -dW");
  int found = 0;
  for (std::string line; std::getline(entries, line);) {
    if (line.find("(NEEDED)") == std::string::npos) continue;
    ++found;
    constexpr std::string_view known[] = {"[libvek.so.",   "[libstdc++.so.", "[libm.so.",
                                          "[libgcc_s.so.", "[libc.so.",      "[ld-linux"};
    EXPECT_TRUE(std::any_of(std::begin(known), std::end(known), [&](auto name) {
      return line.find(name) != std::string::npos;
    })) << line;
  }
  EXPECT_GT(found, 1);
}

// Each line of symbols: an address, a letter, and the name as people write it, here without its arguments.
Names offered() {
  Names names;
  std::istringstream symbols = toldBy("nm --dynamic --defined-only --demangle");
  for (std::string line; std::getline(symbols, line);) {
    std::size_t const begin = line.find(' ', line.find(' ') + 1) + 1;
    names.insert(line.substr(begin, line.find('(') - begin));
  }
  return names;
}

TEST(LibraryFile, OffersNeitherDescriptorsNorAnythingOfOthers) {
  if (isSanitized) GTEST_SKIP() << "sanitizers have the compiler emit records of function types, and templates";
  for (std::string name : offered()) {
    for (std::string_view const record : {"vtable for ", "typeinfo for ", "typeinfo name for "}) {
      if (name.compare(0, record.size(), record) == 0) name.erase(0, record.size());
    }
    EXPECT_EQ(name.rfind("Hardware::DornL3Unicast::", 0), 0U) << name;
    EXPECT_EQ(name.find("::Attr"), std::string::npos) << name;
  }
}

}  // namespace
