#pragma once

/// @file
/// Command lines of benchmarks that write a file or a database, time what reads it, and remove it again.

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <random>
#include <string>
#include <string_view>
#include <system_error>

namespace quilon_bench {

/// A flag that takes a number of at least 1.
struct NumberFlag
{
  const char*    name;     ///< "--megabytes"
  std::uint64_t* value;    ///< holds the default; borrowed
  const char*    meaning;  ///< a line of the usage
};

struct FileBenchOptions
{
  int                   repeats = 3;
  std::filesystem::path folder  = std::filesystem::temp_directory_path();
};

/// Reads "--repeats N", "--folder PATH" and the flags of the program's own. Prints the usage and ends the program on
/// --help, and with exit code 2 on what it does not know.
inline FileBenchOptions ReadFileBenchOptions(int argc, char** argv, std::initializer_list<NumberFlag> own)
{
  FileBenchOptions options;
  std::uint64_t    repeats = static_cast<std::uint64_t>(options.repeats);
  const NumberFlag repeat{"--repeats", &repeats, "measurements of each; the best and the median are printed"};
  const auto       end = [&](int code) {
    std::FILE* out = code == 0 ? stdout : stderr;
    std::fprintf(out, "usage: %s [--folder PATH] [FLAG N]...\n", argv[0]);
    const auto print = [out](const NumberFlag& flag) {
      std::fprintf(out, "  %-12s %s (default: %llu)\n", flag.name, flag.meaning,
                         static_cast<unsigned long long>(*flag.value));
    };
    std::for_each(own.begin(), own.end(), print);
    print(repeat);
    std::exit(code);
  };
  for (int i = 1; i < argc; i += 2) {
    const std::string_view name = argv[i];
    if (name == "--help" || name == "-h") end(0);
    if (i + 1 == argc) end(2);
    const std::string_view text = argv[i + 1];
    if (name == "--folder") {
      options.folder = text;
      continue;
    }
    const auto flag = std::find_if(own.begin(), own.end(), [&](const NumberFlag& one) { return name == one.name; });
    if (flag == own.end() && name != repeat.name) end(2);
    std::uint64_t value = 0;
    const auto    read  = std::from_chars(text.data(), text.data() + text.size(), value);
    if (read.ec != std::errc() || read.ptr != text.data() + text.size() || value == 0) end(2);
    (flag == own.end() ? repeats : *flag->value) = value;
  }
  options.repeats = static_cast<int>(std::min<std::uint64_t>(repeats, 1000));
  return options;
}

/// @return a path in `folder` that no other run uses
inline std::filesystem::path ScratchPath(const std::filesystem::path& folder, const std::string& extension)
{
  return folder / ("quilon-bench-" + std::to_string(std::random_device{}()) + extension);
}

}  // namespace quilon_bench
