#include "report/Report.h"

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <utility>
#include <vector>

#include "diff/Report.h"
#include "progress/Listener.h"
#include "QuilonDbConnector/FED_Database.h"
#include "QuilonDbConnector/FED_DataDescriptorPattern.h"
#include "report/PageBundle.h"
#include "report/PageFacts.h"
#include "text/Failure.h"
#include "text/OutputFile.h"
#include "text/XmlText.h"

namespace quilon {

namespace {

/// @return JSON that no name can end early: a script element ends at the first "</script"
std::string ScriptJson(const Json& json)
{
  std::string escaped;
  for (const char c : JsonText(json)) {
    if (c == '<')
      escaped += "\\u003c";
    else
      escaped += c;
  }
  return escaped;
}

/// @return what a comparison found, for a page that has both
Json DescribeComparison(const PageRequest& request, const PageSource& source)
{
  const diff::Report& report = *request.comparison->report;
  std::string         first  = FileNameOf(request.name);
  std::string         second = FileNameOf(request.comparison->secondName);
  if (first == second) {
    first += " (A)";
    second += " (B)";
  }
  Json worst = Json::array();
  for (const diff::DifferenceRow& row : report.worst) {
    const auto place = source.FindBlock(row.name.block);
    Json       one{{"kind", row.name.kind},
             {"component", row.component},
             {"step", row.name.step},
             {"first", diff::ToText(row.a)},
             {"second", diff::ToText(row.b)},
             {"distance", JsonNumber(row.distance)},
             {"excess", JsonNumber(row.excess)},
             {"field", place && row.id ? Json(place->field) : Json()}};
    one["place"] =
        row.id ? (place ? (place->ofElements ? "element " : "node ") : "id ") + std::to_string(*row.id) : "-";
    if (place && row.id) {
      one["position"] = place->step;
      one["id"]       = *row.id;
    }
    worst.push_back(std::move(one));
  }
  Json oneSided = Json::array();
  for (const diff::OneSidedRow& row : report.oneSided)
    oneSided.push_back({{"kind", row.name.kind},
                        {"block", row.name.block},
                        {"records", row.records},
                        {"in", row.isSecond ? second : first}});
  return {{"titles", Json::array({first, second})},
          {"summary", report.Summarize()},
          {"one-sided", std::move(oneSided)},
          {"worst", std::move(worst)},
          {"imports", DescribeImports(*request.comparison->second)}};
}

std::string MegaBytes(std::size_t bytes)
{
  char text[32];
  std::snprintf(text, sizeof text, "%.1f MB", static_cast<double>(bytes) / 1e6);
  return text;
}

[[noreturn]] void FailTooLarge(const PageRequest& request, const PageSource& source, std::size_t fixed,
                               std::size_t ofSteps)
{
  std::string       advice;
  const auto        add      = [&advice](const std::string& way) { advice += (advice.empty() ? "" : ", ") + way; };
  const std::size_t numSteps = std::max<std::size_t>(source.NumSteps(), 1);
  const std::size_t perStep  = (ofSteps + numSteps - 1) / numSteps;
  const std::size_t room     = fixed < request.mostBytes ? request.mostBytes - fixed : 0;
  if (perStep > 0 && room / perStep >= 1 && room / perStep < source.NumSteps())
    add("--max-steps " + std::to_string(room / perStep));
  if (request.bits == BlobBits::Full && ofSteps / 2 <= room) add("--bits 16");
  add("a selection of fewer kinds");
  if (request.comparison == nullptr) add("or see it all with 'quilon serve'");
  Fail(request.name + ": the page would have " + MegaBytes(fixed + ofSteps) + ", expected " +
       MegaBytes(request.mostBytes) + " at most: " + advice);
}

}  // namespace

std::string FileNameOf(const std::string& name) { return std::filesystem::path(name).filename().string(); }

Json MakePageHeader(const PageRequest& request, const PageSource& source, const std::string& program,
                    Listener& listener)
{
  Json header       = source.GetHeader();
  header["format"]  = 1;
  header["program"] = program;
  header["title"]   = FileNameOf(request.name);
  header["facts"]   = DescribeDatabase(*request.database, request.name, listener);
  if (request.comparison == nullptr) {
    const int iteration = request.blocks.front().GetInteger(FED_DataDescriptor::Iteration);
    header["balance"]   = JudgeBalance(*request.database, iteration, request.name, listener);
  } else {
    header["compared"] = DescribeComparison(request, source);
    header["title"]    = FileNameOf(request.name) + " and " + FileNameOf(request.comparison->secondName);
  }
  return header;
}

PageFrame MakePageFrame(const std::string& title, const std::string& program, const Json& header,
                        const std::string& requests)
{
  const PageBundle bundle = LoadPageBundle();
  PageFrame        frame;
  frame.begin =
      "<!doctype html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
      "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; script-src " +
      bundle.scriptHash + "; style-src " + bundle.styleHash + "; img-src data:; " + requests +
      "base-uri 'none'; form-action 'none'\">\n"
      "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
      "<meta name=\"generator\" content=\"" +
      XmlText(program) + "\">\n<title>" + XmlText(title) + "</title>\n<style>" + bundle.style +
      "</style>\n</head>\n<body>\n<noscript>This page needs JavaScript.</noscript>\n"
      "<script type=\"application/json\" id=\"header\">" +
      ScriptJson(header) + "</script>\n";
  frame.end = "<script>" + bundle.script + "</script>\n</body>\n</html>\n";
  return frame;
}

ReportResult WriteReport(const PageRequest& request, const std::filesystem::path& output, const std::string& program,
                         Listener& listener)
{
  CheckOutputFile(output);
  PageSource source(request, listener);
  Json       header  = MakePageHeader(request, source, program, listener);
  Json       without = header;
  without["inside"]  = Json();

  const std::string title = FileNameOf(request.name);
  PageFrame         frame = MakePageFrame(title, program, without, "");
  std::size_t       fixed = frame.begin.size() + frame.end.size();
  std::size_t       steps = 0;
  const auto        make  = [&](std::size_t blob) {
    listener.Progress("page", blob, source.NumBlobs(), "arrays");
    return "<script type=\"text/plain\" id=\"blob" + std::to_string(blob) + "\">" + ToBase64(source.MakeBlob(blob)) +
           "</script>\n";
  };
  std::string outside;
  for (std::size_t blob = 0; blob < source.NumOutsideBlobs(); ++blob) {
    const std::string text = make(blob);
    (source.IsOfStep(blob) ? steps : fixed) += text.size();
    // What is too large goes on being counted: the message says how much smaller it has to be.
    if (fixed + steps <= request.mostBytes) outside += text;
  }
  if (fixed + steps > request.mostBytes) FailTooLarge(request, source, fixed, steps);

  bool        hasInside = source.NumOutsideBlobs() < source.NumBlobs();
  std::string inside;
  PageFrame   whole = frame;
  if (hasInside) {
    whole                  = MakePageFrame(title, program, header, "");
    const std::size_t size = whole.begin.size() + outside.size() + whole.end.size();
    for (std::size_t blob = source.NumOutsideBlobs(); hasInside && blob < source.NumBlobs(); ++blob) {
      inside += make(blob);
      hasInside = size + inside.size() <= request.mostBytes;
    }
  }
  ReportResult result{0, source.NumSteps(), source.NumPoints(), source.NumTriangles(), hasInside, false};
  result.lacksRoom       = !hasInside && source.NumOutsideBlobs() < source.NumBlobs();
  const std::string page = hasInside ? whole.begin + outside + inside + whole.end : frame.begin + outside + frame.end;
  WriteFile(output, page);
  result.bytes = page.size();
  return result;
}

ReportResult WriteComparison(const FED_Database& first, const std::string& name, const PageComparison& comparison,
                             bool isAsked, const std::filesystem::path& output, const std::string& program,
                             Listener& listener)
{
  auto blocks = comparison.difference->GetDataDescriptors(FED_DataDescriptorPattern());
  std::erase_if(blocks, [&first](const FED_DataDescriptor& block) { return !first.HasDataBlock(block); });
  PageRequest request;
  request.database   = &first;
  request.name       = name;
  request.comparison = &comparison;
  request.blocks     = ChoosePageBlocks(std::move(blocks), isAsked);
  return WriteReport(request, output, program, listener);
}

}  // namespace quilon
