#pragma once

/// @file
/// What one import tells at its end.

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "import/ImportReport.h"
#include "import/StepMatcher.h"

namespace quilon {

/// Gathers the report over all jobs.
class ImportRecord
{
public:
  /// A reason to skip rows that several readers have.
  static constexpr const char* kNoKind = "rows that no user kind is left for";

  void Skip(const std::string& reason, std::size_t rows);
  void Notice(std::string text);
  void AddInclude(const std::filesystem::path& path);
  void AddDeviation(const std::string& elementType, const std::string& quantity, std::size_t nodes, double largest);

  /// @param nodes in the order of the file, at least one
  /// @param largest see ValueDisagreement
  /// @param kept    name of the file whose values are kept
  void AddDisagreement(const std::string& quantity, const StepKey& key, const std::vector<int>& nodes, double largest,
                       const std::string& kept);

  const ImportReport&             Report() const noexcept { return report_; }
  const std::vector<SkippedRows>& Skipped() const noexcept { return report_.skipped; }
  ImportReport                    Take() { return std::move(report_); }

private:
  ImportReport report_;
};

}  // namespace quilon
