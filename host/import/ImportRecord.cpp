#include "import/ImportRecord.h"

#include <algorithm>

namespace quilon {

void ImportRecord::Skip(const std::string& reason, std::size_t rows)
{
  if (rows == 0) return;
  const auto known = std::find_if(report_.skipped.begin(), report_.skipped.end(),
                                  [&reason](const SkippedRows& skipped) { return skipped.reason == reason; });
  if (known != report_.skipped.end()) {
    known->rows += rows;
  } else {
    report_.skipped.push_back({reason, rows});
  }
}

void ImportRecord::Notice(std::string text) { report_.notices.push_back(std::move(text)); }

void ImportRecord::AddInclude(const std::filesystem::path& path)
{
  std::vector<std::filesystem::path>& includes = report_.includes;
  if (std::find(includes.begin(), includes.end(), path) == includes.end()) includes.push_back(path);
}

void ImportRecord::AddDeviation(const std::string& elementType, const std::string& quantity, std::size_t nodes,
                                double largest)
{
  const auto known = std::find_if(report_.deviations.begin(), report_.deviations.end(), [&](const AverageDeviation& d) {
    return d.elementType == elementType && d.quantity == quantity;
  });
  if (known != report_.deviations.end()) {
    known->nodes += nodes;
    known->largest = std::max(known->largest, largest);
  } else {
    report_.deviations.push_back({elementType, quantity, nodes, largest});
  }
}

}  // namespace quilon
