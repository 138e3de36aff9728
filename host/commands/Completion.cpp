#include "commands/Completion.h"

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

#include <CLI/CLI.hpp>

#include "answers/Overview.h"
#include "answers/Region.h"
#include "commands/OptionWords.h"
#include "database/Listing.h"
#include "database/StepTimes.h"
#include "database/StoredDatabase.h"
#include "kinds/Component.h"
#include "kinds/KindTable.h"
#include "QuilonDbConnector/FED_Database.h"
#include "QuilonUtilities/FED_Failure.h"
#include "selection/Selection.h"
#include "text/Format.h"

namespace quilon {

namespace {

/// What the words before the last one come to.
struct Place
{
  const CLI::App*          command = nullptr;
  const CLI::Option*       option  = nullptr;  ///< whose value comes next; null: none does
  std::vector<std::string> arguments;          ///< words that have a place
  bool                     isBehindDashes = false;
};

const CLI::Option* FindOption(const CLI::App& command, std::string_view name)
{
  for (const CLI::App* level = &command; level != nullptr; level = level->get_parent())
    for (const CLI::Option* option : OptionsOf(*level))
      for (const std::string& known : NamesOf(*option))
        if (known == name) return option;
  return nullptr;
}

Place Walk(const CLI::App& app, const std::vector<std::string>& words)
{
  Place place;
  place.command = &app;
  for (std::size_t i = 0; i + 1 < words.size(); ++i) {
    const std::string& word = words[i];
    if (place.option != nullptr) {
      place.option = nullptr;
    } else if (word == "--") {
      place.isBehindDashes = true;
    } else if (word.size() > 1 && word.front() == '-' && !place.isBehindDashes) {
      const CLI::Option* option = FindOption(*place.command, word);
      if (option != nullptr && TakesValue(*option)) place.option = option;
    } else if (const auto below = CommandsOf(*place.command); !below.empty()) {
      const auto found =
          std::find_if(below.begin(), below.end(), [&](const CLI::App* known) { return known->get_name() == word; });
      if (found != below.end()) place.command = *found;
    } else {
      place.arguments.push_back(word);
    }
  }
  return place;
}

/// @return the words for what may stand at the next place: of a list that may go on, and of what comes behind it
std::vector<std::string> NextArguments(const Place& place)
{
  std::vector<std::string> next;
  std::size_t              given = place.arguments.size();
  for (const CLI::Option* option : PositionalsOf(*place.command)) {
    const auto most = static_cast<std::size_t>(option->get_expected_max());
    if (given >= most) {
      given -= most;
      continue;
    }
    next.push_back(ValueOf(*option));
    if (most == 1 || given == 0) break;
    given = 0;
  }
  return next;
}

std::size_t BehindLast(std::string_view text, std::string_view marks)
{
  const std::size_t mark = text.find_last_of(marks);
  return mark == std::string_view::npos ? 0 : mark + 1;
}

/// Gathers what goes with the word being written.
class Collector
{
public:
  explicit Collector(std::string written) : written_(std::move(written)) {}

  const std::string& GetWritten() const noexcept { return written_; }
  /// @return what is written up to the last of these marks, which every candidate begins with
  std::string GetFront(std::string_view marks) const { return written_.substr(0, BehindLast(written_, marks)); }

  void Add(const std::string& word, const std::string& meaning)
  {
    if (word.starts_with(written_) && words_.insert(word).second) result_.candidates.push_back({word, meaning});
  }
  void AddFiles() { result_.files = true; }

  /// Every candidate with this text in front.
  Completions Take(const std::string& front)
  {
    for (Completions::Candidate& candidate : result_.candidates) candidate.word.insert(0, front);
    return std::move(result_);
  }

private:
  std::string           written_;
  std::set<std::string> words_;
  Completions           result_;
};

/// Answers from the database at hand.
class DatabaseWords
{
public:
  /// @param arguments of which the first that is a database counts
  explicit DatabaseWords(const std::vector<std::string>& arguments)
  {
    for (const std::string& argument : arguments) {
      stored_ = StoredDatabase::OpenIfThere(argument);
      if (stored_ == nullptr) continue;
      name_  = argument;
      kinds_ = KindTable(stored_->Get());
      all_   = stored_->Get().GetDataDescriptors(FED_DataDescriptorPattern());
      return;
    }
  }

  /// KIND.COMPONENT,...@KEY=VALUES,...
  void AddSelections(Collector& collector) const
  {
    if (stored_ == nullptr) return;
    const std::string& written = collector.GetWritten();
    const std::size_t  at      = written.rfind('@');
    if (at == std::string::npos)
      AddKinds(written, collector);
    else
      AddKeys(written, at, collector);
  }

