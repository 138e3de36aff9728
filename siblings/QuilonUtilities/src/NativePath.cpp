#include "bundled/NativePath.h"

#ifndef _WIN32
#  include <system_error>

#  include "QuilonUtilities/FED_Failure.h"
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

std::wstring WidePath(const std::filesystem::path& path)
{
#ifdef _WIN32
  return path.wstring();
#else
  // The conversion to 32-bit characters reads UTF-8 always, the one to wide characters as the locale says.
  try {
    const std::u32string text = path.u32string();
    return std::wstring(text.begin(), text.end());
  } catch (const std::system_error&) {
    throw FED_Failure(path.string() + ": the name is no UTF-8", "|%P|QuilonUtilities|NativePath");
  }
#endif
}
