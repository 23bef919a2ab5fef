#include "platform/vek/EntityText.h"

#include "platform/vek/Dir.h"
#include "platform/vek/Path.h"

namespace Vek {

namespace {

constexpr std::string_view nullReference = "None";

}  // namespace

String8 valueToStrepOfRawPtr(PtrInterface const* object, std::type_info const& /*declared*/) {
  auto const* const entity = dynamic_cast<Entity const*>(object);
  return entity == nullptr ? String8(nullReference) : entity->fullName();
}

Ptr<PtrInterface> sequenceToValueOfPtr(String8::IteratorConst& it, String8::IteratorConst const& end, Entity*) {
  bool const quoted = it.inside() && (*it == '\'' || *it == '"');
  Name const name = readPathComponent(it, end);
  if (!quoted && std::string_view(name) == nullReference) return {};
  return Dir::root().entry(name);
}

}  // namespace Vek
