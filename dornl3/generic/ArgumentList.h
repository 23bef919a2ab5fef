// ArgumentList: the generics that a constructor is given as a list, one by one.
// Owner: the function that reads it; it holds the arguments. Thread: that function's. Re-entrancy: it calls nobody.
#pragma once

#include "dornl3/platform/vek/GenericIf.h"

namespace Vek {

class ArgumentList {
 public:
  /// Works on a copy of the list in `list`. Throws TypeException "Vek::GenericIf::List_" where it is none.
  explicit ArgumentList(GenericIf const* list);

  [[nodiscard]] bool empty() const noexcept { return queue_.count() == 0; }

  /// The next argument, as a value of the type of that record, borrowed from the list. Throws TypeException with the
  /// argument's name where the list has none left or holds a null; where it is of another type, as its generic says.
  [[nodiscard]] void const* next(char const* name, VekType const* type);

  /// Throws UnknownArgException with that name where an argument is left.
  void needEnd(String8 const& name) const;

 private:
  GenericIf::List::Queue queue_;
  GenericIf::List::VekGenericIf const* at_;
};

}  // namespace Vek
