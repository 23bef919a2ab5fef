// Complaint: something wrong in a schema file, for the person who wrote it: what, where, and what to write instead.
#pragma once

#include "schemac/Schema.h"

#include <string>
#include <utility>
#include <vector>

namespace Schemac {

struct Complaint {
  std::string path;
  SourcePosition at;
  std::string text;  ///< "what is wrong; what to write instead", with no full stop

  friend auto operator<=>(Complaint const&, Complaint const&) = default;
};

using Complaints = std::vector<Complaint>;

/// `file:line:column: error: text`, as compilers write it, so that editors find the place.
[[nodiscard]] std::string toString(Complaint const& complaint);

/// Sorts by file, line and column.
void sort(Complaints& complaints);

/// Collects the complaints about one file. Keeps references to both arguments.
class Complainer {
 public:
  Complainer(std::string const& path, Complaints& complaints) noexcept : path_(path), complaints_(complaints) {}

  void operator()(SourcePosition at, std::string text) const { complaints_.push_back({path_, at, std::move(text)}); }

 private:
  std::string const& path_;
  Complaints& complaints_;
};

}  // namespace Schemac
