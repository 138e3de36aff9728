#include "commands/NumberOptions.h"

#include <charconv>
#include <system_error>

#include <CLI/CLI.hpp>

namespace quilon {

namespace {

/// @return a check that says what is wrong with the text of a number
template <typename Integer>
auto CheckOf(const char* expected)
{
  return [expected](const std::string& text) {
    Integer    number  = 0;
    const auto taken   = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isWhole = taken.ec == std::errc() && taken.ptr == text.data() + text.size();
    return isWhole ? std::string() : "'" + text + "', expected " + expected;
  };
}

constexpr char kInteger[] = "an integer of 32 bits";

}  // namespace

CLI::Option* AddIntegerOption(CLI::App& app, const std::string& name, int& target, const std::string& description)
{
  return app.add_option(name, target, description)->type_name("N")->check(CheckOf<int>(kInteger));
}

CLI::Option* AddIntegerOption(CLI::App& app, const std::string& name, std::optional<int>& target,
                              const std::string& description)
{
  return app.add_option(name, target, description)->type_name("N")->check(CheckOf<int>(kInteger));
}

CLI::Option* AddCountOption(CLI::App& app, const std::string& name, std::size_t& target, const std::string& description)
{
  return app.add_option(name, target, description)->type_name("N")->check(CheckOf<std::size_t>("a count, 0 or more"));
}

CLI::Option* AddMagnitudeOption(CLI::App& app, const std::string& name, double& target, const std::string& description)
{
  return app.add_option(name, target, description)->type_name("X")->check([](const std::string& text) {
    double     number  = 0.0;
    const auto taken   = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isWhole = taken.ec == std::errc() && taken.ptr == text.data() + text.size();
    return isWhole && number >= 0.0 ? std::string() : "'" + text + "', expected a number, 0 or more";
  });
}

}  // namespace quilon
