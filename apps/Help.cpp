#include "apps/Help.h"

#include "apps/Legend.h"
#include "apps/attributes/Docs.h"
#include "apps/show/Roots.h"
#include "dornl3/core/Nearest.h"

#include <fmt/format.h>

#include <algorithm>
#include <sstream>
#include <string_view>
#include <vector>

namespace Apps {

namespace {

constexpr std::size_t columns = 80;

// The text in lines of at most that width, broken between words.
std::string wrapped(std::string_view text, std::size_t width) {
  std::istringstream words{std::string{text}};
  std::string lines;
  std::size_t length = 0;  // of the last line
  for (std::string word; words >> word; length += word.size()) {
    bool const fits = length + 1 + word.size() <= width;
    if (!lines.empty()) lines += fits ? ' ' : '\n';
    length = fits && !lines.empty() ? length + 1 : 0;
    lines += word;
  }
  return lines;
}

// A name, and in a column of its own what it is.
std::string entry(std::string const& name, std::string_view what, std::size_t column) {
  std::ostringstream out;
  CLI::detail::format_help(out, name, wrapped(what, columns - column), column);
  return out.str();
}

std::string didYouMean(std::string_view word, std::vector<std::string> const& candidates) {
  std::string_view const near = Vek::nearestWord(word, {candidates.begin(), candidates.end()});
  return near.empty() ? "" : fmt::format("; did you mean '{}'?", near);
}

std::vector<std::string> commandsOf(CLI::App const& app) {
  std::vector<std::string> names;
  for (CLI::App const* command : app.get_subcommands({})) names.push_back(command->get_name());
  return names;
}

std::vector<std::string> optionsOf(CLI::App const& app) {
  std::vector<std::string> names;
  for (CLI::Option const* option : app.get_options()) {
    for (std::string const& name : option->get_lnames()) names.push_back("--" + name);
  }
  return names;
}

}  // namespace

std::string HelpForm::make_option_opts(CLI::Option const* option) const {
  if (option->get_type_size() == 0) return {};
  if (option->get_positional()) return option->get_expected_max() > 1 ? " ..." : "";
  return ' ' + option->get_type_name();
}

std::string HelpForm::make_option_desc(CLI::Option const* option) const {
  return wrapped(option->get_description(), columns - get_column_width());
}

std::string HelpForm::make_subcommand(CLI::App const* command) const {
  return entry(command->get_name(), command->get_description(), get_column_width());
}

std::string pathHelp() {
  std::string help = "A path begins with a root entity:\n";
  Show::Roots{}.forEach([&help](Vek::Ptr<Vek::Entity> const& root) {
    help += entry(std::string{root->name().view()}, Attributes::docOf(*root->fwkType()), 28);
  });
  return help +
         "and goes on like status.numVrfs, 'status.inUseArpEntries[0]' or\n"
         "'auditStatus.auditInfo[kernel].table'. Quote it for the shell where it has\n"
         "brackets. 'dornl3 ls PATH' tells what there is below.\n" +
         legendOf("FAP FEC LEM");
}

std::string misuse(CLI::App const& app, CLI::Error const& error) {
  std::vector<CLI::App*> const given = app.get_subcommands();
  CLI::App const& command = given.empty() ? app : *given.front();
  std::string const name = given.empty() ? "dornl3" : "dornl3 " + command.get_name();
  std::vector<std::string> const unknown = app.remaining(true);
  std::string why = fmt::format("{}.", error.what());
  if (!unknown.empty()) {
    std::string const& word = unknown.front();
    if (word.starts_with('-')) {
      std::string const hint = didYouMean(word, optionsOf(command));
      why = fmt::format("'{}' has no option '{}'{}", name, word, hint.empty() ? "." : hint);
    } else if (given.empty()) {
      std::vector<std::string> const commands = commandsOf(app);
      std::string const hint = didYouMean(word, commands);
      why = fmt::format("There is no command '{}'{}", word,
                        hint.empty() ? fmt::format(". There are: {}.", fmt::join(commands, ", ")) : hint);
    }
  }
  return fmt::format("dornl3: {} Type '{} --help' to see what there is.\n", why, name);
}

}  // namespace Apps
