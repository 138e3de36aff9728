// The kit on the bundled text database.

#include "TextDatabaseFactory.h"

std::unique_ptr<ConformanceFactory> MakeConformanceFactory()
{
  return std::make_unique<conformance::TextDatabaseFactory>();
}
