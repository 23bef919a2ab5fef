#include "platform/vek/NamedType.h"

namespace Vek {

VekType* namedValueType(char const* fullName, std::size_t size) {
  std::string_view shortName = fullName;
  if (auto const colon = shortName.rfind(':'); colon != std::string_view::npos) shortName.remove_prefix(colon + 1);
  Ptr<VekType> const type = new VekType(shortName, nullptr, nullptr, {});
  type->referencesLeak();
  type->sizeIs(size);
  type->isValueIs(true);
  VekType::typeNodeIs(type.ptr(), fullName);
  return type.ptr();
}

}  // namespace Vek