  void AddKinds(const std::string& written, Collector& collector) const
  {
    const std::size_t          begin = BehindLast(written, ",");
    const std::string          front = written.substr(0, begin);
    const std::string          entry = written.substr(begin);
    std::map<std::string, int> blocks;
    for (const FED_DataDescriptor& block : all_) ++blocks[kinds_.GetName(block)];
    for (const auto& [name, count] : blocks) {
      if (name.find_first_of(",@") != std::string::npos) continue;  // is asked for by its number
      const std::string word = entry.starts_with("nodal") ? name : ShortName(name);
      collector.Add(front + word, Counted(static_cast<std::size_t>(count), "block"));
    }
    AddComponents(front, entry, collector);
  }

  void AddSteps(Collector& collector) const
  {
    if (stored_ == nullptr) return;
    const std::string front = collector.GetFront(",:");
    const StepTimes   times(stored_->Get());
    int               position = 0;
    for (const FED_DataDescriptor& step : ListResultSteps(all_)) {
      std::string meaning = StepText(step);
      if (const auto time = times.TimeOf(step)) meaning += " time " + FormatNumber(*time);
      collector.Add(front + std::to_string(++position), meaning);
    }
    collector.Add(front + "last", "the last step");
  }

  void AddTimes(Collector& collector) const
  {
    if (stored_ == nullptr) return;
    const std::string front = collector.GetFront(",:");
    const StepTimes   times(stored_->Get());
    for (const FED_DataDescriptor& step : ListResultSteps(all_))
      if (const auto time = times.TimeOf(step)) collector.Add(front + FormatNumber(*time), StepText(step));
    collector.Add(front + "last", "the greatest time");
  }

  /// @param sort a prefix of ModelName::what
  void AddNames(std::string_view sort, Collector& collector) const
  {
    if (stored_ == nullptr) return;
    Region region(stored_->Get(), {}, name_);
    for (const ModelName& name : ListModelNames(stored_->Get(), region))
      if (name.what.ends_with(sort)) collector.Add(name.name, name.what);
  }

  /// Components of the kinds that an argument selects.
  void AddComponentNames(const std::vector<std::string>& arguments, Collector& collector) const
  {
    if (stored_ == nullptr) return;
    const std::string front = collector.GetFront(",");
    for (const std::string& argument : arguments)
      if (const auto onf = KindOf(argument.substr(0, argument.find_first_of("@,"))))
        for (const std::string& component : ComponentNamesOf(*onf)) collector.Add(front + component, "component");
  }

private:
  std::optional<int> KindOf(const std::string& text) const
  {
    if (text.empty()) return {};
    try {
      return kinds_.Resolve(text);
    } catch (const FED_Failure&) {
      return {};  // nothing that is a kind, yet
    }
  }

  /// @return the name without "nodal-" where that is enough
  std::string ShortName(const std::string& name) const
  {
    constexpr std::string_view kNodal = "nodal-";
    if (!name.starts_with(kNodal)) return name;
    const std::string shortName = name.substr(kNodal.size());
    return KindOf(shortName) == kinds_.FindByName(name) ? shortName : name;
  }

  void AddComponents(const std::string& front, const std::string& entry, Collector& collector) const
  {
    const std::size_t dot  = entry.rfind('.');
    const std::string kind = entry.substr(0, dot);
    const auto        onf  = KindOf(kind);
    if (!onf) return;
    if (dot != std::string::npos)
      for (const std::string& component : ComponentNamesOf(*onf))
        collector.Add(front + kind + '.' + component, "component of " + kinds_.GetName(*onf));
    else if (kind == kinds_.GetName(*onf) || kind == ShortName(kinds_.GetName(*onf)))
      collector.Add(front + kind + '@', "some of its blocks");
  }

  void AddKeys(const std::string& written, std::size_t at, Collector& collector) const
  {
    const std::size_t                     begin  = std::max(BehindLast(written, ","), at + 1);
    const std::string                     entry  = written.substr(begin);
    const std::size_t                     equals = entry.find('=');
    const std::vector<FED_DataDescriptor> blocks = BlocksOf(written.substr(0, at));
    for (const IndexKey& key : GetIndexKeys()) {
      std::set<int> values;
      for (const FED_DataDescriptor& block : blocks)
        if (block.IsSet(key.index)) values.insert(block.GetInteger(key.index));
      if (values.empty()) continue;
      if (equals == std::string::npos) {
        collector.Add(written.substr(0, begin) + key.key + '=', key.name);
      } else if (const std::string word = entry.substr(0, equals); word == key.key || word == key.name) {
        const std::string front = written.substr(0, begin) + word + '=';
        for (const int value : values) collector.Add(front + std::to_string(value), key.name);
        for (const char* value : {"first", "last"}) collector.Add(front + value, key.name);
      }
    }
  }

  /// @return the blocks of these kinds; all of them where the text names none
  std::vector<FED_DataDescriptor> BlocksOf(const std::string& kinds) const
  {
    try {
      return kinds.empty() ? all_ : Selection(kinds, kinds_).Apply(all_);
    } catch (const FED_Failure&) {
      return all_;
    }
  }

