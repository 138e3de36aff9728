#include "QuilonUtilities/QuilonFileNameUtil.h"

const wchar_t* QuilonFileNameUtil::path_find_ext(const wchar_t* path)
{
  const wchar_t* dot = nullptr;
  const wchar_t* end = path;
  for (; *end != L'\0'; ++end) {
    if (*end == L'.') dot = end;
    if (*end == L'/' || *end == L'\\') dot = nullptr;
  }
  return dot != nullptr ? dot : end;
}
