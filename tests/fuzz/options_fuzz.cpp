// The first line of the input as the text of every option that has a grammar of its own: it is read or refused with a
// FED_Failure, and what is read is what the option promises.

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>

#include <bundled/FED_RecordFormat.h>
#include <bundled/FED_ResultDatabase.h>

#include "answers/History.h"
#include "answers/TimeChoice.h"
#include "database/MemoryLimit.h"
#include "forces/ForceCalculation.h"
#include "kinds/KindTable.h"
#include "kinds/UserKindPool.h"
#include "matrix/MatrixBlocks.h"
#include "plot/Canvas.h"
#include "plot/Colour.h"
#include "plot/View.h"
#include "QuilonUtilities/FED_Failure.h"
#include "selection/KindRequests.h"
#include "shards/BorderRule.h"
#include "text/NumberList.h"

namespace {

void Require(bool holds)
{
  if (!holds) std::abort();
}

template <typename Read>
void Try(Read&& read)
{
  try {
    read();
  } catch (const FED_Failure& failure) {
    Require(!failure.GetMessage().empty());
  }
}

double Dot(const quilon::Point3& a, const quilon::Point3& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

void ReadPictureOptions(const std::string& line)
{
  Try([&] {
    const quilon::View view = quilon::ParseView(line);
    // Sines and cosines, and products of two of them, are right to a few units in the last place.
    constexpr double kRounding = 1e-14;
    for (const quilon::Point3& axis : {view.right, view.up, view.toward})
      Require(std::abs(Dot(axis, axis) - 1.0) < kRounding);
    Require(std::abs(Dot(view.right, view.up)) < kRounding && std::abs(Dot(view.up, view.toward)) < kRounding);
  });
  Try([&] {
    const quilon::Colour colour = quilon::ParseColour(line);
    for (const double part : {colour.red, colour.green, colour.blue, colour.alpha}) Require(part >= 0.0 && part <= 1.0);
  });
  Try([&] {
    const quilon::PictureSize size = quilon::ParsePictureSize(line);
    for (const int side : {size.width, size.height}) Require(side >= 100 && side <= 10000);
  });
}

void ReadTimeOptions(const std::string& line)
{
  Try([&] {
    const auto times = quilon::ParseTimes(line);
    Require(!times.empty() && times.size() <= 1000001);
  });
  Try([&] { Require(!quilon::TimeChoice(line).IsEverything()); });
}

void ReadRules(const std::string& line, const quilon::KindTable& kinds)
{
  const auto resolve = [&kinds](std::string_view kind) { return kinds.Resolve(kind); };
  Try([&] {
    const quilon::BorderRule rule = quilon::ParseBorderRule(line);
    Require(rule.tolerance >= 0.0);
    quilon::BorderRules rules;
    rules.Add("*: " + line, resolve);
    Require(rules.Find(77)->form == rule.form && rules.Find(77)->tolerance == rule.tolerance);
  });
  Try([&] {
    quilon::BorderRules rules;
    rules.Add(line, resolve);
    // What makes up the model has rules of its own.
    for (const int kind : {501, 516, 600, 1000}) Require(kind == 1000 || rules.Find(kind));
  });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  static const quilon::KindTable kKinds;

  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::string      line(text.substr(0, text.find('\n')));
  Try([&] { Require(!quilon::ParseElementIds(line).empty()); });
  Try([&] { Require(!quilon::ParseNonlinearSteps(line).empty()); });
  Try([&] { quilon::MemoryLimit::Parse(line); });
  Try([&] {
    const FED_RecordFormat format = FED_RecordFormat::Parse(line);
    Require(FED_RecordFormat::Parse(format.ToString()) == format);
  });
  Try([&] {
    FED_ResultDatabase   database;
    quilon::UserKindPool pool(database);
    const auto           target = quilon::matrix::ParseTarget(line, 0, pool);
    Require(target.GetInteger(FED_DataDescriptor::OnfId) > 0);
  });
  // A path would be read: what stands in files of requests is read by onf_text_fuzz.
  if (!quilon::KindRequests::IsPath(line)) Try([&] { quilon::KindRequests(line, kKinds); });
  std::array<double, 3> numbers{};
  if (quilon::ParseNumbers(line, numbers)) Require(quilon::ParseNumbers(quilon::FormatNumbers(numbers), numbers));
  Try([&] { quilon::ParseNumbers("--about", line, numbers, "three numbers X,Y,Z"); });
  ReadPictureOptions(line);
  ReadTimeOptions(line);
  ReadRules(line, kKinds);
  return 0;
}
