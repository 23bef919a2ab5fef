#include "apps/show/ShowLocal.h"

#include "apps/kernel/KernelReader.h"
#include "apps/show/JsonForm.h"
#include "apps/show/RequestResponder.h"
#include "apps/show/TextForm.h"

#include <chrono>

namespace Apps::Show {

namespace {

double secondsSince1970() {
  return std::chrono::duration<double>{std::chrono::system_clock::now().time_since_epoch()}.count();
}

std::string print(std::vector<Figure> const& figures, Form form, Style style) {
  switch (form) {
  case Form::json: return jsonForm(figures);
  case Form::text: return textForm(figures);
  case Form::table: break;
  }
  return tableForm(figures, style);
}

std::string interruptionNotice(std::string_view table) {
  return std::string{table} +
         " kept changing while they were read: the figures may mix several states. Run the command again for others.";
}

}  // namespace

Shown showLocal(Kernel::MessageSource& source, Form form, Style style) {
  Roots const roots;
  auto const responder = Vek::make<RequestResponder>(
      roots, [&source] { return Kernel::readKernel(source); }, secondsSince1970);
  responder->notifierIs(roots.request);
  responder->isRegisteredNotifieeIs(true);

  roots.request->statusRequestIdInc(1);
  if (responder->failure()) std::rethrow_exception(responder->failure());

  Shown shown{print(figuresOf(roots), form, style), {}};
  for (std::string_view table : responder->interrupted()) shown.notices.push_back(interruptionNotice(table));
  return shown;
}

}  // namespace Apps::Show
