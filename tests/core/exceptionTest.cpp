#include "dornl3/core/Exception.h"

#include "dornl3/core/Throwers.h"
#include "tests/core/LeakCheck.h"

using namespace Vek;

namespace {

struct Exceptions : LeakCheck {};

template <class Thrown, class Thrower>
Thrown caught(Thrower const& thrower) {
  try {
    thrower();
  } catch (Thrown const& e) {
    return e;
  }
  throw std::logic_error("nothing was thrown");
}

TEST_F(Exceptions, TheThrowersRaiseTheirClassWithTheirText) {
  auto const range = caught<RangeException>([] { Vek::throwRangeException("bad value"); });
  EXPECT_STREQ(range.what(), "bad value");
  EXPECT_TRUE(range.ids().contains(12));
  EXPECT_FALSE(range.ids().contains(13));
  auto const internal = caught<Vek::InternalException>([] { Vek::throwInternalException(Vek::String8{"bad state"}); });
  EXPECT_TRUE(internal.message() == "bad state");
  EXPECT_FALSE(internal.ids().contains(12));
}

TEST_F(Exceptions, IdsGivenStayBesideTheClassesOwnAndACopySharesTheText) {
  Exception::IdBitArray ids;
  ids.add(5);
  RangeException const first{"text", ids};
  RangeException const copy = first;
  EXPECT_TRUE(copy.ids().contains(5));
  EXPECT_TRUE(copy.ids().contains(12));
  EXPECT_EQ(copy.message().data().references(), 2U);
}

bool isExpected() {
  return caught<RangeException>([] { Vek::throwRangeException("x"); }).expected();
}

TEST_F(Exceptions, AreExpectedInAScopeForTheirKindOrForAll) {
  EXPECT_FALSE(isExpected());
  {
    Expect const other{13};
    EXPECT_FALSE(isExpected());
    {
      Expect const all{0};
      Expect const innermost{13};
      EXPECT_TRUE(isExpected());
    }
    EXPECT_FALSE(isExpected());
    Expect const range{12};
    EXPECT_TRUE(isExpected());
  }
  auto const e = caught<RangeException>([] {
    Expect const scope{0};
    Vek::throwRangeException("x");
  });
  EXPECT_TRUE(e.expected()) << "it keeps what held when it was made";
  EXPECT_FALSE(isExpected()) << "a scope left by an exception is over";
}

}  // namespace
