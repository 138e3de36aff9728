#include "QuilonUtilities/FED_LogMacros.h"

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

#include "bundled/LogSink.h"

namespace {

/// Where lines go: the only state of this library that changes.
struct LogState
{
  std::recursive_mutex mutex;  // recursive: a sink may log
  // Shared: a sink that sets another one stays alive until it returns.
  std::shared_ptr<const QuilonLog::Sink> sink        = std::make_shared<const QuilonLog::Sink>();
  std::string                            programName = "quilon";
};

LogState& State()
{
  // Never destroyed: objects that end with the program may still log.
  static LogState& state = *new LogState;
  return state;
}

std::string_view OrEmpty(const char* text) { return text != nullptr ? text : ""; }

/// Rewrites "%Iu", with or without flags, width and precision, to the standard's "%zu".
std::string StandardFormat(std::string_view format)
{
  constexpr std::string_view kFlagsWidthPrecision = "-+ #0123456789.*";
  std::string                out;
  out.reserve(format.size());
  for (std::size_t i = 0; i < format.size(); ++i) {
    out += format[i];
    if (format[i] != '%') continue;
    for (++i; i < format.size() && kFlagsWidthPrecision.find(format[i]) != std::string_view::npos; ++i)
      out += format[i];
    if (i == format.size()) break;
    // The conversion's first character, a second '%' too, is taken here, so that it starts no conversion of its own.
    out += format.substr(i, 2) == "Iu" ? 'z' : format[i];
  }
  return out;
}

/// @return the formatted message; the format itself when the arguments cannot be converted
std::string Format(const std::string& format, std::va_list arguments)
{
  std::va_list again;
  va_copy(again, arguments);
  const int   length = std::vsnprintf(nullptr, 0, format.c_str(), arguments);
  std::string text   = format;
  if (length >= 0) {
    text.resize(static_cast<std::size_t>(length) + 1);  // room for the terminating null
    std::vsnprintf(text.data(), text.size(), format.c_str(), again);
    text.pop_back();
  }
  va_end(again);
  return text;
}

std::string ReplaceProgramName(std::string_view tag, const std::string& name)
{
  std::string out(tag);
  for (std::size_t at = out.find("%P"); at != std::string::npos; at = out.find("%P", at + name.size()))
    out.replace(at, 2, name);
  return out;
}

/// A program that sets no sink has not asked for a log: it sees errors, and of notices and details nothing.
void WriteErrorToStandardError(const QuilonLog::Line& line)
{
  if (line.type >= FED_LogMacros::LogNotice) return;
  // In one piece, so that lines of several processes on one terminal stay whole.
  const std::string text = line.tag + "| " + line.text + "\n";
  std::fwrite(text.data(), 1, text.size(), stderr);
}

}  // namespace

QuilonLog::Sink QuilonLog::SetSink(Sink sink)
{
  auto                                        next  = std::make_shared<const Sink>(std::move(sink));
  LogState&                                   state = State();
  const std::lock_guard<std::recursive_mutex> lock(state.mutex);
  Sink                                        former = *state.sink;  // copied before anything changes
  state.sink.swap(next);
  return former;
}

QuilonLog::ScopedSink::ScopedSink(Sink sink) : former_(std::make_shared<const Sink>(std::move(sink)))
{
  LogState&                                   state = State();
  const std::lock_guard<std::recursive_mutex> lock(state.mutex);
  state.sink.swap(former_);
}

QuilonLog::ScopedSink::~ScopedSink()
{
  LogState&                                   state = State();
  const std::lock_guard<std::recursive_mutex> lock(state.mutex);
  state.sink.swap(former_);
}

void QuilonLog::SetProgramName(const std::string& name)
{
  LogState&                                   state = State();
  const std::lock_guard<std::recursive_mutex> lock(state.mutex);
  state.programName = name;
}

void FED_LogMacros::log_msg(LogMsgType type, const char* file, int line, const char* tag, const char* format, ...)
{
  std::va_list arguments;
  va_start(arguments, format);
  std::string text = Format(StandardFormat(OrEmpty(format)), arguments);
  va_end(arguments);

  LogState&                                    state = State();
  const std::lock_guard<std::recursive_mutex>  lock(state.mutex);
  const std::shared_ptr<const QuilonLog::Sink> sink = state.sink;
  const QuilonLog::Line                        message{type, std::string(OrEmpty(file)), line,
                                ReplaceProgramName(OrEmpty(tag), state.programName), std::move(text)};
  if (*sink) {
    (*sink)(message);
  } else {
    WriteErrorToStandardError(message);
  }
}
