#include "commands/ManPage.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

#include "commands/OptionWords.h"
#include "commands/SharedCommands.h"
#include "quilon_version.h"
#include "terminal/HelpText.h"
#include "text/Case.h"
#include "text/OutputFile.h"

namespace quilon {

namespace {

/// Columns that a terminal of 80 leaves to text.
constexpr std::size_t kWidthInside = 72;

/// @return the text as man(7) shows it letter by letter
std::string Escaped(std::string_view text)
{
  std::string escaped;
  for (const char c : text) {
    if (c == '\\')
      escaped += "\\e";
    else if (c == '-')
      escaped += "\\-";
    else if (c == '\'')
      escaped += "\\(aq";
    else if (c == '^')
      escaped += "\\(ha";
    else if (c == '~')
      escaped += "\\(ti";
    else if (c == '`')
      escaped += "\\(ga";
    else
      escaped += c;
  }
  return escaped;
}

/// @return a line of text: one that begins with a dot is none of the language
std::string Line(std::string_view text) { return (text.starts_with('.') ? "\\&" : "") + Escaped(text) + '\n'; }

std::string Bold(std::string_view text) { return "\\fB" + Escaped(text) + "\\fR"; }
std::string Italic(std::string_view text) { return "\\fI" + Escaped(text) + "\\fR"; }

std::string Section(std::string_view title) { return ".SH " + std::string(title) + '\n'; }

std::string Synopsis(const CLI::App& command)
{
  std::string text = Section("SYNOPSIS") + Bold(WordsOf(command)) + " [" + Italic("OPTIONS") + ']';
  if (!CommandsOf(command).empty()) return text + ' ' + Italic("COMMAND") + " ...\n";
  for (const CLI::Option* option : PositionalsOf(command)) {
    const bool  isMany = option->get_expected_max() > 1 && ValueOf(*option).find("...") == std::string::npos;
    std::string word   = Italic(ValueOf(*option)) + (isMany ? "..." : "");
    text += ' ' + (option->get_required() ? word : '[' + word + ']');
  }
  return text + '\n';
}

/// @return an option, its value and what it means
std::string Entry(const CLI::Option& option)
{
  std::string head;
  for (const std::string& name : NamesOf(option)) {
    head += head.empty() ? "" : ", ";
    head += option.get_positional() ? Italic(name) : Bold(name);
  }
  if (!option.get_positional() && TakesValue(option)) head += ' ' + Italic(ValueOf(option));
  std::string meaning = option.get_description();
  std::replace(meaning.begin(), meaning.end(), '\n', ' ');
  return ".TP\n" + head + '\n' + Line(meaning);
}

std::string Entries(std::string_view title, const std::vector<const CLI::Option*>& options)
{
  std::string text;
  for (const CLI::Option* option : options) text += Entry(*option);
  return text.empty() ? text : Section(title) + text;
}

std::string Commands(const CLI::App& command)
{
  std::string text;
  for (const CLI::App* below : CommandsOf(command))
    text += ".TP\n" + Bold(below->get_name()) + '\n' + Line(below->get_description());
  return text.empty() ? text : Section("COMMANDS") + text;
}

/// What stands below the options of the help: lines without an indent are paragraphs, others are shown as they are.
class Footer
{
public:
  explicit Footer(std::string_view text)
  {
    while (!text.empty()) {
      const std::size_t end = std::min(text.find('\n'), text.size());
      Add(text.substr(0, end));
      text.remove_prefix(std::min(end + 1, text.size()));
    }
    EndVerbatim();
  }

  std::string description;
  std::string examples;

private:
  void Add(std::string_view line)
  {
    if (line == "Examples:") {
      EndVerbatim();
      current_ = &examples;
    } else if (line.empty()) {
      EndVerbatim();
      isNew_ = true;
    } else if (line.starts_with(' ')) {
      if (!isVerbatim_) *current_ += ".PP\n.EX\n";
      isVerbatim_ = true;
      *current_ += Line(line);
    } else {
      EndVerbatim();
      // What the help begins a line with is a paragraph of its own here.
      if (isNew_ || line.starts_with("--")) *current_ += ".PP\n";
      isNew_ = false;
      *current_ += Line(line);
    }
  }

  void EndVerbatim()
  {
    if (isVerbatim_) *current_ += ".EE\n";
    isNew_      = isNew_ || isVerbatim_;
    isVerbatim_ = false;
  }

