// The solver judges the matrices that we read: they give its displacements, its eigenvalues and its mass.

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <Eigen/Dense>

#include <bundled/FED_ResultDatabase.h>
#include <FED_YaleMatrixStorage.h>

#include "../import/ImportTestSupport.h"
#include "import/ResultImport.h"
#include "LogCapture.h"
#include "matrix/MatrixEntries.h"
#include "matrix/MatrixFile.h"
#include "matrix/MatrixMarket.h"
#include "matrix/YaleText.h"
#include "MatrixSupport.h"
#include "TempFolder.h"

namespace quilon {
namespace {

using namespace quilon_test;
using matrix::Dof;
using matrix::MatrixFile;

MatrixFile Read(const std::string& name) { return matrix::ReadMatrixFile(Fixture("e_matrix/" + name), {}, {}); }

/// By way of a database.
Eigen::MatrixXd Dense(const FED_YaleMatrix& read)
{
  FED_ResultDatabase       database;
  const FED_DataDescriptor descriptor(0, static_cast<FED_OnfId>(593));
  FED_YaleMatrixStorage::Store(read, database, descriptor, 1);
  FED_YaleMatrix restored;
  EXPECT_TRUE(FED_YaleMatrixStorage::Restore(database, descriptor, 1, restored));
  EXPECT_TRUE(SameBits(read, restored));

  const matrix::RowView rows(restored, "restored");
  Eigen::MatrixXd       dense = Eigen::MatrixXd::Zero(rows.NumRows(), rows.NumColumns());
  for (const matrix::Entry& entry : rows.List()) dense(entry.row, entry.column) = entry.value;
  return dense;
}

std::map<int, std::vector<double>> PrintedDisplacements()
{
  LogCapture         log;
  FED_ResultDatabase database;
  ImportResults({Fixture("e_matrix/e_static.dat")}, database, {});
  return ValuesOf(database, Key(*StepsOf(database, 510).begin(), 510), 3);
}

std::vector<double> PrintedEigenvalues()
{
  LogCapture         log;
  FED_ResultDatabase database;
  ImportResults({Fixture("f_modal/f_modal.frd"), Fixture("f_modal/f_modal.dat")}, database, {});
  const FED_DataBlock& block = database.GetConstDataBlock(ScalarKey(1, 2, 502));
  std::vector<double>  values;
  for (std::size_t mode = 1; mode <= block.GetSize(); ++mode) values.push_back(block.GetScalarAt(mode));
  return values;
}

}  // namespace

TEST(MatrixOracle, StiffnessGivesTheSolversDisplacements)
{
  const MatrixFile      stiffness = Read("e_matrix.sti");
  const Eigen::MatrixXd k         = Dense(stiffness.matrix);
  // The *CLOAD cards of the static twin.
  const std::map<Dof, double> loads = {{{11, 3}, -1},    {{19, 3}, -1.25}, {{27, 3}, -1.5},
                                       {{35, 3}, -1.75}, {{43, 3}, -2},    {{51, 3}, -2.25}};
  Eigen::VectorXd             f     = Eigen::VectorXd::Zero(k.rows());
  for (std::size_t row = 0; row < stiffness.dofs.size(); ++row)
    if (const auto load = loads.find(stiffness.dofs[row]); load != loads.end())
      f(static_cast<Eigen::Index>(row)) = load->second;
  const Eigen::VectorXd u = k.ldlt().solve(f);

  double                                   largest   = 0.0;
  double                                   deviation = 0.0;
  const std::map<int, std::vector<double>> printed   = PrintedDisplacements();
  for (std::size_t row = 0; row < stiffness.dofs.size(); ++row) {
    const Dof&   dof   = stiffness.dofs[row];
    const double their = printed.at(dof.node)[static_cast<std::size_t>(dof.direction - 1)];
    largest            = std::max(largest, std::abs(their));
    deviation          = std::max(deviation, std::abs(u(static_cast<Eigen::Index>(row)) - their));
  }
  ASSERT_GT(largest, 0.0);
  RecordProperty("deviation", std::to_string(deviation / largest * 1e9) + "e-9");
  EXPECT_LE(deviation, 1e-6 * largest) << "seven digits are printed";
}

TEST(MatrixOracle, StiffnessAndMassGiveTheSolversEigenvalues)
{
  const Eigen::MatrixXd                                           k = Dense(Read("e_matrix.sti").matrix);
  const Eigen::MatrixXd                                           m = Dense(Read("e_matrix.mas").matrix);
  const Eigen::GeneralizedSelfAdjointEigenSolver<Eigen::MatrixXd> solver(k, m, Eigen::EigenvaluesOnly);
  ASSERT_EQ(solver.info(), Eigen::Success);

  const std::vector<double> printed = PrintedEigenvalues();
  ASSERT_EQ(printed.size(), 6u);
  double deviation = 0.0;
  for (std::size_t mode = 0; mode < printed.size(); ++mode) {
    const double ours = solver.eigenvalues()(static_cast<Eigen::Index>(mode));
    deviation         = std::max(deviation, std::abs(ours - printed[mode]) / printed[mode]);
  }
  RecordProperty("deviation", std::to_string(deviation * 1e9) + "e-9");
  EXPECT_LE(deviation, 1e-6) << "seven digits are printed";
}

TEST(MatrixOracle, MassSumsToThePrintedEffectiveMass)
{
  const MatrixFile      mass = Read("e_matrix.mas");
  const Eigen::MatrixXd m    = Dense(mass.matrix);
  double                sum  = 0.0;
  for (std::size_t row = 0; row < mass.dofs.size(); ++row)
    for (std::size_t column = 0; column < mass.dofs.size(); ++column)
      if (mass.dofs[row].direction == 1 && mass.dofs[column].direction == 1)
        sum += m(static_cast<Eigen::Index>(row), static_cast<Eigen::Index>(column));
  // Of the last line of f_modal.dat, TOTAL EFFECTIVE MASS in x.
  constexpr double kPrinted = 0.1327619E-04;
  EXPECT_NEAR(sum, kPrinted, 1e-6 * kPrinted) << "seven digits are printed";
}

TEST(MatrixOracle, StoredExportedAndImportedMatricesKeepEveryBit)
{
  const TempFolder folder;
  for (const char* name : {"e_matrix.sti", "e_matrix.mas"}) {
    FED_ResultDatabase       database;
    const FED_DataDescriptor descriptor(0, static_cast<FED_OnfId>(593));
    const FED_YaleMatrix     read = Read(name).matrix;
    FED_YaleMatrix           restored;
    FED_YaleMatrixStorage::Store(read, database, descriptor, 1);
    FED_YaleMatrixStorage::Restore(database, descriptor, 1, restored);

    const auto isSame = [&](const std::string& file, const std::function<void(std::ostream&)>& write) {
      matrix::ReplaceFile(folder / file, write);
      return SameBits(matrix::ReadMatrixFile(folder / file, {}, {}).matrix, read);
    };
    EXPECT_TRUE(isSame("yale.txt", [&](std::ostream& out) { matrix::WriteYaleText(out, restored); }));
    for (const auto symmetry : {matrix::Symmetry::General, matrix::Symmetry::Symmetric})
      EXPECT_TRUE(
          isSame("a.mtx", [&](std::ostream& out) { matrix::WriteMatrixMarket(out, restored, symmetry, "restored"); }));
  }
}

}  // namespace quilon
