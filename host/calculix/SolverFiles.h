#pragma once

/// @file
/// The solver's result files as readers of results.

#include <filesystem>
#include <memory>
#include <vector>

#include "results/InputDeck.h"

namespace quilon::calculix {

struct DatBlock;
struct FrdDataset;
struct StaRow;

/// Puts files of one stem together: .frd, .dat and .sta are one job, in the order in which their stems come. A .sta
/// beside the others belongs to them unasked, unless it is empty: the solver leaves such a one where it dies, and it is
/// passed over where it is named, too. A stem stands for the deck, unless it is empty, and the result files that have
/// it; other files of a stem are passed over.
/// @throws FED_Failure for two decks, for a file of another extension and stem and for a .sta without the others
JobFiles GroupFiles(const std::vector<std::filesystem::path>& files);

/// A .frd: it names the steps of its data sets and ends with a mark.
std::unique_ptr<ResultReader> MakeFrdReader(std::filesystem::path path);
/// A .dat: its blocks tell their time or their mode alone, and it has no end mark.
std::unique_ptr<ResultReader> MakeDatReader(std::filesystem::path path);
/// A .sta: the increments that converged.
std::unique_ptr<ResultReader> MakeStaReader(std::filesystem::path path);

/// @return the result that a data set belongs to. Kind 0 is time, with the increment as the .frd says it, and so is
///         kind 1 (dynamics) where it has an increment; without, it is a harmonic response. Kind 2 is modes. In a
///         buckling step (kind 4) the value 0 is the preload, a result in time, and every other value a buckling mode.
ResultStep StepOf(const FrdDataset& dataset);
/// @return the time or the mode of a block
ResultStep StepOf(const DatBlock& block);
/// @return the increment of a row
ResultStep StepOf(const StaRow& row);

}  // namespace quilon::calculix
