// The kit on the bundled working database, on disk.

#include "DiskDatabaseFactory.h"

std::unique_ptr<ConformanceFactory> MakeConformanceFactory()
{
  return std::make_unique<conformance::DiskDatabaseFactory>();
}
