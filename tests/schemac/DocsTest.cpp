#include "schemac/Docs.h"

#include "tests/schemac/Schemas.h"

#include <gmock/gmock.h>

namespace Schemac::Test {
namespace {

TEST(Docs, IsATableATypeWithEveryFormOfAttribute) {
  File const file = good(R"(namespace = "Acme"
doc = "Toys."

[[value]]
name = "Label"
bare = true
doc  = "a label"
attributes = [
  { number = 2, name = "level", type = "U8", min = 3, max = 7, default = 3, doc = "this | that" },
]

[[entity]]
name = "Part"
doc  = "a part"
attributes = [
  { number = 258, name = "slotName", type = "Vek::String", fixed = true, doc = "its slot" },
]

[[entity]]
name = "Whole"
factory = "wholeFactory"
doc  = "all of it"
attributes = [
  { number = 258, name = "count", type = "U64", increment = true, doc = "how many" },
  { number = 259, name = "start", type = "bool", constant = true, doc = "what it starts with" },
  { number = 260, retired = true },
  { number = 261, name = "labels", ordered = "U32", type = "Label", doc = "labels" },
  { number = 262, name = "parts", child = "Part", hashed = "slotName", doc = "parts" },
]
)");
  EXPECT_EQ(docsOf(file), R"(# Toy

Toys.

All names are under `Acme`.

## Label

Value, written as its attribute. a label

| number | attribute | type | form | what |
|---:|---|---|---|---|
| 2 | `level` | `U8` | 3 to 7, default `3` | this \| that |

## Part

Entity. a part

| number | attribute | type | form | what |
|---:|---|---|---|---|
| 258 | `slotName` | `Vek::String` | given to the constructor | its slot |

## Whole

Entity, made by `wholeFactory`. all of it

| number | attribute | type | form | what |
|---:|---|---|---|---|
| 258 | `count` | `U64` | incrementer | how many |
| 259 | `start` | `bool` | constant `true` | what it starts with |
| 260 |  |  | retired |  |
| 261 | `labels` | `Label` | ordered by `U32` | labels |
| 262 | `parts` | `Part` | children, hashed by their `slotName` | parts |
)");
  EXPECT_THAT(docRowsOf(file), testing::StartsWith(R"({"Acme::Label", "", "a label"},
{"Acme::Label", "level", "this | that"},
)"));
}

}  // namespace
}  // namespace Schemac::Test
