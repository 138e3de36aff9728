#include "matrix/MatrixFile.h"

#include <fstream>
#include <string>
#include <string_view>

#include "matrix/MatrixMarket.h"
#include "matrix/YaleText.h"
#include "text/Case.h"
#include "text/Failure.h"
#include "text/LineFile.h"
#include "text/OutputFile.h"

namespace quilon::matrix {

namespace {

namespace fs = std::filesystem;

bool BeginsAsMatrixMarket(std::istream& in)
{
  constexpr std::string_view kBanner = "%%";
  std::string                head(kBanner.size(), '\0');
  in.read(head.data(), static_cast<std::streamsize>(head.size()));
  in.clear();
  in.seekg(0);
  return head == kBanner;
}

}  // namespace

MatrixFile::Role RoleOf(const fs::path& path)
{
  const std::string extension = LowerExtension(path);
  return extension == ".sti" ? MatrixFile::Stiffness : extension == ".mas" ? MatrixFile::Mass : MatrixFile::Untold;
}

MatrixFile ReadMatrixFile(const fs::path& path, const fs::path& dofPath, const ReadProgress& progress)
{
  const std::string name = path.string();
  if (fs::is_directory(path)) Fail(name + ": a folder, expected a file with a matrix");
  std::ifstream in = OpenLineFile(path);

  MatrixFile file;
  file.role           = RoleOf(path);
  fs::path dofs       = dofPath;
  fs::path dofsBeside = path;
  dofsBeside.replace_extension(".dof");
  if (dofs.empty() && file.role != MatrixFile::Untold && fs::exists(dofsBeside)) dofs = dofsBeside;
  if (!dofs.empty()) {
    std::ifstream dofFile = OpenLineFile(dofs);
    file.dofs             = ReadDofs(dofFile, dofs.string(), progress);
  }

  if (file.role != MatrixFile::Untold)
    file.matrix = ReadSolverMatrix(in, name, static_cast<int>(file.dofs.size()), progress);
  else
    file.matrix = BeginsAsMatrixMarket(in) ? ReadMatrixMarket(in, name, progress) : ReadYaleText(path);
  if (!file.dofs.empty() && file.dofs.size() != file.matrix.GetNumRows())
    Fail(dofs.string() + ": " + std::to_string(file.dofs.size()) + " degrees of freedom for a matrix of " +
         std::to_string(file.matrix.GetNumRows()) + " rows, expected one each");
  return file;
}

void ReplaceFile(const fs::path& path, const std::function<void(std::ostream&)>& write)
{
  OutputFile file(path);
  write(file.Stream());
  file.Publish();
}

}  // namespace quilon::matrix
