#pragma once

/// @file
/// Base of result-file readers.

#include "quilon_language.h"

#include <string>

#include "quilon_export.h"

class FED_Database;

/// A solver's result file and the databases that receive its results. A reader derives from it and implements Read().
///
/// The databases are borrowed: they outlive the reader, which neither opens nor closes them. A copy shares them. There
/// is no assignment, because a reader stays with its databases for life.
class QUILON_EXPORT FEMResultFile
{
public:
  /// Both database references refer to `database`.
  /// @param file   path of the result file
  /// @param first  kept for the derived reader
  /// @param second kept for the derived reader
  FEMResultFile(const std::string& file, int first, int second, FED_Database& database);
  FEMResultFile(const std::string& file, int first, int second, FED_Database& database, FED_Database& secondDatabase);
  FEMResultFile(const FEMResultFile& other);
  virtual ~FEMResultFile();

  /// Reads the file into the database(s).
  /// @throws FED_Failure when the file is not what the reader expects
  virtual void Read() = 0;

protected:
  std::string   fileName_;
  std::string   spareText_;  ///< empty at first; for derived readers
  int           firstNumber_;
  int           secondNumber_;
  FED_Database& database_;
  FED_Database& secondDatabase_;
};
