#pragma once

/// @file
/// Root of the input-deck converters.

#include "quilon_language.h"

#include <string>

#include "quilon_export.h"

class OnfGroupsFile;

/// A solver's input deck and what a program asks of the converter that reads it. A converter derives from it, usually
/// by way of FEMInputFile, and implements the three pure operations. Copies share nothing.
class QUILON_EXPORT FemInputBase
{
public:
  /// @param name      kept for the converter
  /// @param inputPath path of the deck
  FemInputBase(const std::wstring& name, const std::wstring& inputPath);
  FemInputBase(const FemInputBase& other);
  FemInputBase& operator=(const FemInputBase& other);
  virtual ~FemInputBase();

  // The virtual operations stand in the order of their slots, behind the destructor.

  /// Reads the deck into the converter's own model.
  /// @throws FED_Failure when the deck is not what the converter expects
  virtual void ReadModel() = 0;

  /// Checks the model that was read.
  /// @throws FED_Failure naming what is wrong
  virtual void CheckModel() = 0;

  /// Hands the model on to wherever the converter is to bring it.
  /// @throws FED_Failure when that cannot be done
  virtual void ConvertModel() = 0;

  /// Turns the groups of a groups file into sets of the model. Here it does nothing: a converter that knows sets
  /// overrides it.
  /// @param groups borrowed for this call
  virtual void CreateFEMSets(const OnfGroupsFile& groups);

protected:
  std::wstring inputPath_;
  std::wstring name_;
};
