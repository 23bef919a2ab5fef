// The types library in a process that does not link it: it may be closed while its types are in use.
#include "dornl3/platform/vek/Entity.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

namespace {

TEST(ClosedLibrary, LeavesItsTypesAndOpensAgain) {
  for (int opened = 1; opened <= 2; ++opened) {
    void* const library = dlopen(DORNL3_TYPES_LIBRARY, RTLD_NOW);
    ASSERT_NE(library, nullptr) << dlerror();
    ASSERT_EQ(dlclose(library), 0) << dlerror();
    Vek::VekType* const type = Vek::VekType::find("Hardware::DornL3Unicast::Status");
    ASSERT_NE(type, nullptr);
    EXPECT_EQ(type->newEntity("made", nullptr)->fwkType(), type);
  }
}

}  // namespace
