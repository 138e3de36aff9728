#include "QuilonUtilities/FED_Exception.h"

#include <utility>

#include "QuilonUtilities/FED_Backtrace.h"

namespace {

std::unique_ptr<FED_Exception> CloneOf(const std::unique_ptr<FED_Exception>& cause)
{
  return std::unique_ptr<FED_Exception>(cause ? cause->Clone() : nullptr);
}

}  // namespace

FED_Exception::FED_Exception(const std::string& message, const std::string& tag)
    : tag_(tag), message_(message), backtrace_(FED_Backtrace::GetBacktrace())
{}

FED_Exception::FED_Exception(const FED_Exception& other)
    : std::exception(other),
      context_(other.context_),
      tag_(other.tag_),
      message_(other.message_),
      cause_(CloneOf(other.cause_)),
      backtrace_(other.backtrace_)
{}

FED_Exception& FED_Exception::operator=(const FED_Exception& other)
{
  // Copy everything first: if this throws, the exception is unchanged. It also keeps self-assignment, and assignment
  // from the own cause, whole.
  FED_Exception copy(other);
  context_.swap(copy.context_);
  tag_.swap(copy.tag_);
  message_.swap(copy.message_);
  cause_.swap(copy.cause_);
  backtrace_.swap(copy.backtrace_);
  return *this;
}

FED_Exception::~FED_Exception() = default;

const char* FED_Exception::what() const noexcept { return message_.c_str(); }

FED_Exception* FED_Exception::Clone() const { return new FED_Exception(*this); }

const std::string& FED_Exception::GetMessage() const { return message_; }

const std::string& FED_Exception::GetTag() const { return tag_; }

const std::string& FED_Exception::GetContext() const noexcept { return context_; }

const FED_Exception* FED_Exception::GetCause() const noexcept { return cause_.get(); }

const std::vector<std::string>& FED_Exception::GetBacktrace() const noexcept { return backtrace_; }

void FED_Exception::SetContext(const std::string& context) { context_ = context; }

void FED_Exception::SetCause(std::unique_ptr<FED_Exception> cause) noexcept { cause_ = std::move(cause); }
