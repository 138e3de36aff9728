#include "report/Report.h"

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <vector>

#include "progress/Listener.h"
#include "report/PageBundle.h"
#include "report/PageFacts.h"
#include "text/Failure.h"
#include "text/OutputFile.h"

namespace quilon {

namespace {

std::string EscapeHtml(std::string_view text)
{
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

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
  const auto        add     = [&advice](const std::string& way) { advice += (advice.empty() ? "" : ", ") + way; };
  const std::size_t perStep = ofSteps / std::max<std::size_t>(source.NumSteps(), 1);
  const std::size_t room    = fixed < request.mostBytes ? request.mostBytes - fixed : 0;
  if (perStep > 0 && room / perStep >= 1 && room / perStep < source.NumSteps())
    add("--max-steps " + std::to_string(room / perStep));
  if (request.bits == BlobBits::Full && ofSteps / 2 <= room) add("--bits 16");
  add("a selection of fewer kinds");
  Fail(request.name + ": the page would have " + MegaBytes(fixed + ofSteps) + ", expected " +
       MegaBytes(request.mostBytes) + " at most: " + advice);
}

}  // namespace

ReportResult WriteReport(const PageRequest& request, const std::filesystem::path& output, const std::string& program,
                         Listener& listener)
{
  CheckOutputFile(output);
  PageSource        source(request, listener);
  Json              header = source.GetHeader();
  const std::string title  = std::filesystem::path(request.name).filename().string();
  header["format"]         = 1;
  header["program"]        = program;
  header["title"]          = title;
  header["facts"]          = DescribeDatabase(*request.database, request.name, listener);
  header["balance"] = JudgeBalance(*request.database, request.blocks.front().GetInteger(FED_DataDescriptor::Iteration),
                                   request.name, listener);

  const PageBundle bundle = LoadPageBundle();
  std::string      page =
      "<!doctype html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
      "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; script-src " +
      bundle.scriptHash + "; style-src " + bundle.styleHash +
      "; img-src data:; base-uri 'none'; form-action 'none'\">\n"
      "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
      "<meta name=\"generator\" content=\"" +
      EscapeHtml(program) + "\">\n<title>" + EscapeHtml(title) + "</title>\n<style>" + bundle.style +
      "</style>\n</head>\n<body>\n<noscript>This page needs JavaScript.</noscript>\n"
      "<script type=\"application/json\" id=\"header\">" +
      ScriptJson(header) + "</script>\n";
  const std::string end   = "<script>" + bundle.script + "</script>\n</body>\n</html>\n";
  std::size_t       fixed = page.size() + end.size();
  std::size_t       steps = 0;
  for (std::size_t blob = 0; blob < source.NumBlobs(); ++blob) {
    listener.Progress("page", blob, source.NumBlobs(), "arrays");
    const std::string text = "<script type=\"text/plain\" id=\"blob" + std::to_string(blob) + "\">" +
                             ToBase64(source.MakeBlob(blob)) + "</script>\n";
    (source.IsOfStep(blob) ? steps : fixed) += text.size();
    // What is too large goes on being counted: the message says how much smaller it has to be.
    if (fixed + steps <= request.mostBytes) page += text;
  }
  if (fixed + steps > request.mostBytes) FailTooLarge(request, source, fixed, steps);
  page += end;
  WriteFile(output, page);
  return {page.size(), source.NumSteps(), source.NumPoints(), source.NumTriangles()};
}

}  // namespace quilon
