#include "diff/Verification.h"

#include "diff/DatabaseComparison.h"
#include "diff/Report.h"
#include "text/Failure.h"

namespace quilon {

void VerifyWritten(const FED_Database& source, const std::vector<FED_DataDescriptor>& blocks,
                   const std::string& sourceName, FED_Database& written, const std::string& writtenName,
                   const std::function<FED_DataDescriptor(const FED_DataDescriptor&)>& keyOf)
{
  diff::ComparisonTerms terms;
  terms.rules.fallback = diff::ParseRule("ulps=0 nan=equal", "");
  terms.allowsMore     = true;
  terms.keyInSecond    = keyOf;
  const diff::ComparedDatabase first{source, blocks};
  const diff::ComparedDatabase second  = diff::WholeDatabase(written);
  const diff::DatabaseOutcome  outcome = diff::CompareDatabases(first, second, terms);
  if (outcome.IsSame()) return;
  const diff::Report report = diff::MakeReport(outcome, first, second, sourceName, writtenName, terms.info);
  Fail(writtenName + ": what was written is not what was read from " + sourceName + ": " + report.Summarize());
}

}  // namespace quilon
