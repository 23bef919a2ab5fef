#include "apps/attributes/Misfit.h"

#include "dornl3/platform/vek/ScalarText.h"

namespace Apps::Attributes {

std::string inQuotes(std::string_view text) {
  constexpr std::size_t shown = 60;
  std::string const cut{Vek::valueToStrep(Vek::String8(text.substr(0, shown))).view()};
  return text.size() > shown ? cut + "..." : cut;
}

}  // namespace Apps::Attributes
