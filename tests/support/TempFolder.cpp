#include "TempFolder.h"

#include <random>
#include <string>
#include <system_error>

namespace quilon_test {

TempFolder::TempFolder()
{
  std::random_device source;
  // Programs of one test run share the folder for temporary files: a name that is taken is not ours.
  do {
    path_ = std::filesystem::temp_directory_path() / ("quilon-test-" + std::to_string(source()));
  } while (!std::filesystem::create_directory(path_));
}

TempFolder::~TempFolder()
{
  std::error_code ignored;  // a folder that cannot be deleted fails no test
  std::filesystem::remove_all(path_, ignored);
}

}  // namespace quilon_test
