// Averages element stresses at the nodes they share, adds principal values, and publishes both as text:
//
//     average_at_nodes FOLDER
//
// Two elements meet at nodes 2 and 3 and disagree there; the averages and what is derived from them go to FOLDER.

#include <cstdio>
#include <filesystem>

#include <FEM_AvgField.h>
#include <FEM_ResultUtil.h>
#include <QuilonOnfEngine/OnfResultRequestFile.h>
#include <QuilonOnfEngine/QuilonOnfTxtDatabase.h>
#include <QuilonUtilities/FED_Failure.h>

namespace {

constexpr int kNodalStress          = 521;  // tensors
constexpr int kNodalStressPrincipal = 520;  // derived from them

// Asks for principal stresses without a request file.
class PrincipalStresses : public OnfResultRequestFile
{
public:
  bool typeIsRequested(int onf) const override { return onf == kNodalStressPrincipal; }
};

struct Corner
{
  int    node;
  double stress[6];  // xx, yy, zz, xy, yz, zx
};

const Corner kCorners[] = {
    {1, {90.0, 0.0, 0.0, 5.0, 0.0, 0.0}},  {2, {100.0, 0.0, 0.0, 5.0, 0.0, 0.0}}, {3, {110.0, 0.0, 0.0, 5.0, 0.0, 0.0}},
    {2, {120.0, 8.0, 0.0, 7.0, 0.0, 0.0}}, {3, {130.0, 8.0, 0.0, 7.0, 0.0, 0.0}}, {4, {140.0, 8.0, 0.0, 7.0, 0.0, 0.0}},
};

void Run(const std::filesystem::path& folder)
{
  FEM_AvgField<int, FEM_AvgUtil::AvgData<6>, 6> stress;
  for (const Corner& corner : kCorners) stress.AddValue(corner.node, corner.stress);

  QuilonOnfTxtDatabase database(folder.wstring());
  database.InitDb(FED_DatabaseDefs::WriteAccess, 1024, L"", nullptr);

  FED_DataDescriptor key(0, FED_OnfId(kNodalStress));
  key.SetInteger(FED_DataDescriptor::LoadCase, 1);
  key.SetInteger(FED_DataDescriptor::Substep, 1);
  stress.SaveField(database, key, FEM_AvgFieldDefs::NoLayerIndex, FEM_AvgFieldDefs::Average, true, nullptr);

  PrincipalStresses requests;
  FEM_ResultUtil::CalculateAdditionalResults(database, requests, 0, 0);
  database.ReleaseDb(false);
}

}  // namespace

int main(int argc, char** argv)
{
  if (argc != 2) {
    std::fprintf(stderr, "usage: average_at_nodes FOLDER\n");
    return 2;
  }
  try {
    Run(argv[1]);
    return 0;
  } catch (const FED_Failure& failure) {
    std::fprintf(stderr, "average_at_nodes: error: %s\n", failure.what());
    return 2;
  }
}
