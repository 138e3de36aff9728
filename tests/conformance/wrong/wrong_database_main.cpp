// The kit on a database that makes one mistake:
//   conformance_wrong --wrong=NAME [options of GoogleTest]
// Without --wrong the wrapped database makes none and passes.

#include <iostream>
#include <string>

#include <gtest/gtest.h>

#include "../factories/ResultDatabaseFactory.h"
#include "WrongDatabase.h"

namespace {

conformance::Mistake mistake = conformance::Mistake::None;

class WrongFactory : public conformance::ResultDatabaseFactory
{
public:
  std::unique_ptr<FED_Database> Create() override
  {
    return std::make_unique<conformance::WrongDatabase>(ResultDatabaseFactory::Create(), mistake);
  }

  std::unique_ptr<FED_Database> Reopen(std::unique_ptr<FED_Database> database) override
  {
    dynamic_cast<conformance::WrongDatabase&>(*database).Reopen();
    return database;
  }
};

}  // namespace

std::unique_ptr<ConformanceFactory> MakeConformanceFactory() { return std::make_unique<WrongFactory>(); }

int main(int argc, char** argv)
{
  ::testing::InitGoogleTest(&argc, argv);
  const std::string option = "--wrong=";
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (argument.rfind(option, 0) == 0) mistake = conformance::FindMistake(argument.substr(option.size()));
    if (mistake == conformance::Mistake::None) {
      std::cerr << "conformance_wrong: \"" << argument << "\" names no mistake\n";
      return 2;
    }
  }
  return RUN_ALL_TESTS();
}
