#include "readers/Readers.h"

#include "calculix/SolverFiles.h"

namespace quilon {

JobFiles FindReaders(const std::vector<std::filesystem::path>& files) { return calculix::GroupFiles(files); }

}  // namespace quilon
