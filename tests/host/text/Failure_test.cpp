#include "text/Failure.h"

#include <cerrno>
#include <filesystem>
#include <new>
#include <stdexcept>
#include <system_error>

#include <gtest/gtest.h>

#include "QuilonUtilities/FED_Failure.h"

namespace {

using quilon::MessageOf;

TEST(MessageOfAnException, SaysWhatUsersUnderstand)
{
  EXPECT_EQ(MessageOf(std::bad_alloc()), "out of memory");
  EXPECT_EQ(MessageOf(std::bad_array_new_length()), "out of memory");
  EXPECT_EQ(MessageOf(std::filesystem::filesystem_error("status", "job.fed",
                                                        std::make_error_code(std::errc::permission_denied))),
            "job.fed: Permission denied");
  EXPECT_EQ(MessageOf(std::runtime_error("its own words")), "its own words");
  EXPECT_EQ(MessageOf(FED_Failure("job.frd:3: expected a number", "|%P|quilon|host")), "job.frd:3: expected a number");
}

TEST(SystemReason, IsTheWordsOfTheSystemOrNothing)
{
  EXPECT_EQ(quilon::SystemReason(EACCES), ": Permission denied");
  EXPECT_EQ(quilon::SystemReason(0), "");
}

}  // namespace
