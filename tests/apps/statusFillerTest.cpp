// What is filled from the kernel, and what is said to be.
#include "apps/show/StatusFiller.h"

#include "apps/show/Figures.h"
#include "tests/apps/AttributeTest.h"
#include "tests/apps/SomeFigures.h"

#include <algorithm>
#include <map>

namespace Apps::Show {
namespace {

using Lines = std::map<std::string, std::string>;  // by path, without keys

void collectLines(Attributes::Reading const& reading, std::string const& path, Lines& lines) {
  if (reading.value) lines[path] = reading.value->strRep().view();
  for (Attributes::Reading const& part : reading.parts) {
    bool const isMember = part.path.ends_with(']');
    collectLines(part, isMember ? path : path + '.' + part.step, lines);
  }
}

class StatusFiller : public Attributes::AttributeTest {
 protected:
  Lines lines() {
    Lines lines;
    for (Vek::Name const& name : directory_->names()) {
      std::string const path{name.view()};
      collectLines(read(Attributes::resolve(*directory_, path), {Attributes::Depth::all, Attributes::Records::byField}),
                   path, lines);
    }
    return lines;
  }
};

TEST_F(StatusFiller, FillsWhatItSaysAndNothingElse) {
  Lines const before = lines();
  roots_.request->statusRequestIdInc(1);
  fill(roots_, someFigures());
  answer(roots_, {1, 2.5});
  Attributes::Filled const filled{filledPaths(Reading::following)};
  for (auto const& [path, text] : lines()) {
    Attributes::Filled const* of = &filled;
    std::istringstream steps{path};
    for (std::string step; std::getline(steps, step, '.');) of = &of->at(step);
    auto const was = before.find(path);
    EXPECT_EQ(of->isAll(), was == before.end() || was->second != text) << path;
  }
}

TEST_F(StatusFiller, FillsAllThatIsShown) {
  fill(roots_, someFigures());
  Attributes::Filled const filled{filledPaths(Reading::once)};
  for (Figure const& figure : figuresOf(roots_)) {
    std::string const path = std::string{figure.entity} + '.' + std::string{figure.attribute};
    EXPECT_TRUE(select(*directory_, {path}, filled).unfilled.empty()) << path;
  }
}

}  // namespace
}  // namespace Apps::Show
