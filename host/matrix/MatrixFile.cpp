#include "matrix/MatrixFile.h"

#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>

#include "calculix/SolverFile.h"
#include "Failure.h"
#include "matrix/MatrixMarket.h"
#include "matrix/YaleText.h"

namespace quilon::matrix {

namespace {

namespace fs = std::filesystem;

std::string LowerExtension(const fs::path& path)
{
  std::string extension = path.extension().string();
  for (char& c : extension)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return extension;
}

bool BeginsAsMatrixMarket(std::istream& in)
{
  constexpr std::string_view kBanner = "%%";
  std::string                head(kBanner.size(), '\0');
  in.read(head.data(), static_cast<std::streamsize>(head.size()));
  in.clear();
  in.seekg(0);
  return head == kBanner;
}

/// A file removed at the end unless it has taken its place.
class FileBeside
{
public:
  explicit FileBeside(const fs::path& place) : place_(place), path_(place.string() + ".part") {}
  FileBeside(const FileBeside&)            = delete;
  FileBeside& operator=(const FileBeside&) = delete;
  ~FileBeside()
  {
    std::error_code ignored;
    if (!taken_) fs::remove(path_, ignored);
  }

  const fs::path& GetPath() const noexcept { return path_; }

  void TakePlace()
  {
    std::error_code error;
    fs::rename(path_, place_, error);
    if (error) Fail(place_.string() + ": cannot be written: " + error.message());
    taken_ = true;
  }

private:
  fs::path place_;
  fs::path path_;
  bool     taken_ = false;
};

}  // namespace

MatrixFile::Role RoleOf(const fs::path& path)
{
  const std::string extension = LowerExtension(path);
  return extension == ".sti" ? MatrixFile::Stiffness : extension == ".mas" ? MatrixFile::Mass : MatrixFile::Untold;
}

MatrixFile ReadMatrixFile(const fs::path& path, const fs::path& dofPath, const calculix::ReadProgress& progress)
{
  const std::string name = path.string();
  if (fs::is_directory(path)) Fail(name + ": a folder, expected a file with a matrix");
  std::ifstream in = calculix::OpenSolverFile(path);

  MatrixFile file;
  file.role           = RoleOf(path);
  fs::path dofs       = dofPath;
  fs::path dofsBeside = path;
  dofsBeside.replace_extension(".dof");
  if (dofs.empty() && file.role != MatrixFile::Untold && fs::exists(dofsBeside)) dofs = dofsBeside;
  if (!dofs.empty()) {
    std::ifstream dofFile = calculix::OpenSolverFile(dofs);
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
  if (fs::is_directory(path)) Fail(path.string() + ": a folder, expected the name of a file to write");
  FileBeside beside(path);
  {
    std::ofstream out(beside.GetPath(), std::ios::binary | std::ios::trunc);
    if (!out) Fail(path.string() + ": cannot be written, expected a place for a new file");
    write(out);
    out.close();
    if (!out) Fail(path.string() + ": cannot be written to its end");
  }
  beside.TakePlace();
}

}  // namespace quilon::matrix
