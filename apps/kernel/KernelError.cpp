#include "apps/kernel/KernelError.h"

#include <cerrno>
#include <string>
#include <system_error>

namespace Apps::Kernel {

namespace {

std::string_view hint(int error) {
  switch (error) {
  case EPERM:
  case EACCES: return "Run dornl3 where rtnetlink may be used: outside the sandbox or the policy that forbids it.";
  case EAFNOSUPPORT:
  case EPROTONOSUPPORT: return "This system offers no rtnetlink: run dornl3 on the Linux host itself.";
  case EMFILE:
  case ENFILE: return "Raise the limit of open files ('ulimit -n'), then try again.";
  case ENOBUFS:
  case ENOMEM: return "Free some memory or raise net.core.rmem_max, then try again.";
  case EAGAIN: return "The kernel gave no answer in time: it may be very busy. Try again.";
  default: return "Try again; if it stays so, compare with what 'ip route show table all' says.";
  }
}

}  // namespace

KernelError kernelError(std::string_view what, int error) {
  std::string text{what};
  text += " could not be read: ";
  text += std::generic_category().message(error);
  text += ". ";
  text += hint(error);
  return KernelError{text};
}

}  // namespace Apps::Kernel
