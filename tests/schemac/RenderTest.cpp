#include "schemac/Render.h"

#include <gtest/gtest.h>

#include <map>

namespace Schemac {
namespace {

using Texts = std::map<std::string, std::string, std::less<>>;

std::string renderAll(Texts const& texts, Data const& data) {
  return render("Root", data, [&](std::string_view name) -> std::string_view {
    auto const found = texts.find(name);
    if (found == texts.end()) throw std::out_of_range("none");
    return found->second;
  });
}

std::string renderText(std::string const& text, Data const& data) { return renderAll({{"Root", text}}, data); }

std::string faultOf(Texts const& texts, Data const& data) {
  try {
    return "rendered: " + renderAll(texts, data);
  } catch (RenderError const& error) {
    return error.what();
  }
}

Data attribute(std::string name, bool isLast) {
  return Data::object().set("attr", Data::object().set("name", std::move(name)).set("last", isLast));
}

Data entity() {
  return Data::object().set(
      "entity", Data::object()
                    .set("name", "Status")
                    .set("empty", "")
                    .set("keyed", true)
                    .set("bare", false)
                    .set("none", Data::list())
                    .set("base", Data::object().set("name", "Vek::Entity"))
                    .set("attrs", Data::list().add(attribute("first", false)).add(attribute("second", true))));
}

TEST(Render, TakesTextsOverAsTheyAre) {
  Data const data = Data::object().set("a", Data::object().set("type", "Ptr<X const>& \"'{{a.type}}"));
  EXPECT_EQ(renderText("{{a.type}};", data), "Ptr<X const>& \"'{{a.type}};");
}

TEST(Render, AnInnerObjectHidesTheOuterOneOfItsName) {
  Data inner = Data::object().set("a", Data::object().set("name", "inner"));
  Data const data =
      Data::object().set("a", Data::object().set("name", "outer").set("list", Data::list().add(std::move(inner))));
  EXPECT_EQ(renderText("{{#a.list}}{{a.name}} {{/a.list}}{{a.name}}", data), "inner outer");
}

TEST(Render, LinesOfSectionsLeaveNothingBehind) {
  std::string const text = "class {{entity.name}} {\n"
                           "  {{#entity.keyed}}\n"
                           "\n"
                           "  keyed\n"
                           "  {{/entity.keyed}}\n"
                           "  {{#entity.bare}}\n"
                           "  never\n"
                           "  {{/entity.bare}}\n"
                           "  {{! a remark\n"
                           "      on two lines }}\n"
                           "{{#entity.attrs}}\n"
                           "  {{attr.name}}\n"
                           "{{/entity.attrs}}\n"
                           "{{^entity.none}}\n"
                           "none\n"
                           "{{/entity.none}}\n"
                           "};\n";
  EXPECT_EQ(renderText(text, entity()), "class Status {\n\n  keyed\n  first\n  second\nnone\n};\n");
}

TEST(Render, FaultsNameTemplateLineAndName) {
  std::pair<char const*, char const*> const faults[] = {
      {"\n{{! a remark\n on two lines }}{{entity.nmae}}",
       "template 'Root', line 3: 'entity.nmae' is unknown: 'entity' has no 'nmae'"},
      {"{{attr.name}}", "template 'Root', line 1: 'attr.name' is unknown: there is no 'attr' here"},
      {"{{entity.base.nmae}}", "template 'Root', line 1: 'entity.base.nmae' is unknown: 'entity.base' has no 'nmae'"},
      {"{{name}}", "template 'Root', line 1: 'name' does not say whose it is; write 'entity.name', say"},
      {"{{#entity.empty}}x{{/entity.empty}}",
       "template 'Root', line 1: 'entity.empty' is a string, and a list or a flag is wanted"},
      {"{{entity.keyed}}", "template 'Root', line 1: 'entity.keyed' is a flag, and a string is wanted"},
      {"\n\n{{> Missing}}", "template 'Root', line 3: there is no partial 'Missing'"},
      {"{{> Root}}", "template 'Root', line 1: partial 'Root' includes itself"},
      {"{{> Other}}", "template 'Other', line 2: 'entity.nmae' is unknown: 'entity' has no 'nmae'"},
      {"int a[] = {{1, 2}};",
       "template 'Root', line 1: '{{1, 2}}' is no tag; for two braces of C++ put a space between them: '{ {'"},
      {"{{entity.}}",
       "template 'Root', line 1: '{{entity.}}' is no tag; for two braces of C++ put a space between them: '{ {'"},
      {"{{entity.name", "template 'Root', line 1: a tag is not closed"},
      {"{{#entity.keyed}}", "template 'Root', line 1: section 'entity.keyed' is not closed"},
      {"{{/entity.keyed}}", "template 'Root', line 1: section 'entity.keyed' is closed and was never opened"},
      {"{{#entity.keyed}}\n{{#entity.empty}}\n{{/entity.keyed}}{{/entity.empty}}",
       "template 'Root', line 3: 'entity.keyed' is closed where 'entity.empty' of line 2 is open"},
  };
  for (auto const& [text, complaint] : faults) {
    EXPECT_EQ(faultOf({{"Root", text}, {"Other", "\n{{entity.nmae}}"}}, entity()), complaint) << text;
  }
}

TEST(Data, RefusesWhatATemplateCouldNotTellApart) {
  EXPECT_THROW(Data::object().set("name", "a").set("name", "b"), std::logic_error);
  EXPECT_THROW(Data::list().add(Data("text")), std::logic_error);
  EXPECT_THROW(Data("text").set("name", "a"), std::logic_error);
  EXPECT_THROW(Data::object().add(Data::object()), std::logic_error);
}

}  // namespace
}  // namespace Schemac
