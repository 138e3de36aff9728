#include "bundled/NativePath.h"

#ifndef _WIN32
#  include "QuilonUtilities/QuilonStringUtil.h"
#endif

std::filesystem::path NativePath(const std::wstring& path)
{
#ifdef _WIN32
  return std::filesystem::path(path);
#else
  return std::filesystem::path(QuilonStringUtil::wide_to_utf8(path.c_str()));
#endif
}
