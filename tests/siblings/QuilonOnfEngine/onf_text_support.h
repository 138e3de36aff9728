#pragma once

/// @file
/// What the tests of the text database share: files as strings, small databases.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "QuilonDbConnector/FED_DataDescriptor.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "QuilonOnfEngine/QuilonOnfTxtDatabase.h"
#include "QuilonUtilities/FED_Failure.h"
#include "TempFolder.h"

inline std::string ReadBytes(const std::filesystem::path& path)
{
  std::ifstream in(path, std::ios::binary);
  EXPECT_TRUE(in) << path;
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

inline void WriteBytes(const std::filesystem::path& path, const std::string& bytes)
{
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  ASSERT_TRUE(out.flush()) << path;
}

/// File names and bytes of a folder; empty when there is none.
inline std::map<std::string, std::string> ReadAllFiles(const std::filesystem::path& folder)
{
  std::map<std::string, std::string> files;
  if (!std::filesystem::exists(folder)) return files;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    files[entry.path().filename().string()] = ReadBytes(entry.path());
  return files;
}

/// A key with an iteration of 0, an ONF id and a load case.
inline FED_DataDescriptor MakeKey(int onf, int loadCase)
{
  FED_DataDescriptor key(0, static_cast<FED_OnfId>(onf));
  key.SetInteger(FED_DataDescriptor::LoadCase, loadCase);
  return key;
}

inline void OpenToWrite(QuilonOnfTxtDatabase& database)
{
  database.InitDb(FED_DatabaseDefs::WriteAccess, 1024, L"", nullptr);
}

inline void OpenToRead(QuilonOnfTxtDatabase& database)
{
  database.InitDb(FED_DatabaseDefs::ReadAccess, 1024, L"", nullptr);
}

/// Stores one double under an id of a block of scalars.
inline void SetScalar(FED_Database& database, const FED_DataDescriptor& key, int id, double value)
{
  FED_IdDataBlock(database.GetOrCreateDataBlock(key, 0), database.GetIdMapsPool(), false).SetScalar(id, value);
}

inline double GetScalar(const FED_Database& database, const FED_DataDescriptor& key, int id)
{
  double value = 0.0;
  FED_ConstIdDataBlock(database.GetConstDataBlock(key), database.GetIdMapsPool()).GetScalar(id, value);
  return value;
}

/// @return the message of the FED_Failure that the call throws; empty when it throws none
template <typename Call>
std::string MessageOf(Call&& call)
{
  try {
    std::forward<Call>(call)();
  } catch (const FED_Failure& failure) {
    return failure.GetMessage();
  }
  return {};
}
