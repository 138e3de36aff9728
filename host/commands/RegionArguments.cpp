#include "commands/RegionArguments.h"

#include <string>

#include <CLI/CLI.hpp>

#include "terminal/Console.h"
#include "text/NumberList.h"

namespace quilon {

void AddPlaceOptions(CLI::App& app, RegionOptions& options)
{
  app.add_option("--material", options.materials, "Only this material, by name or number; again: either")
      ->type_name("NAME")
      ->expected(1)
      ->take_all();
  app.add_option_function<std::string>(
         "--box",
         [&options](const std::string& text) {
           ParseNumbers("--box", text, options.box.emplace(), "six numbers X0,Y0,Z0,X1,Y1,Z1: two corners");
         },
         "Only nodes, and centres of elements, between two corners")
      ->type_name("X0,Y0,Z0,X1,Y1,Z1");
  app.add_option_function<std::string>(
         "--near",
         [&options](const std::string& text) {
           ParseNumbers("--near", text, options.near.emplace(), "three numbers X,Y,Z");
         },
         "Only the node nearest to a point, and elements that have it")
      ->type_name("X,Y,Z");
}

void AddRegionOptions(CLI::App& app, RegionOptions& options)
{
  app.add_option("--ids", options.ids, "Only these records: 1,5-9 or first, last")->type_name("IDS");
  app.add_option("--set", options.sets, "Only this set; again: either; of elements: their nodes, too")
      ->type_name("NAME")
      ->expected(1)
      ->take_all();
  AddPlaceOptions(app, options);
}

void TellNotes(const Region& region, Console& console)
{
  for (const std::string& note : region.GetNotes()) console.Note(note);
}

}  // namespace quilon
