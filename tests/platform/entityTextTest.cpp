#include "dornl3/platform/vek/EntityText.h"

#include "dornl3/platform/vek/Dir.h"
#include "tests/core/LeakCheck.h"
#include "tests/platform/ReadText.h"

using namespace Vek;

namespace Shelf {

struct Box : Entity {
  explicit Box(Name name) : Entity(std::move(name)) {}
};
struct Bottle : Entity {
  explicit Bottle(Name name) : Entity(std::move(name)) {}
};

}  // namespace Shelf

namespace {

using Shelf::Bottle;
using Shelf::Box;

// Made for good before a test counts.
Dir& root = Dir::root();
[[maybe_unused]] Vek::VekType* const entityType = Entity::_fwkType();

struct EntityText : LeakCheck {
  ~EntityText() override {
    for (auto const& entity : entered) root.entryDel(entity->name());
    EXPECT_EQ(root.entryCount(), 0U);
  }
  template <class E>
  Ptr<E> enter(Name name) {
    auto entity = make<E>(std::move(name));
    root.entryIs(entity);
    entered.push_back(entity);
    return entity;
  }
  template <class E>
  static auto read(std::string_view text) {
    return readText(text, [](auto& it, auto const& end) {
      return Vek::strepToValue(String8{Vek::between(it, end)}, static_cast<Ptr<E>*>(nullptr));
    });
  }
  std::vector<Ptr<Entity>> entered;
};

TEST_F(EntityText, AReferenceReadsBackWhateverTheName) {
  std::pair<std::string_view, char const*> const cases[] = {
      {"a-b_c:d/17", "a-b_c:d/17"},
      {"", "''"},
      {"None", "'None'"},
      {"None2", "None2"},
      {"two words", "'two words'"},
      {"it's", "'it\\'s'"},
      {std::string_view{"\0\xff", 2}, "'\\x00\\xff'"},
  };
  for (auto const& [name, written] : cases) {
    SCOPED_TRACE(written);
    auto const box = enter<Box>(Name{name});
    auto const text = Vek::valueToStrepOfRawPtr(box.ptr(), typeid(Entity));
    EXPECT_TRUE(text == written);
    auto const back = read<Box>(text);
    EXPECT_TRUE(back.value == box) << back.message;
  }
}

TEST_F(EntityText, WhatDenotesNoEntityIsNull) {
  EXPECT_TRUE(Vek::valueToStrepOfRawPtr(nullptr, typeid(Entity)) == "None");
  auto const box = enter<Box>("box");
  for (char const* text : {"None", "nobody", "'None'", "\"x\"", "'no.body'.a[b].c['d e']", "box.lid", "box.name"}) {
    auto const back = read<Box>(text);
    ASSERT_TRUE(back.value) << text << ' ' << back.message;
    EXPECT_FALSE(*back.value);
  }
}

TEST_F(EntityText, WhatIsLeftOverIsJunkAndGivesTheReferenceBack) {
  auto const box = enter<Box>("box");
  std::pair<char const*, char const*> const cases[] = {
      {"box ", "junk at column 3 deserializing box "},
      {"box.a[b]c", "junk at column 8 deserializing box.a[b]c"},
      {"box[b]", "junk at column 3 deserializing box[b]"},
      {"None.lid", "junk at column 4 deserializing None.lid"},
      {"'box''", "junk at column 5 deserializing 'box''"},
      {"", "expected a string in quotes at column 0, found the end of the text"},
      {"'box", "expected a string with its closing quote at column 0, found '\\'box'"},
      {"box.", "expected the name of an attribute at column 4, found the end of the text"},
      {"nobody..a", "expected the name of an attribute at column 7, found '.a'"},
      {"box.a[", "expected a string in quotes at column 6, found the end of the text"},
      {"box.a[b.c]", "expected ] at column 7, found '.c]'"},
  };
  for (auto const& [text, message] : cases) EXPECT_EQ(read<Box>(text).message, message);
  EXPECT_EQ(box->references(), 3U) << "the directory, this test and its fixture";
}

TEST_F(EntityText, APathHasAGreatestLength) {
  std::string path = "nobody";
  for (int i = 0; i < Vek::maxPathSteps; ++i) path += ".a[b]";
  EXPECT_TRUE(read<Box>(path).value) << read<Box>(path).message;
  EXPECT_EQ(read<Box>(path + ".a").message, "a path goes through at most 32 children; this one goes on at column 166");
}

TEST_F(EntityText, AnEntityOfAnotherTypeDoesNotConvert) {
  auto const box = enter<Box>("box");
  EXPECT_EQ(read<Bottle>("box").message, "cannot convert box to Shelf::Bottle");
  EXPECT_EQ(read<Bottle>("box junk").message, "cannot convert box junk to Shelf::Bottle") << "before the junk is seen";
  EXPECT_EQ(box->references(), 3U);
  EXPECT_TRUE(read<Entity>("box").value == box);
}

}  // namespace
