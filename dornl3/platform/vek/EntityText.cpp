#include "dornl3/platform/vek/EntityText.h"

#include "dornl3/core/Throwers.h"
#include "dornl3/platform/vek/Dir.h"
#include "dornl3/platform/vek/GenericIfEntity.h"
#include "dornl3/platform/vek/Path.h"

#include <algorithm>

namespace Vek {

namespace {

constexpr std::string_view nullReference = "None";

using Cursor = String8::IteratorConst;

// One step of a path below a root: ".lid", ".shelves[top]".
struct Step {
  Name attribute;
  bool isKeyed = false;
  Name key;
};

constexpr bool isNameByte(char byte) noexcept {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') || byte == '_';
}

bool isAt(Cursor const& it, Cursor const& end, char byte) noexcept {
  std::string_view const text = between(it, end);
  return !text.empty() && text.front() == byte;
}

Step readStep(Cursor& it, Cursor const& end) {
  Step step;
  needString(it, end, ".");
  std::string_view const text = between(it, end);
  auto const length = std::find_if_not(text.begin(), text.end(), isNameByte) - text.begin();
  if (length == 0) throwExpected("the name of an attribute", it, end);
  step.attribute = Name(text.substr(0, static_cast<std::size_t>(length)));
  it += static_cast<int>(length);
  if (!isAt(it, end, '[')) return step;
  ++it;
  step.isKeyed = true;
  step.key = readPathComponent(it, end);
  needString(it, end, "]");
  return step;
}

// The child to which a step leads; null where the type has no such attribute, or the attribute no such child.
Ptr<Entity> childOf(Entity& parent, Step const& step) {
  VekType* const type = parent.fwkType();
  VekAttr const* const attr = type == nullptr ? nullptr : type->type_Attr().attr(step.attribute);
  bool const leads = attr != nullptr && type->hasGenericIfSupport() && attr->flags().isInstantiating() &&
                     attr->flags().isCollection() == step.isKeyed;
  if (!leads) return {};
  Ptr<GenericIf const> key;
  if (step.isKeyed) key = attr->keyType()->genericIf(valueToStrep(String8(step.key)), true);
  Ptr<GenericIf> const holder = VekType::genericIf(&parent, false);
  Ptr<GenericIf> const child = holder->attributeOp({attr->id(), GenericIf::OpGet}, key, nullptr);
  return ptrCast<Entity>(static_cast<GenericIfPtrInterface&>(*child).obj());
}

}  // namespace

String8 valueToStrepOfRawPtr(PtrInterface const* object, std::type_info const& /*declared*/) {
  auto const* const entity = dynamic_cast<Entity const*>(object);
  return entity == nullptr ? String8(nullReference) : entity->fullName();
}

Ptr<PtrInterface> sequenceToValueOfPtr(String8::IteratorConst& it, String8::IteratorConst const& end, Entity*) {
  bool const quoted = it.inside() && (*it == '\'' || *it == '"');
  Name const name = readPathComponent(it, end);
  if (!quoted && std::string_view(name) == nullReference) return {};
  Ptr<Entity> entity = Dir::root().entity(name);
  for (int steps = 0; isAt(it, end, '.'); ++steps) {
    if (steps == maxPathSteps) {
      throwRangeException(format("a path goes through at most %d children; this one goes on at column %d", maxPathSteps,
                                 it.position()));
    }
    Step const step = readStep(it, end);
    if (entity) entity = childOf(*entity, step);
  }
  return entity;
}

}  // namespace Vek
