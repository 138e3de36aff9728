#include "QuilonUtilities/getline_dosunix.h"

std::istream& getline_dosunix(std::istream& in, std::string& line)
{
  // A failed read may leave the caller's string as it was; that string is no line of the stream.
  if (std::getline(in, line) && !line.empty() && line.back() == '\r') line.pop_back();
  return in;
}
