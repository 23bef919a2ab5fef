// EntityText: the text of a reference to an entity: its full name, or None.
// Thread: the entities'. Re-entrancy: it changes nothing, so that no reactor is called.
#pragma once

#include "dornl3/platform/vek/Entity.h"
#include "dornl3/platform/vek/TextReader.h"

namespace Vek {

/// The text of a reference: None for null, else the entity's full name. `declared` is the class that the reference is
/// declared with; it does not show.
[[nodiscard]] String8 valueToStrepOfRawPtr(PtrInterface const* object, std::type_info const& declared);

/// The greatest number of children that lead from a root to what a text refers to.
inline constexpr int maxPathSteps = 32;

/// Reads the text of a reference, "auditStatus.auditInfo[kernel]", and leaves `it` behind it. A root is looked up in
/// the root directory; from there the path goes through attributes that make children, each of which counts a read.
/// Null for None, and where something on the way is not there. Throws RangeException where no path stands, or one that
/// is longer than maxPathSteps.
[[nodiscard]] Ptr<PtrInterface> sequenceToValueOfPtr(String8::IteratorConst& it, String8::IteratorConst const& end,
                                                     Entity*);

template <class T>
struct StrepToValue;

/// Reads a whole text. For a reference to an entity of type E: null where the text denotes none. Throws RangeException
/// where text is left over, or the entity is no E. The pointer only selects the type.
template <class T>
[[nodiscard]] T strepToValue(String8 const& text, T* /*tag*/) {
  return StrepToValue<T>::read(text);
}

template <class E>
struct StrepToValue<Ptr<E>> {
  static Ptr<E> read(String8 const& text) {
    String8::IteratorConst it{text};
    String8::IteratorConst const end = it.end();
    Ptr<E> entity;
    if (Ptr<PtrInterface> const object = sequenceToValueOfPtr(it, end, static_cast<Entity*>(nullptr))) {
      entity = ptrCast<E>(object);
      if (!entity) cannotConvert(it, end, typeid(E));
    }
    needEnd(it, end);
    return entity;
  }
};

}  // namespace Vek
