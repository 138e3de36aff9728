// Averages three values at a node and reads the average back from the bundled database.

#include <bundled/FED_ResultDatabase.h>
#include <FEM_AvgField.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>

int main()
{
  FEM_AvgField<int, FEM_AvgUtil::AvgData<1>, 1> field;
  for (const double value : {1.0, 2.0, 6.0}) field.AddValue(5, {value});

  FED_ResultDatabase       database;
  const FED_DataDescriptor key(0, FED_OnfId(514));
  field.SaveField(database, key, FEM_AvgFieldDefs::NoLayerIndex, FEM_AvgFieldDefs::Average, true, nullptr);

  double average = 0.0;
  FED_ConstIdDataBlock(database.GetConstDataBlock(key), database.GetIdMapsPool()).GetScalar(5, average);
  return average == 3.0 ? 0 : 1;
}
