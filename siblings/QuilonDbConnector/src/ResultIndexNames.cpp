#include "ResultIndexNames.h"

#include "QuilonDbConnector/FED_DataDescriptor.h"
#include "QuilonUtilities/FED_Failure.h"

std::string GetResultIndexName(int index)
{
  switch (index) {
    case FED_DataDescriptor::Iteration:
      return "iteration";
    case FED_DataDescriptor::OnfId:
      return "onf";
    case FED_DataDescriptor::LoadCase:
      return "load-case";
    case FED_DataDescriptor::Substep:
      return "substep";
    case FED_DataDescriptor::Analysis:
      return "analysis";
    case FED_DataDescriptor::Increment:
      return "increment";
    case FED_DataDescriptor::Layer:
      return "layer";
    default:
      return "index-" + std::to_string(index);
  }
}

void RequireResultIndex(int index, const char* caller)
{
  if (index >= 0 && index < FED_DataDescriptor::kNumIndices) return;
  throw FED_Failure(std::string(caller) + ": result index is " + std::to_string(index) + ", expected 0 to 13",
                    "|%P|QuilonDbConnector|ResultIndexNames");
}
