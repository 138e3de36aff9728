#include "FEMInputFile.h"

#include <filesystem>
#include <fstream>
#include <typeinfo>
#include <utility>

#include "failure.h"
#include "file_input.h"
#include "QuilonUtilities/FedStatusCode.h"
#include "QuilonUtilities/getline_dosunix.h"
#include "QuilonUtilities/QuilonFileNameUtil.h"
#include "QuilonUtilities/QuilonFileUtil.h"
#include "QuilonUtilities/QuilonStringUtil.h"

namespace {

constexpr const char* kTag           = "|%P|QuilonDbDataTools|FEMInputFile";
constexpr int         kEchoPrecision = 8;

// The standard library converts wide paths by the process's locale, which knows no letter beyond ASCII until a program
// sets one; UTF-8 it takes on every system.
std::filesystem::path NativePath(const std::wstring& path)
{
  const std::string text = QuilonStringUtil::wide_to_utf8(path.c_str());
  return std::filesystem::path(std::u8string(text.begin(), text.end()));
}

bool IsDirectory(const std::wstring& path)
{
  FedStatusCode status{};
  return QuilonFileUtil::IsExistingDir(path, status);
}

// The bytes of a wide path read as narrow text: of an ASCII path one character shows, because a zero byte follows it.
// Readers of these messages know them so. Test: ADirectoryIsNamedByItsFirstCharacterOnly.
const char* Unconverted(const std::wstring& path) { return reinterpret_cast<const char*>(path.c_str()); }

// The folder part with its separator.
std::wstring DirectoryOf(const std::wstring& path)
{
  const std::size_t separator = path.find_last_of(L"/\\");
  return separator == std::wstring::npos ? std::wstring() : path.substr(0, separator + 1);
}

std::wstring EchoName(const std::wstring& path, const std::wstring& suffix)
{
  // Without an extension the echo file is the included file. That is not guarded here: who chooses the suffix sees the
  // names. Test: WithoutAnExtensionTheEchoOverwritesTheIncludedFile.
  const wchar_t* extension = QuilonFileNameUtil::path_find_ext(path.c_str());
  if (*extension == L'\0') return path;
  std::wstring name = path;
  return name.insert(static_cast<std::size_t>(extension - path.c_str()), suffix);
}

std::istream* OpenInput(const std::wstring& path)
{
  auto* in = new FileInput(NativePath(path));
  // Some systems open a folder like a file and fail at the first read.
  if (IsDirectory(path)) in->setstate(std::ios::failbit);
  return in;
}

template <typename T>
T TakeLast(std::vector<T>& stack)
{
  T last = std::move(stack.back());
  stack.pop_back();
  return last;
}

}  // namespace

FEMInputFile::FEMInputFile(const std::wstring& name, const std::wstring& inputPath, const std::wstring& suffix,
                           int number)
    : FemInputBase(name, inputPath),
      inputDirectory_(DirectoryOf(inputPath)),
      currentInput_(nullptr),
      currentOutput_(nullptr),
      restorePending_(false),
      includeSuffix_(suffix.empty() ? suffix : L"_" + suffix),
      userNumber_(number),
      currentLinePosition_(0),
      nextLinePosition_(0),
      lineCounter_(0),
      endState_(0)
{}

FEMInputFile::FEMInputFile(const FEMInputFile& other) = default;

FEMInputFile& FEMInputFile::operator=(const FEMInputFile& other) = default;

// Deleting a file stream closes it, and a close that fails goes unnoticed. Streams on the stacks are not deleted: a
// copy of this reader may still be reading them. Test: DestroyedInsideAnIncludeItLeavesTheStreamsOfTheIncludingFiles.
FEMInputFile::~FEMInputFile()
{
  delete currentInput_;
  delete currentOutput_;
}

