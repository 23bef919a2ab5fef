// What happens when the toys' schema file loads.
#include "dornl3/frame/SchemaFile.h"

#include "tests/frame/Toy.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
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
