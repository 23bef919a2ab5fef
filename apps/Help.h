// Help: what the command line says of itself, within 80 columns, and of what it does not understand.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace Apps {

/// The form of the help of a program and, where it is set before they are added, of its commands.
class HelpForm final : public CLI::Formatter {
 public:
  HelpForm() { column_width(28); }

  std::string make_option_opts(CLI::Option const* option) const override;
  std::string make_option_desc(CLI::Option const* option) const override;
  std::string make_subcommand(CLI::App const* command) const override;
};

/// The statuses with which all commands end.
inline constexpr char const* exitStatus =
    "Exit status:\n"
    "  0  all went well\n"
    "  1  what was asked for does not fit or is not permitted, or the kernel could\n"
    "     not be read, or the output not be written; the message says what to do\n"
    "  2  the command line is wrong\n"
    "  3  there is no agent, or no answer from it: what it did with a change is then\n"
    "     unknown\n";

/// For commands that take paths: how one reads, and the roots at which they begin, with what the schema says of them.
[[nodiscard]] std::string pathHelp();

/// Why the command line that `app` has parsed is wrong, what may have been meant, and where help is.
[[nodiscard]] std::string misuse(CLI::App const& app, CLI::Error const& error);

}  // namespace Apps
