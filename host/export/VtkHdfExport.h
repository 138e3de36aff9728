#pragma once

/// @file
/// A mesh and all steps of its results in one file (.vtkhdf).

#include <filesystem>
#include <string>

namespace quilon {

class GridSource;
class LinkedRows;
class Listener;

/// Writes an UnstructuredGrid of VTKHDF: version 1.0 of one step, else 2.0 with the mesh once and the arrays of all
/// steps one behind the other. Steps without values share rows of nan.
/// @param path of a file that is there and is to hold the data
/// @param name of the file for messages
/// @param links where the values of fields are, which are then pointed at and not written; null: they are written
/// @throws FED_Failure when it cannot be written
void WriteVtkHdf(GridSource& source, const std::filesystem::path& path, const std::string& name, Listener& listener,
                 LinkedRows* links = nullptr);

}  // namespace quilon
