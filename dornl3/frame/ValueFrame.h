// ValueFrame: a value type is a plain record, copied, compared and replaced as a whole.
// Owner: a value is a copy of its own. Thread: any, one at a time.
#pragma once

#include "dornl3/frame/Attribute.h"

namespace Vek {

namespace detail {

template <class V, class... A>
bool valueEqual(List<A...>, V const& a, V const& b) {
  return ((A::field(a) == A::field(b)) && ...);
}

}  // namespace detail

/// Compares the attributes in number order, up to the first difference. Doubles compare as numbers: a NaN differs from
/// everything, itself included.
template <class Attr, class X>
bool valueEqual(X const& a, X const& b) {
  return detail::valueEqual(typename Attr::All{}, a, b);
}

}  // namespace Vek
