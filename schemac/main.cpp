// schemac: the schema compiler.
#include "schemac/Check.h"
#include "schemac/Diff.h"
#include "schemac/Docs.h"
#include "schemac/Read.h"
#include "schemac/Render.h"
#include "schemac/Suggest.h"
#include "schemac/Templates.h"
#include "schemac/View.h"
#include "schemac/Write.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <exception>
#include <filesystem>
#include <iostream>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace {

using namespace Schemac;

enum ExitCode { fine = 0, complained = 1, unusable = 2 };

constexpr char const* exitCodes = "Exit codes: 0 all is well; 1 there are complaints, or something breaks;\n"
                                  "            2 the command line is wrong, or a file cannot be read or written.";

enum class FileNames { taken, free };  // whether what is made takes over the names of the files

// Reads and checks the files, each once however often it is named; tells what is wrong with them, and gives them back
// if nothing is.
std::optional<std::vector<File>> load(std::vector<std::string> const& paths, FileNames fileNames = FileNames::taken) {
  std::vector<File> files;
  Complaints complaints;
  auto const add = [&complaints](Complaints const& found) {
    complaints.insert(complaints.end(), found.begin(), found.end());
  };
  std::set<std::filesystem::path> known;
  for (std::string const& path : paths) {
    if (!known.insert(std::filesystem::weakly_canonical(path)).second) continue;
    ReadResult result = readFile(path);
    add(result.complaints);
    if (result.file) files.push_back(std::move(*result.file));
  }
  add(check(files));
  if (fileNames == FileNames::taken) add(checkFileNames(files));
  sort(complaints);
  for (Complaint const& complaint : complaints) std::cerr << toString(complaint) << '\n';
  if (!complaints.empty()) return std::nullopt;
  return files;
}

int compile(std::vector<std::string> const& paths, std::string const& folder, std::string const& includePrefix) {
  auto const files = load(paths);
  if (!files) return complained;
  for (File const& file : *files) {
    Data const view = viewOf(file, includePrefix);
    std::filesystem::path const stem = std::filesystem::path(folder) / includePrefix / file.stem;
    writeIfChanged(std::filesystem::path(stem) += ".h", render("Header", view, embeddedTemplate));
    writeIfChanged(std::filesystem::path(stem) += ".cpp", render("Source", view, embeddedTemplate));
  }
  return fine;
}

int checkFiles(std::vector<std::string> const& paths) { return load(paths) ? fine : complained; }

int printDocs(std::vector<std::string> const& paths) {
  auto const files = load(paths);
  if (!files) return complained;
  for (File const& file : *files) std::cout << (&file == &files->front() ? "" : "\n") << docsOf(file);
  return fine;
}

int writeDocRows(std::vector<std::string> const& paths, std::string const& into) {
  auto const files = load(paths);
  if (!files) return complained;
  std::string rows;
  for (File const& file : *files) rows += docRowsOf(file);
  writeIfChanged(into, rows);
  return fine;
}

int printDiff(std::string const& before, std::string const& after) {
  auto const was = load({before}, FileNames::free);
  auto const is = load({after}, FileNames::free);
  if (!was || !is) return complained;
  auto const differences = diff(was->front(), is->front());
  for (Difference const& d : differences) std::cout << toString(d) << '\n';
  return breaks(differences) ? complained : fine;
}

// What the parser complains of, with the command that may have been meant.
std::string misuse(CLI::App const* app, CLI::Error const& error) {
  std::string why = error.what();
  std::vector<std::string> const unknown = app->remaining();
  if (app->get_subcommands().empty() && !unknown.empty()) {
    std::vector<std::string> names;
    for (CLI::App const* command : app->get_subcommands({})) names.push_back(command->get_name());
    std::string const hint = didYouMean(unknown.front(), {names.begin(), names.end()});
    why = fmt::format("there is no command '{}'{}", unknown.front(),
                      hint.empty() ? fmt::format("; there are: {}", fmt::join(names, ", ")) : hint);
  }
  return fmt::format("schemac: {}\nType 'schemac --help' to see what there is.\n", why);
}

int run(int argc, char** argv) {
  CLI::App app{"Schema compiler: stamps the types of schema files.", "schemac"};
  app.footer(exitCodes);
  app.set_version_flag("--version", DORNL3_VERSION);
  app.require_subcommand(1);
  app.failure_message(misuse);

  std::vector<std::string> paths;
  auto const takeFiles = [&](CLI::App* command) {
    command->add_option("FILE", paths, "Schema files; what they define is checked together")->required();
    command->footer(exitCodes);
  };
  std::string folder;
  std::string includePrefix;
  CLI::App* const compileCommand = app.add_subcommand("compile", "Stamp the types: X.h and X.cpp for each X.toml");
  takeFiles(compileCommand);
  compileCommand->add_option("--out", folder, "Folder to write under")->required();
  compileCommand->add_option("--include-prefix", includePrefix, "Folder below it, which includes name too");
  CLI::App* const checkCommand = app.add_subcommand("check", "Say what is wrong with schema files");
  takeFiles(checkCommand);
  CLI::App* const docsCommand = app.add_subcommand("docs", "Print the attribute reference, as Markdown");
  takeFiles(docsCommand);
  std::string rowsFile;
  docsCommand->add_option("--rows", rowsFile, "Write the doc texts into it, rows of a C++ array")->type_name("FILE");

  std::string before;
  std::string after;
  CLI::App* const diffCommand = app.add_subcommand("diff", "Say what a change breaks for peers of the old file");
  diffCommand->add_option("OLD", before, "The schema file that the peers run")->required();
  diffCommand->add_option("NEW", after, "The changed schema file")->required();
  diffCommand->footer(exitCodes);

  try {
    app.parse(argc, argv);
  } catch (CLI::ParseError const& error) {
    return app.exit(error) == 0 ? fine : unusable;
  }
  if (compileCommand->parsed()) return compile(paths, folder, includePrefix);
  if (checkCommand->parsed()) return checkFiles(paths);
  if (docsCommand->parsed()) return rowsFile.empty() ? printDocs(paths) : writeDocRows(paths, rowsFile);
  return printDiff(before, after);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    int const code = run(argc, argv);
    if (std::cout.flush()) return code;
    std::cerr << "schemac: cannot write to standard output\n";
  } catch (std::exception const& error) {
    std::cerr << "schemac: " << error.what() << '\n';
  }
  return unusable;
}
