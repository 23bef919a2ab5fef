// The command 'dornl3 show --local': asks for fresh figures of this host and prints them.
#pragma once

#include "apps/kernel/MessageSource.h"
#include "apps/show/Roots.h"
#include "apps/show/TableForm.h"

#include <string>
#include <vector>

namespace Apps::Show {

enum class Form { table, json, text };

struct Shown {
  std::string output;
  std::vector<std::string> notices;  // what the reader should know about it: sentences
};

/// What is shown of roots that are filled.
[[nodiscard]] std::string print(Roots const& roots, Form form, Style style);
/// Fills roots from `source`, and prints them. Throws KernelError.
[[nodiscard]] Shown showLocal(Kernel::MessageSource& source, Form form, Style style);

}  // namespace Apps::Show
