#include "apps/show/ShowLocal.h"

#include "apps/kernel/KernelReader.h"
#include "apps/show/HostRoots.h"
#include "apps/show/JsonForm.h"
#include "apps/show/TextForm.h"

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
  Interrupted const interrupted = fillFrom([&source] { return Kernel::readKernel(source); }, roots);
  return {print(figuresOf(roots), form, style), noticesOf(interrupted)};
}

}  // namespace Apps::Show