  std::string* current_    = &description;
  bool         isVerbatim_ = false;
  bool         isNew_      = false;
};

/// @return the page of the program that runs commands of `program` in several processes
std::string ManPageOfProcesses(const CLI::App& program)
{
  std::string page = ".TH QUILON\\-MPI 1 \"\" \"quilon " + std::string(kQuilonVersion) + "\" \"quilon\"\n";
  page += Section("NAME") + "quilon\\-mpi \\- quilon in several processes that share its work\n";
  page += Section("SYNOPSIS") + Bold("mpirun -n") + ' ' + Italic("N") + ' ' + Bold("quilon-mpi") + ' ' +
          Italic("COMMAND") + " ...\n";
  page +=
      Section("DESCRIPTION") +
      Line("Runs a command of quilon in N processes of an MPI program, with the options of quilon but for --jobs.") +
      Line("Output and files are those of one process. Every process sees the paths of the command line. A failure") +
      Line("in another process than the first is told with its number, and leaves what was there as it was.");
  std::string commands, pages = Bold("quilon") + "(1)";
  for (const CLI::App* command : CommandsOf(program)) {
    if (std::find(kSharedCommands.begin(), kSharedCommands.end(), command->get_name()) == kSharedCommands.end())
      continue;
    commands += ".TP\n" + Bold(command->get_name()) + '\n' + Line(command->get_description());
    pages += ",\n" + Bold(ManPageName(*command)) + "(1)";
  }
  page += Section("COMMANDS") + commands;
  page += Section("EXIT STATUS") + "That of quilon; mpirun tells of any other than 0 in words of its own.\n";
  page += Section("EXAMPLES") + ".PP\n.EX\n" + Line("  mpirun -n 4 quilon-mpi import job.inp job.frd -o job.fed") +
          Line("  mpirun -n 4 quilon-mpi max job.fed stress.mises") + ".EE\n";
  return page + Section("SEE ALSO") + pages + '\n';
}

std::string SeeAlso(const CLI::App& command)
{
  std::vector<const CLI::App*> pages = CommandsOf(command);
  if (command.get_parent() != nullptr) pages.insert(pages.begin(), command.get_parent());
  std::string text;
  for (const CLI::App* page : pages) text += (text.empty() ? "" : ",\n") + Bold(ManPageName(*page)) + "(1)";
  return Section("SEE ALSO") + text + '\n';
}

}  // namespace

std::string ManPageName(const CLI::App& command)
{
  std::string name = WordsOf(command);
  std::replace(name.begin(), name.end(), ' ', '-');
  return name;
}

std::string ManPage(const CLI::App& command)
{
  const std::string name    = ManPageName(command);
  std::string       summary = command.get_description();
  if (summary.ends_with('.')) summary.pop_back();
  summary.front() = ToLower(summary.front());
  const Footer footer(FitHelp(command.get_footer(), kWidthInside));

  std::string page = ".TH " + Escaped(UpperCase(name)) + " 1 \"\" \"quilon " + kQuilonVersion + "\" \"quilon\"\n";
  page += Section("NAME") + Escaped(name) + " \\- " + Escaped(summary) + '\n';
  page += Synopsis(command);
  if (!footer.description.empty()) page += Section("DESCRIPTION") + footer.description;
  page += Commands(command);
  page += Entries("ARGUMENTS", PositionalsOf(command));
  page += Entries("OPTIONS", OptionsOf(command));
  if (command.get_parent() != nullptr)
    page +=
        ".PP\n\\fB\\-v\\fR, \\fB\\-q\\fR, \\fB\\-\\-no\\-color\\fR and \\fB\\-\\-memory\\fR go with every command, "
        "see\n"
        ".BR quilon (1).\n";
  page += Section("EXIT STATUS") +
          "0 success, 1 different: what was compared differs, or what was checked does not hold, 2 trouble, 130\n"
          "interrupted.\n";
  if (!footer.examples.empty()) page += Section("EXAMPLES") + footer.examples;
  return page + SeeAlso(command);
}

void WriteManPages(const CLI::App& command, const std::filesystem::path& folder)
{
  std::filesystem::create_directories(folder);
  WriteFile(folder / (ManPageName(command) + ".1"), ManPage(command));
  if (command.get_parent() == nullptr) WriteFile(folder / "quilon-mpi.1", ManPageOfProcesses(command));
  for (const CLI::App* below : CommandsOf(command)) WriteManPages(*below, folder);
}

}  // namespace quilon