void FEMInputFile::Initialize()
{
  if (IsDirectory(inputPath_)) ThrowFailure(kTag, "The provided file \"%s\" is a directory.", Unconverted(inputPath_));

  currentInput_ = OpenInput(inputPath_);
  if (currentInput_->fail()) {
    ThrowFailure(kTag, "The file \"%s\" was not found.", QuilonStringUtil::wide_to_utf8(inputPath_.c_str()).c_str());
  }

  currentLinePosition_ = 0;
  nextLinePosition_    = 0;
  lineCounter_         = 0;
  endState_            = 0;
  // The counter stays at 0: ReadLine() advances it while the first line is delivered, which is then line 1.
  getline_dosunix(*currentInput_, nextLine_);
}

bool FEMInputFile::end_of_file() { return endState_ == 2; }

FEMInputFile::file_status FEMInputFile::ReadLine()
{
  currentLine_.swap(nextLine_);
  nextLine_.clear();
  currentLinePosition_ = nextLinePosition_;

  // The fast way for most lines. A derived reader may have put a stream of its own in place.
  if (typeid(*currentInput_) == typeid(FileInput) &&
      static_cast<FileInput*>(currentInput_)->TakeLine(nextLine_, nextLinePosition_))
  {
    ++lineCounter_;
    return file_ok;
  }

  nextLinePosition_ = currentInput_->tellg();  // -1 once the stream has hit its end

  if (!currentInput_->eof()) {
    getline_dosunix(*currentInput_, nextLine_);
    // Such a stream never reaches its end, and a caller that waits for it would never return.
    if (currentInput_->bad()) {
      ThrowFailure(kTag, "Reading \"%s\" or a file that it includes failed.",
                   QuilonStringUtil::wide_to_utf8(inputPath_.c_str()).c_str());
    }
    ++lineCounter_;
  }
  if (!currentInput_->eof() || !nextLine_.empty()) return file_ok;

  if (inputStack_.empty()) {
    ++endState_;
    return file_ended;
  }

  delete currentInput_;
  currentInput_   = TakeLast(inputStack_);
  lineCounter_    = TakeLast(lineNumberStack_);
  restorePending_ = true;
  nextLine_       = TakeLast(nextLineStack_);
  return file_ended;
}

void FEMInputFile::GetLine(std::string& line)
{
  ReadLine();
  line = currentLine_;
}

const std::string& FEMInputFile::GetCurrentLine() const { return currentLine_; }

const std::wstring& FEMInputFile::GetPath() const { return inputDirectory_; }

void FEMInputFile::Include(const std::wstring& path)
{
  if (currentOutput_ != nullptr) {
    *currentOutput_ << currentLine_ << '\n' << std::flush;
    outputStack_.push_back(currentOutput_);
    currentOutput_ = new std::ofstream(NativePath(EchoName(path, includeSuffix_)), std::ios::out);
    currentOutput_->precision(kEchoPrecision);
  }

  inputStack_.push_back(currentInput_);
  lineNumberStack_.push_back(lineCounter_);
  // One ahead of Initialize(), so that inside included files the counter is one more than the line's number. Callers
  // subtract it. Test: InsideAnIncludeTheCounterIsOneAheadOfTheLine.
  lineCounter_ = 1;
  nextLineStack_.push_back(nextLine_);

  currentInput_ = OpenInput(path);
  if (currentInput_->fail()) ThrowFailure(kTag, "The file \"%s\" (FEMInputFile) was not found.", Unconverted(path));
  getline_dosunix(*currentInput_, nextLine_);
}

void FEMInputFile::RestoreOutputStreamIfNeeded()
{
  if (!restorePending_) return;
  delete currentOutput_;
  // An output that was set inside the included file has none below it, and the pointer keeps its value: what follows it
  // is for whoever set it to say. Test: AnOutputSetInsideAnIncludeLeavesItsPointerBehind.
  if (!outputStack_.empty()) currentOutput_ = TakeLast(outputStack_);
  restorePending_ = false;
}
