#include "QuilonOnfEngine/OnfGroupsFile.h"

#include <filesystem>

#include "bundled/NativePath.h"
#include "bundled/OnfFileLayer.h"
#include "file_text.h"
#include "groups_text.h"
#include "text_cursor.h"

OnfGroupsFile::OnfGroupsFile() = default;

OnfGroupsFile::OnfGroupsFile(const std::wstring& path)
{
  const std::filesystem::path file = NativePath(path);
  const FileText              text = ReadFileText(OnfFileLayer::Get(), file);
  TextCursor                  in(DisplayPath(file), {text.bytes.get(), text.size});
  groups_ = ReadGroups(in);
}

OnfGroupsFile::OnfGroupsFile(const OnfGroupsFile& other) = default;

OnfGroupsFile& OnfGroupsFile::operator=(const OnfGroupsFile& other) = default;

OnfGroupsFile::~OnfGroupsFile() = default;

const std::vector<OnfGroupsFile::Group>& OnfGroupsFile::GetGroups() const { return groups_; }
