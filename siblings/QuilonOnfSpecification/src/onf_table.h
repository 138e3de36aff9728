#pragma once

/// @file
/// The constant table behind the catalogue.

#include <span>

/// One fixed ONF id.
struct OnfRow
{
  int         id;
  int         entityKind;
  const char* name;
  const char* recordFormat;  ///< empty: taken from the first record
  const char* quantity;
  const char* description;
};

/// A hundred of user kinds.
struct OnfUserRow
{
  int         first;  ///< a multiple of 100
  int         entityKind;
  const char* stem;
  const char* recordFormat;
  const char* description;
};

/// Ascending by id. Ids are part of the file format: rows are added, never changed or removed.
std::span<const OnfRow> OnfRows();

/// Ascending; ten hundreds from 1000.
std::span<const OnfUserRow> OnfUserRows();
