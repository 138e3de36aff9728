#include "CallRecorder.h"

#include <utility>

namespace quilon_test {

void CallRecorder::Call(Detail level, std::string line)
{
  const bool fails = ++callCount_ == failAtCall_;
  Free(level, fails ? line + " fails" : std::move(line));
  if (fails) std::rethrow_exception(failure_);
}

void CallRecorder::Free(Detail level, std::string line)
{
  if (level <= detail_) lines_.push_back(std::move(line));
}

void CallRecorder::FailAt(std::size_t call, std::exception_ptr failure)
{
  failAtCall_ = call;
  failure_    = std::move(failure);
}

}  // namespace quilon_test
