#pragma once

/// @file
/// Envelopes on standard output.

#include <optional>
#include <string>
#include <vector>

#include "QuilonDbConnector/FED_DataDescriptor.h"
#include "terminal/Table.h"
#include "terminal/TableForm.h"

namespace quilon {

class Console;
class KindTable;
class Output;
struct EnvelopeReport;
struct EnvelopeSeries;

/// @return all keys of a block or a step, without the kind: "it=0,an=1,lc=2,sub=3"
std::string KeyText(const FED_DataDescriptor& descriptor);

/// Prints envelopes one after the other as they come: for people a table each, for programs one table for all, or JSON
/// with the rows of each under `rows`. Memory holds no text of a whole envelope.
class EnvelopePrinter
{
public:
  EnvelopePrinter(Output& output, const TableForm& form, const KindTable& kinds)
      : output_(output), form_(form), kinds_(kinds)
  {}

  void Print(const EnvelopeSeries& series);
  void Finish();

private:
  void PrintJson(const EnvelopeSeries& series);
  void PrintTable(const EnvelopeSeries& series);
  void WriteRows(const EnvelopeSeries& series, bool isForPeople);

  Output&                    output_;
  const TableForm&           form_;
  const KindTable&           kinds_;
  bool                       isFirst_ = true;
  std::optional<TableWriter> table_;  // of a table for programs
};

/// Tells what the user should know of a series: NaNs, ids that are not in all steps, places without axes.
void TellNotes(const EnvelopeSeries& series, const KindTable& kinds, Console& console);
/// Tells kinds that were left out, and the axes.
void TellNotes(const EnvelopeReport& report, Console& console);

}  // namespace quilon
