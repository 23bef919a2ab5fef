#include "apps/ChangePrinter.h"

#include "apps/show/WallClock.h"

#include <algorithm>

namespace Apps {

Attributes::Look WatchOptions::look(Attributes::Filled const& filled) const {
  return {recursive ? Attributes::Depth::all : Attributes::Depth::one,
          whole ? Attributes::Records::whole : Attributes::Records::byField,
          all ? &Attributes::Filled::everything() : &filled};
}

ChangePrinter::ChangePrinter(WatchOptions const& options, int stop)
    : form_{options.json ? Attributes::Form::json : Attributes::Form::text},
      stamp_{options.stamped ? Attributes::Stamp::time : Attributes::Stamp::none},
      left_{options.changes},
      stop_{stop} {}

void ChangePrinter::print(std::vector<Attributes::Change> const& changes) {
  printLine(linesOf(changes, Show::secondsSince1970(), form_, stamp_));
}

void ChangePrinter::printChanges(std::vector<Attributes::Change> changes) {
  if (left_) {
    changes.resize(std::min<std::uint64_t>(changes.size(), *left_));
    *left_ -= changes.size();
  }
  if (!changes.empty()) print(changes);
}

void ChangePrinter::printLine(std::string const& line) {
  if (written_.how == Written::whole) written_ = writeToStandardOutput(line, stop_);
}

}  // namespace Apps
