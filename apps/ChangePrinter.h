// ChangePrinter: prints the changes that a watch tells, as long as they are wanted.
// Owner: the command. Thread: one.
#pragma once

#include "apps/StandardOutput.h"
#include "apps/attributes/Change.h"
#include "apps/attributes/Filled.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Apps {

struct WatchOptions {
  bool json = false;
  bool recursive = false;
  bool whole = false;  // records in one piece
  bool all = false;    // also what is not filled
  bool stamped = false;
  std::optional<std::uint64_t> changes;  // after how many it ends
  std::vector<std::string> paths;        // none: everything

  /// How to look at what there is. `filled` outlives it.
  [[nodiscard]] Attributes::Look look(Attributes::Filled const& filled) const;
};

class ChangePrinter {
 public:
  /// `stop`: a descriptor that becomes readable when it is to wait for a slow reader no longer.
  ChangePrinter(WatchOptions const& options, int stop);

  /// Prints what is there at the start.
  void print(std::vector<Attributes::Change> const& changes);
  /// The same of changes, which count.
  void printChanges(std::vector<Attributes::Change> changes);
  void printLine(std::string const& line);

  [[nodiscard]] bool isDone() const noexcept { return written_.how != Written::whole || left_ == 0U; }
  [[nodiscard]] Written written() const noexcept { return written_; }

 private:
  Attributes::Form form_;
  Attributes::Stamp stamp_;
  std::optional<std::uint64_t> left_;
  int stop_;
  Written written_;
};

}  // namespace Apps
