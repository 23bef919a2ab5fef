#include "apps/show/ShowLocal.h"

#include "apps/kernel/KernelReader.h"
#include "apps/show/HostRoots.h"
#include "apps/show/JsonForm.h"
#include "apps/show/TextForm.h"

namespace Apps::Show {

std::string print(Roots const& roots, Form form, Style style) {
  std::vector<Figure> const figures = figuresOf(roots);
  switch (form) {
  case Form::json: return jsonForm(figures);
  case Form::text: return textForm(figures);
  case Form::table: break;
  }
  return tableForm(figures, style);
}

Shown showLocal(Kernel::MessageSource& source, Form form, Style style) {
  Roots const roots;
  Interrupted const interrupted = fillFrom([&source] { return Kernel::readKernel(source); }, roots);
  return {print(roots, form, style), noticesOf(interrupted)};
}

}  // namespace Apps::Show
