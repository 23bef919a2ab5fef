#include "apps/show/ShowLocal.h"

#include "apps/kernel/KernelReader.h"
#include "apps/show/HostRoots.h"
#include "apps/show/JsonForm.h"
#include "apps/show/TextForm.h"

#include <utility>

namespace Apps::Show {

namespace {

std::string print(std::vector<Figure> const& figures, Form form, Style style) {
  switch (form) {
  case Form::json: return jsonForm(figures);
  case Form::text: return textForm(figures);
  case Form::table: break;
  }
  return tableForm(figures, style);
}

}  // namespace

Shown showLocal(Kernel::MessageSource& source, Form form, Style style) {
  Roots const roots;
  std::vector<std::string> notices = fillFrom([&source] { return Kernel::readKernel(source); }, roots);
  return {print(figuresOf(roots), form, style), std::move(notices)};
}

}  // namespace Apps::Show
