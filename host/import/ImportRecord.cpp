#include "import/ImportRecord.h"

#include <algorithm>
#include <cstddef>

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

void ImportRecord::AddDisagreement(const std::string& quantity, const StepKey& key, const std::vector<int>& nodes,
                                   double largest, const std::string& kept)
{
  constexpr std::size_t kNamed = 5;
  const auto            known  = std::find_if(report_.disagreements.begin(), report_.disagreements.end(),
                                              [&quantity](const ValueDisagreement& one) { return one.quantity == quantity; });
  const bool            isNew  = known == report_.disagreements.end();
  ValueDisagreement&    told   = isNew ? report_.disagreements.emplace_back() : *known;
  told.nodes += nodes.size();
  Skip("values that files disagree on (one of them kept)", nodes.size());
  if (isNew) {
    told.quantity = quantity;
    told.firstNodes.assign(nodes.begin(), nodes.begin() + static_cast<std::ptrdiff_t>(std::min(kNamed, nodes.size())));
  }
  if (!isNew && largest <= told.largest) return;
  told.largest = largest;
  told.kept    = kept;
  told.step    = "step " + std::to_string(key.loadCase) + (key.analysis == AnalysisModes ? ", mode " : ", increment ") +
              std::to_string(key.substep);
}

}  // namespace quilon
