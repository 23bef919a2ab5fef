#include "schemac/Docs.h"

#include "tests/schemac/Emitted.h"

#include <gmock/gmock.h>

namespace Schemac::Test {
namespace {

TEST(Docs, IsATableATypeWithEveryFormOfAttribute) {
  std::string const docs = docsOf(toyFile());
  for (char const* part : {
           "# Toy\n\nToys: what the schema compiler emits, for every shape of type and attribute.\n\n"
           "All names are under `Toys`.\n\n## ToyPoint\n\nValue. A point and its label.\n\n"
           "| number | attribute | type | form | what |\n|---:|---|---|---|---|\n"
           "| 2 | `x` | `U32` | 0 to 100 | how far east |\n",
           "\n\n## ToyVlan\n\nValue, written as its attribute. A VLAN, and no more than that.\n\n|",
           "\n\n## Toy\n\nEntity, made by `toyFactory`. A toy on a shelf.\n\n|",
           "\n\n## Lid\n\nEntity. The lid of a box.\n\n|",
           "\n| 258 | `size` | `U64` | incrementer | how large it is |\n",
           "\n| 258 | `label` | `Vek::String` | given to the constructor | what stands on it |\n",
           "\n| 258 | `counts` | `U32` | ordered by `U32` | how many of each kind |\n",
           "\n| 262 |  |  | retired |  |\n",
           "\n| 264 | `capacity` | `U32` | constant `12` | how many toys go in |\n",
           "\n| 266 | `shelves` | `Shelf` | children, hashed by their `name` | its shelves |\n",
       }) {
    EXPECT_THAT(docs, testing::HasSubstr(part));
  }
  File const barred = good(acme + typed("value", "Label", R"(
  { number = 2, name = "level", type = "U8", min = 3, max = 7, default = 3, doc = "this | that" })"));
  EXPECT_THAT(docsOf(barred), testing::EndsWith("| 2 | `level` | `U8` | 3 to 7, default `3` | this \\| that |\n"));
  EXPECT_THAT(docRowsOf(barred), testing::StartsWith(R"({"Acme::Label", "", "d"},
{"Acme::Label", "level", "this | that"},
)"));
}

}  // namespace
}  // namespace Schemac::Test
