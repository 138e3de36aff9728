#pragma once

/// @file
/// Another one who does all the work.

#include <cstddef>
#include <memory>

#include "progress/Crew.h"

namespace quilon_test {

/// The thread that asks does nothing itself: each unit is done with what another thread or process would have, and its
/// result travels as bytes.
class DistantCrew final : public quilon::Crew
{
public:
  std::size_t GetSize() const noexcept override { return 2; }
  bool        Leads() const noexcept override { return true; }

  std::unique_ptr<quilon::UntypedResults> Begin(const quilon::UntypedPlan& plan) override
  {
    return std::make_unique<Work>(plan);
  }

private:
  class Work final : public quilon::UntypedResults
  {
  public:
    explicit Work(const quilon::UntypedPlan& plan) : plan_(plan), worker_(plan.makeWorker(false)) {}

    std::shared_ptr<void> Next() override { return plan_.unpack(plan_.pack(worker_(next_++).get())); }

  private:
    const quilon::UntypedPlan&  plan_;
    quilon::UntypedPlan::Worker worker_;
    std::size_t                 next_ = 0;
  };
};

}  // namespace quilon_test
