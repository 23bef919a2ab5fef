#include "schemac/Complaint.h"

#include <fmt/format.h>

#include <algorithm>

namespace Schemac {

std::string toString(Complaint const& complaint) {
  return fmt::format("{}:{}:{}: error: {}", complaint.path, complaint.at.line, complaint.at.column, complaint.text);
}

void sort(Complaints& complaints) { std::sort(complaints.begin(), complaints.end()); }

}  // namespace Schemac
