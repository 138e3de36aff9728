// The kit on the bundled working database behind the recording wrapper.

#include "RecordingFactory.h"
#include "ResultDatabaseFactory.h"

std::unique_ptr<ConformanceFactory> MakeConformanceFactory()
{
  return std::make_unique<conformance::RecordingFactory>(std::make_unique<conformance::ResultDatabaseFactory>());
}
