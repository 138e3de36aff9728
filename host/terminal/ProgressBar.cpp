#include "terminal/ProgressBar.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <iterator>
#include <utility>

namespace quilon {

namespace {

constexpr double kQuietSeconds    = 1.0;  // work that ends sooner shows nothing
constexpr double kSecondsPerFrame = 0.1;
constexpr int    kBarWidth        = 20;

std::string Rate(double perSecond, const std::string& unit)
{
  char text[48];
  if (unit != "B") {
    std::snprintf(text, sizeof text, perSecond < 999.5 ? "%.3g " : "%.0f ", perSecond);
    return text + unit + "/s";
  }
  static constexpr const char* kPrefixes[] = {"", "k", "M", "G", "T"};
  std::size_t                  prefix      = 0;
  while (perSecond >= 999.5 && prefix + 1 < std::size(kPrefixes)) {
    perSecond /= 1000.0;
    ++prefix;
  }
  std::snprintf(text, sizeof text, "%.3g %sB/s", perSecond, kPrefixes[prefix]);
  return text;
}

std::string Remaining(double seconds)
{
  constexpr double kLongest = 359999.0;  // 99:59:59
  const int        whole    = static_cast<int>(std::lround(std::min(seconds, kLongest)));
  char             text[48];
  if (whole < 3600)
    std::snprintf(text, sizeof text, "%d:%02d left", whole / 60, whole % 60);
  else
    std::snprintf(text, sizeof text, "%d:%02d:%02d left", whole / 3600, whole / 60 % 60, whole % 60);
  return text;
}

}  // namespace

ProgressBar::ProgressBar(std::function<double()> clock) : clock_(std::move(clock)) {}

std::string ProgressBar::Update(const std::string& phase, std::uint64_t done, std::uint64_t total,
                                const std::string& unit)
{
  const double now = clock_();
  if (workStart_ < 0.0) workStart_ = now;
  if (phase != phase_) {
    phase_      = phase;
    phaseStart_ = now;
    lastShown_  = now - kSecondsPerFrame;
  }
  if (now - workStart_ < kQuietSeconds || now - lastShown_ < kSecondsPerFrame) return {};
  lastShown_ = now;

  const double elapsed = now - phaseStart_;
  const double rate    = elapsed > 0.0 ? static_cast<double>(done) / elapsed : 0.0;
  std::string  line    = phase;
  if (total > 0) {
    const double part   = std::min(1.0, static_cast<double>(done) / static_cast<double>(total));
    const auto   filled = static_cast<std::size_t>(part * kBarWidth);
    char         percent[16];
    std::snprintf(percent, sizeof percent, "%3d %%", static_cast<int>(part * 100.0));
    line += " [" + std::string(filled, '#') + std::string(kBarWidth - filled, ' ') + "] " + percent;
  }
  if (rate > 0.0) line += ' ' + Rate(rate, unit);
  if (rate > 0.0 && total > done) line += ' ' + Remaining(static_cast<double>(total - done) / rate);
  return line;
}

}  // namespace quilon
