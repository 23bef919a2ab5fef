#include "dornl3/frame/TypeNames.h"

#include <gtest/gtest.h>

#include <string>

namespace Vek {
namespace {

constexpr char name31[] = "names::ATypeOfThirtyOneBytesInA";
constexpr char name32[] = "names::ATypeOfThirtyTwoBytesInAl";
static_assert(sizeof name31 == 32 && sizeof name32 == 33);
constexpr char name1[] = "T";

template <char const* name>
struct Named {
  struct Attr {
    static constexpr char const* fullName = name;
  };
};

TEST(TypeNames, EachBeginsOnABoundaryBehindTheZeroByteOfTheOneBefore) {
  auto const block = typeNames(List<Named<name1>, Named<name32>, Named<name31>>{});
  std::string expected(name31);
  expected.resize(32);
  expected += name32;
  expected.resize(96);
  expected += name1;
  expected += '\0';
  EXPECT_EQ(std::string(block.begin(), block.end()), expected);
}

}  // namespace
}  // namespace Vek
