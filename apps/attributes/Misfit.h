// Misfit: a path, value or operation that does not fit what is there. Its text says what does not, and what would.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace Apps::Attributes {

class Misfit : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The text in quotes, for a message: with escapes for what is not printable, and cut where it is long.
[[nodiscard]] std::string inQuotes(std::string_view text);

}  // namespace Apps::Attributes
