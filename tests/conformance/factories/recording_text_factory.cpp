// The kit on the bundled text database behind the recording wrapper.

#include "RecordingFactory.h"
#include "TextDatabaseFactory.h"

std::unique_ptr<ConformanceFactory> MakeConformanceFactory()
{
  return std::make_unique<conformance::RecordingFactory>(std::make_unique<conformance::TextDatabaseFactory>());
}
