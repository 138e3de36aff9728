#pragma once

/// @file
/// Root of the suite's exceptions.

#include "quilon_language.h"

#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "quilon_contract_export.h"

/// An exception with a message, the channel tag of its thrower, an optional context, an optional cause and the back
/// trace of the place where it was made. Copies own a clone of the cause.
class QUILON_UTILITIES_API FED_Exception : public std::exception
{
public:
  /// Takes the back trace here.
  FED_Exception(const std::string& message, const std::string& tag);
  FED_Exception(const FED_Exception& other);
  FED_Exception& operator=(const FED_Exception& other);
  ~FED_Exception() override;

  /// @return exactly the message; the tag is no part of it
  const char* what() const noexcept override;

  /// @return a heap copy of the object, its cause cloned too; the caller owns it
  virtual FED_Exception* Clone() const;

  virtual const std::string& GetMessage() const;
  virtual const std::string& GetTag() const;

  const std::string&              GetContext() const noexcept;
  const FED_Exception*            GetCause() const noexcept;  ///< null when there is none; owned by this object
  const std::vector<std::string>& GetBacktrace() const noexcept;

  void SetContext(const std::string& context);
  void SetCause(std::unique_ptr<FED_Exception> cause) noexcept;

private:
  std::string                    context_;
  std::string                    tag_;
  std::string                    message_;
  std::unique_ptr<FED_Exception> cause_;
  std::vector<std::string>       backtrace_;
};
