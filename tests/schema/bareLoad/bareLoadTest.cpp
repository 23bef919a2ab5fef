// Types that load while nobody wants their descriptions. A process of its own: it must not load them before.
#include "dornl3/platform/vek/IntrospectionReactor.h"
#include "dornl3/platform/vek/VekType.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

namespace {

TEST(BareLoad, TypesWorkWithoutADescription) {
  ASSERT_EQ(Vek::VekType::find("Hardware::DornL3Unicast::Status"), nullptr) << "loaded too early";
  Vek::IntrospectionReactor::global()->activeIs(false);

  void* const module = dlopen(DORNL3_BARE_LOAD_MODULE, RTLD_NOW);
  ASSERT_NE(module, nullptr) << dlerror();
  auto const complaint = reinterpret_cast<char const* (*)()>(dlsym(module, "bareLoadComplaint"));
  ASSERT_NE(complaint, nullptr) << dlerror();
  EXPECT_STREQ(complaint(), "");
}

}  // namespace
