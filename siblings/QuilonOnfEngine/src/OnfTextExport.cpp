#include "bundled/OnfTextExport.h"

#include <string>
#include <string_view>
#include <vector>

#include <bundled/OnfKinds.h>

#include "block_file.h"
#include "bundled/FED_ColumnDataBlock.h"
#include "bundled/OnfFileLayer.h"
#include "QuilonDbConnector/FED_Database.h"
#include "text_folder.h"

namespace {

void AddName(const FED_Database& database, int onf, UserKindNames& names)
{
  const std::string name = database.GetUserKindName(static_cast<FED_OnfId>(onf));
  if (!name.empty()) names[onf] = name;
}

/// Names of the kinds that a block refers to: its own, and that of a history's scalar, which may stand nowhere else.
void AddNames(const OnfTextExport::Block& block, UserKindNames& names)
{
  const int onf = block.descriptor.values[FED_DataDescriptor::OnfId];
  AddName(*block.database, onf, names);
  if (onf == FED_OnfId_ScalarHistory && block.descriptor.IsSet(OnfIndex::Quantity))
    AddName(*block.database, block.descriptor.GetInteger(OnfIndex::Quantity), names);
}

}  // namespace

struct OnfTextExport::BlockTexts::State
{
  explicit State(const FED_Database& ofBlocks)
      : database(ofBlocks), out([this](std::string_view text) { (*append)(text); })
  {}

  const FED_Database&        database;
  const FED_ColumnDataBlock* block = nullptr;
  std::vector<RecordPlace>   places;  // of the block
  const TextSink*            append = nullptr;
  TextOutput                 out;
};

OnfTextExport::BlockTexts::BlockTexts(const FED_Database& database) : state_(std::make_unique<State>(database)) {}

OnfTextExport::BlockTexts::~BlockTexts() = default;

void OnfTextExport::BlockTexts::Write(const FED_DataDescriptor& descriptor, std::size_t first, std::size_t count,
                                      const TextSink& append)
{
  const auto& block = dynamic_cast<const FED_ColumnDataBlock&>(state_->database.GetConstDataBlock(descriptor));
  if (state_->block != &block) {
    state_->places = SortedRecords(block, state_->database.GetIdMapsPool());
    state_->block  = &block;
  }
  state_->append = &append;
  state_->out.Clear();
  WriteRecords(block, state_->places, first, count, state_->out);
  state_->out.Flush();
}

class OnfTextExport::Writer::Implementation : public TextFolderWriter
{
public:
  using TextFolderWriter::TextFolderWriter;
};

OnfTextExport::Writer::Writer(const std::filesystem::path& folder, FED_FileLayer* files)
    : implementation_(std::make_unique<Implementation>(folder, files != nullptr ? *files : OnfFileLayer::Get()))
{}

OnfTextExport::Writer::~Writer() = default;

void OnfTextExport::Writer::Publish(const std::vector<Block>& blocks, const std::function<void(std::size_t)>& onBlock,
                                    Others others)
{
  PublishTexts(blocks, {}, onBlock, others);
}

void OnfTextExport::Writer::PublishTexts(const std::vector<Block>&                                blocks,
                                         const std::function<void(std::size_t, const TextSink&)>& text,
                                         const std::function<void(std::size_t)>& onBlock, Others others)
{
  std::vector<NewBlock> newBlocks;
  UserKindNames         names;
  for (const Block& block : blocks) {
    if (block.database == nullptr) {
      newBlocks.push_back({block.descriptor, {}});
      continue;
    }
    AddNames(block, names);
    newBlocks.push_back({block.descriptor, [&block, position = newBlocks.size(), &onBlock, &text](TextOutput& out) {
                           if (onBlock) onBlock(position);
                           if (text) return text(position, [&out](std::string_view piece) { out.Append(piece); });
                           const FED_DataBlock& source = block.database->GetConstDataBlock(block.descriptor);
                           WriteBlock(dynamic_cast<const FED_ColumnDataBlock&>(source), block.database->GetIdMapsPool(),
                                      out);
                         }});
  }
  implementation_->Publish(newBlocks, names, others == OthersGo ? OtherBlocks::Go : OtherBlocks::Stay);
}

void OnfTextExport::Publish(const std::filesystem::path& folder, const std::vector<Block>& blocks,
                            const std::function<void(std::size_t)>& onBlock)
{
  Writer(folder).Publish(blocks, onBlock);
}