  std::unique_ptr<StoredDatabase> stored_;
  std::string                     name_;
  KindTable                       kinds_;
  std::vector<FED_DataDescriptor> all_;
};

/// @return the alternatives of a word for a value, "mtx|yale"
std::vector<std::string> Alternatives(const std::string& value)
{
  std::vector<std::string> pieces;
  std::string_view         rest = value;
  for (bool isMore = true; isMore;) {
    const std::size_t bar = rest.find('|');
    pieces.emplace_back(rest.substr(0, bar));
    isMore = bar != std::string_view::npos;
    rest.remove_prefix(isMore ? bar + 1 : rest.size());
  }
  return pieces;
}

bool IsWord(const std::string& piece)
{
  return piece.find_first_not_of("abcdefghijklmnopqrstuvwxyz-") == std::string::npos;
}

void AddAxes(const DatabaseWords& database, Collector& collector)
{
  for (const char* axes : {"global", "principal", "rectangular:", "cylindrical:"}) collector.Add(axes, "axes");
  database.AddNames("orientation", collector);
}

/// Adds what an option takes.
void AddValues(const CLI::Option& option, const std::vector<std::string>& arguments, Collector& collector)
{
  static const std::set<std::string> kPaths = {"DECK", "FILE", "FOLDER", "GROUPS", "LOG", "NEW", "OUT", "PATH"};
  const std::string                  value  = ValueOf(option);
  const std::string                  name   = NamesOf(option).back();
  std::optional<DatabaseWords>       opened;  // only where words of the database are asked for
  const auto                         database = [&]() -> const DatabaseWords& {
    if (!opened) opened.emplace(arguments);
    return *opened;
  };
  for (const std::string& piece : Alternatives(value)) {
    if (kPaths.contains(piece))
      collector.AddFiles();
    else if (IsWord(piece))
      collector.Add(piece, option.get_description());
    else if (piece == "SELECTION")
      database().AddSelections(collector);
    else if (piece == "KIND,...")
      database().AddKinds(collector.GetWritten(), collector);
    else if (piece == "STEP" || piece == "STEPS")
      database().AddSteps(collector);
    else if (piece == "TIME" || piece == "TIMES")
      database().AddTimes(collector);
    else if (piece == "AXES")
      AddAxes(database(), collector);
    else if (name == "--set" || piece == "SET,...")
      database().AddNames("-set", collector);
    else if (name == "--material")
      database().AddNames("material", collector);
    else if (name == "--component")
      database().AddComponentNames(arguments, collector);
  }
}

void AddOptions(const CLI::App& command, Collector& collector)
{
  for (const CLI::App* level = &command; level != nullptr; level = level->get_parent())
    for (const CLI::Option* option : OptionsOf(*level))
      if (level == &command || !option->check_name("--version"))
        for (const std::string& name : NamesOf(*option))
          if (name.starts_with("--")) collector.Add(name, option->get_description());
}

void AddArguments(const Place& place, Collector& collector)
{
  for (const std::string& argument : NextArguments(place)) {
    const bool isSelection = argument.find("SELECTION") != std::string::npos;
    if (!isSelection || argument != "SELECTION") collector.AddFiles();
    if (isSelection) DatabaseWords(place.arguments).AddSelections(collector);
  }
}

}  // namespace

Completions Complete(const CLI::App& app, const std::vector<std::string>& words)
{
  std::vector<std::string> all = words;
  if (all.empty()) all.emplace_back();
  const bool isHelp = all.size() > 1 && all.front() == "help";
  if (isHelp) all.erase(all.begin());
  const Place       place   = Walk(app, all);
  const std::string written = all.back();

  if (place.option == nullptr && !place.isBehindDashes && written.starts_with("--")) {
    const std::size_t equals = written.find('=');
    if (equals != std::string::npos) {
      Collector collector(written.substr(equals + 1));
      if (const CLI::Option* option = FindOption(*place.command, written.substr(0, equals)))
        AddValues(*option, place.arguments, collector);
      return collector.Take(written.substr(0, equals + 1));
    }
  }
  Collector collector(written);
  if (place.option != nullptr) {
    AddValues(*place.option, place.arguments, collector);
  } else if (written.starts_with('-') && !place.isBehindDashes) {
    AddOptions(*place.command, collector);
  } else if (const auto below = CommandsOf(*place.command); !below.empty()) {
    for (const CLI::App* command : below) collector.Add(command->get_name(), command->get_description());
    if (place.command == &app && !isHelp) collector.Add("help", "Explain a command");
  } else if (!isHelp) {
    AddArguments(place, collector);
  }
  return collector.Take("");
}

std::string ToText(const Completions& completions)
{
  std::string text;
  for (const auto& [word, meaning] : completions.candidates) {
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; };
    if (std::any_of(word.begin(), word.end(), isControl)) continue;
    std::string shown = meaning;
    std::replace_if(shown.begin(), shown.end(), isControl, ' ');
    text += word + (shown.empty() ? "" : '\t' + shown) + '\n';
  }
  return text + (completions.files ? ":files\n" : "");
}

}  // namespace quilon
