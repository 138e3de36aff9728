#include "Chosen.h"

#include "kinds/KindTable.h"
#include "text/Failure.h"

namespace quilon::python {

Chosen Choose(Store& store, const std::string& text, const std::string& steps)
{
  Reading& reading = store.RequireReading();
  Chosen   chosen{reading.Get(), reading.GetKinds(), Selection(), {}};
  if (!text.empty()) chosen.selection = Selection(text, chosen.kinds);
  if (!steps.empty()) chosen.selection.SetSteps(steps);
  chosen.blocks = chosen.selection.Apply(chosen.database.GetDataDescriptors(FED_DataDescriptorPattern()));
  if (chosen.blocks.empty()) Fail(store.GetName() + ": no block matches '" + text + "'");
  return chosen;
}

}  // namespace quilon::python
