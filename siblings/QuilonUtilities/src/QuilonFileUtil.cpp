#include "QuilonUtilities/QuilonFileUtil.h"

#include <filesystem>
#include <system_error>

#include "bundled/NativePath.h"

bool QuilonFileUtil::FileExists(const std::wstring& path)
{
  std::error_code error;
  return std::filesystem::exists(NativePath(path), error);
}

bool QuilonFileUtil::IsExistingDir(const std::wstring& path, FedStatusCode& status)
{
  std::error_code                    error;
  const std::filesystem::file_status found = std::filesystem::status(NativePath(path), error);
  if (std::filesystem::is_directory(found)) {
    status = FedStatusSuccess;
    return true;
  }
  // A path that names nothing sets the error code too; only an unknown status is a question without an answer.
  status = std::filesystem::status_known(found) ? FedStatusNotFound : FedStatusSystemError;
  return false;
}
