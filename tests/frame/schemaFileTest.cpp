// What a schema file leaves in its library: the names of its types, and what happens when that of the toys loads.
#include "dornl3/frame/SchemaFile.h"

#include "dornl3/frame/TypeNames.h"
#include "tests/frame/Toy.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <string>
#include <vector>

namespace {

std::vector<void const*>& kept() {
  static std::vector<void const*> functions;
  return functions;
}

}  // namespace

// In the place of the framework's, for this program.
void Vek::forcePointerAccessH(void const* function) noexcept { kept().push_back(function); }

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
  auto const block = Vek::typeNames(Vek::List<Named<name1>, Named<name32>, Named<name31>>{});
  std::string expected(name31);
  expected.resize(32);
  expected += name32;
  expected.resize(96);
  expected += name1;
  expected += '\0';
  EXPECT_EQ(std::string(block.begin(), block.end()), expected);
}

TEST(SchemaFile, KeepsTheCodeOfThePointersToItsEntitiesForDebuggers) {
  using Toys::ToyBox;
  using Pointer = Vek::Ptr<ToyBox>;
  ASSERT_EQ(kept().size(), 2 * 6U) << "Drawer, Lid, Shelf, Toy, ToyBox, and the base of all";
  using Code = std::array<void const*, 2>;  // how a pointer to a member function is laid out
  auto const star = std::bit_cast<ToyBox& (Pointer::*)() const>(Code{kept()[8]});
  auto const arrow = std::bit_cast<ToyBox* (Pointer::*)() const>(Code{kept()[9]});
  Pointer const box = Toys::toyBoxFactory("box");
  EXPECT_EQ(&(box.*star)(), box.ptr());
  EXPECT_EQ((box.*arrow)(), box.ptr());
}

}  // namespace
