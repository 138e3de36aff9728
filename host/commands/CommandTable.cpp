#include "commands/Command.h"

namespace quilon {

const std::vector<Command>& GetCommands()
{
  static const std::vector<Command> kCommands = {
      {"import", "Read solver results into a database", DefineImport},
      {"info", "Tell what a database is, at a glance", DefineInfo},
      {"ls", "List the blocks of a database", DefineLs},
      {"show", "Show the records of blocks", DefineShow},
      {"max", "Find the worst values, where and when", DefineMax},
      {"history", "Show values over time", DefineHistory},
      {"sets", "List sets, materials and groups by name", DefineSets},
      {"plot", "Draw a picture of the model with a result", DefinePlot},
      {"report", "Write results as a page for a browser", DefineReport},
      {"serve", "Serve that page to a browser on this machine", DefineServe},
      {"size", "Tell what a database holds, in bytes", DefineSize},
      {"prune", "Take blocks out of a database", DefinePrune},
      {"diff", "Compare two databases", DefineDiff},
      {"derive", "Add derived results to a database", DefineDerive},
      {"envelope", "Least and greatest values over result steps", DefineEnvelope},
      {"combine", "Add up load cases with factors", DefineCombine},
      {"path", "Values along a line, and stresses through a wall", DefinePath},
      {"forces", "Forces at element nodes, their balance, free bodies", DefineForces},
      {"export", "Write results for other tools", DefineExport},
      {"matrix", "Import, export and show sparse matrices", DefineMatrix},
      {"check", "Say whether a database is whole", DefineCheck},
      {"salvage", "Save what is whole of a damaged database", DefineSalvage},
      {"compact", "Give back the bytes of deleted records", DefineCompact},
      {"index", "Order records by id, for histories of large databases", DefineIndex},
      {"join", "Make one database of those that many processes wrote", DefineJoin},
      {"split", "Write a database as several", DefineSplit},
      {"to-onf", "Write a database as ONF text", DefineToOnf},
      {"from-onf", "Take ONF text into a database", DefineFromOnf},
      {"deck", "Check, list and expand decks of the solver", DefineDeck},
  };
  return kCommands;
}

}  // namespace quilon
