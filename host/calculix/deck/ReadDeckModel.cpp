#include "calculix/deck/ReadDeckModel.h"

#include "calculix/deck/DeckModelReader.h"

namespace quilon::calculix {
namespace {

DeckModel Read(const std::filesystem::path& deck, const DeckOptions& options, std::vector<DeckMessage>* messages)
{
  DeckModel       model;
  DeckModelReader reader(deck, options, model, messages);
  reader.ReadModel();
  reader.CheckModel();
  reader.ConvertModel();
  return model;
}

}  // namespace

DeckModel ReadDeckModel(const std::filesystem::path& deck, const DeckOptions& options)
{
  return Read(deck, options, nullptr);
}

DeckModel ReadDeckModel(const std::filesystem::path& deck, const DeckOptions& options,
                        std::vector<DeckMessage>& messages)
{
  return Read(deck, options, &messages);
}

}  // namespace quilon::calculix
