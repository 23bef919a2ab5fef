#include "dornl3/platform/vek/NamedType.h"

namespace Vek {

std::string_view shortTypeName(std::string_view fullName) noexcept {
  auto const colon = fullName.rfind(':');
  return colon == std::string_view::npos ? fullName : fullName.substr(colon + 1);
}

VekType* registerValueType(Ptr<VekType> const& type, char const* fullName, std::size_t size) {
  type->referencesLeak();
  type->sizeIs(size);
  type->isValueIs(true);
  VekType::typeNodeIs(type.ptr(), fullName);
  return type.ptr();
}

VekType* namedType(char const* fullName, std::size_t size) {
  return registerValueType(make<VekType>(shortTypeName(fullName), nullptr, nullptr, VekType::VekTypeFlags{}), fullName,
                           size);
}

}  // namespace Vek
