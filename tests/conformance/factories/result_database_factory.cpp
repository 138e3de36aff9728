// The kit on the bundled working database, in memory.

#include "ResultDatabaseFactory.h"

std::unique_ptr<ConformanceFactory> MakeConformanceFactory()
{
  return std::make_unique<conformance::ResultDatabaseFactory>();
}
