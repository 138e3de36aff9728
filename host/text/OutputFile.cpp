#include "text/OutputFile.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <fstream>
#include <random>
#include <streambuf>
#include <string>
#include <system_error>
#include <utility>

#include "text/Case.h"
#include "text/Failure.h"

namespace quilon {

namespace {

// Whoever could foresee the name could put something there first.
std::string RandomSuffix()
{
  constexpr char     kLetters[] = "abcdefghijklmnopqrstuvwxyz";
  constexpr int      kCount     = 12;
  std::random_device source;
  std::string        suffix = ".tmp";
  for (int i = 0; i < kCount; ++i) suffix += kLetters[source() % 26];
  return suffix;
}

/// @throws FED_Failure "PATH: ..." when the system does not tell
FED_FileStatus StatusOf(const std::filesystem::path& path)
{
  FED_FileLayer  files;
  FED_FileStatus status;
  if (const std::error_code error = files.GetStatus(path, status)) Fail(path.string() + ": " + error.message());
  return status;
}

bool IsInDatabase(const std::filesystem::path& place)
{
  const std::filesystem::path folder = std::filesystem::absolute(place).parent_path();
  if (StatusOf(folder).kind != FED_FileStatus::Folder) return false;
  return LowerExtension(std::filesystem::canonical(folder)) == ".fed" ||
         StatusOf(folder / "manifest").kind != FED_FileStatus::Nothing;
}

/// @return where a file goes that replaces what is there: links are followed
/// @throws FED_Failure "PATH: ..." for a folder and for a place in a working database
std::filesystem::path PlaceOf(const std::filesystem::path& path, const FED_FileStatus& status)
{
  if (status.kind == FED_FileStatus::Folder) Fail(path.string() + ": expected a file to write, found a folder");
  if (status.kind == FED_FileStatus::Other) return path;
  std::filesystem::path place = status.kind == FED_FileStatus::File ? std::filesystem::canonical(path) : path;
  if (IsInDatabase(place)) Fail(path.string() + ": inside a working database, expected a place outside");
  return place;
}

}  // namespace

class OutputFile::Buffer : public std::streambuf
{
public:
  Buffer(FED_FileLayer& files, FED_FileLayer::Handle handle) : files_(files), handle_(handle)
  {
    setp(bytes_.data(), bytes_.data() + bytes_.size());
  }
  Buffer(const Buffer&)            = delete;
  Buffer& operator=(const Buffer&) = delete;
  ~Buffer() override { static_cast<void>(Close()); }

  /// @return why the system refused the text, nothing where it has not
  const std::error_code& GetError() const noexcept { return error_; }

  std::error_code Close() noexcept { return files_.Close(std::exchange(handle_, FED_FileLayer::kNoHandle)); }

protected:
  int_type overflow(int_type c) override
  {
    if (sync() != 0) return traits_type::eof();
    if (!traits_type::eq_int_type(c, traits_type::eof())) sputc(traits_type::to_char_type(c));
    return traits_type::not_eof(c);
  }
  int sync() override
  {
    const auto count = static_cast<std::size_t>(pptr() - pbase());
    if (count != 0 && !error_) error_ = files_.WriteAt(handle_, size_, pbase(), count);
    if (error_) return -1;
    size_ += count;
    setp(bytes_.data(), bytes_.data() + bytes_.size());
    return 0;
  }

private:
  FED_FileLayer&                          files_;
  FED_FileLayer::Handle                   handle_;
  std::uint64_t                           size_ = 0;
  std::error_code                         error_;
  std::array<char, std::size_t{1} << 16U> bytes_{};
};

/// Text on its way to what is no plain file.
class OutputFile::InPlaceBuffer : public std::filebuf
{
public:
  /// @return what the system left of the call that failed first, 0 before
  int GetError() const noexcept { return error_; }

  void Keep(bool holds)
  {
    if (!holds && error_ == 0) error_ = errno;
  }

protected:
  int_type overflow(int_type c) override
  {
    errno                 = 0;
    const int_type result = std::filebuf::overflow(c);
    Keep(!traits_type::eq_int_type(result, traits_type::eof()));
    return result;
  }
  std::streamsize xsputn(const char* text, std::streamsize count) override
  {
    errno                         = 0;
    const std::streamsize written = std::filebuf::xsputn(text, count);
    Keep(written == count);
    return written;
  }
  int sync() override
  {
    errno            = 0;
    const int result = std::filebuf::sync();
    Keep(result == 0);
    return result;
  }

private:
  int error_ = 0;
};

OutputFile::OutputFile(std::filesystem::path path) : path_(std::move(path))
{
  const FED_FileStatus status = StatusOf(path_);
  place_                      = PlaceOf(path_, status);
  if (status.kind == FED_FileStatus::Other) {
    inPlace_ = std::make_unique<InPlaceBuffer>();
    errno    = 0;
    if (inPlace_->open(place_, std::ios::out | std::ios::binary) != nullptr)
      out_.rdbuf(inPlace_.get());
    else
      inPlace_->Keep(false);
    Check();
    return;
  }
  const bool                  isThere = status.kind == FED_FileStatus::File;
  const std::filesystem::path beside  = place_.string() + RandomSuffix();
  FED_FileLayer::Handle       handle  = FED_FileLayer::kNoHandle;
  const auto                  mode    = isThere ? FED_FileLayer::CreatePrivate : FED_FileLayer::Create;
  openError_                          = files_.Open(beside, mode, handle);
  if (!openError_) {
    beside_ = beside;
    buffer_ = std::make_unique<Buffer>(files_, handle);
    if (isThere) openError_ = files_.SetPermissions(handle, status.permissions);
    if (!openError_) out_.rdbuf(buffer_.get());
  }
  try {
    Check();
  } catch (...) {
    if (!beside_.empty()) static_cast<void>(files_.Remove(beside_));
    throw;
  }
}

OutputFile::~OutputFile()
{
  out_.rdbuf(nullptr);
  buffer_.reset();
  if (!beside_.empty()) static_cast<void>(files_.Remove(beside_));  // gone when it was published
}

void OutputFile::Write(std::string_view text)
{
  out_.write(text.data(), static_cast<std::streamsize>(text.size()));
  Check();
}

const std::filesystem::path& OutputFile::PathToWrite() const
{
  if (beside_.empty()) Fail(path_.string() + ": expected a place for a file");
  return beside_;
}

void OutputFile::WriteBeside(const std::filesystem::path& beside, const std::filesystem::path& path,
                             const std::function<void(std::ostream&)>& write)
{
  const auto require = [&path](const std::error_code& error) {
    if (error) Fail(path.string() + ": expected a file that can be written: " + error.message());
  };
  FED_FileLayer         files;
  FED_FileLayer::Handle handle = FED_FileLayer::kNoHandle;
  require(files.Open(beside, FED_FileLayer::Change, handle));
  const auto   buffer = std::make_unique<Buffer>(files, handle);
  std::ostream out(buffer.get());
  write(out);
  out.flush();
  require(buffer->GetError());
  // Network file systems tell only now that bytes were lost.
  if (const std::error_code error = buffer->Close()) Fail(path.string() + ": cannot close: " + error.message());
}

void OutputFile::Finish()
{
  if (isFinished_) return;
  out_.flush();
  Check();
  errno               = 0;
  const bool isClosed = inPlace_ == nullptr || inPlace_->close() != nullptr;
  if (!isClosed) inPlace_->Keep(false);
  out_.rdbuf(nullptr);
  if (!isClosed) Check();
  // Network file systems tell only now that bytes were lost.
  const std::error_code error = buffer_ == nullptr ? std::error_code() : buffer_->Close();
  if (error) Fail(path_.string() + ": cannot close: " + error.message());
  buffer_.reset();
  isFinished_ = true;
}

void OutputFile::Publish()
{
  Finish();
  if (beside_.empty()) return;
  if (const std::error_code error = files_.Rename(beside_, place_))
    Fail(path_.string() + ": expected a place for a file: " + error.message());
  beside_.clear();
}

void OutputFile::Check() const
{
  if (out_) return;
  std::string reason;
  if (openError_)
    reason = ": " + openError_.message();
  else if (buffer_ != nullptr && buffer_->GetError())
    reason = ": " + buffer_->GetError().message();
  else if (inPlace_ != nullptr)
    reason = SystemReason(inPlace_->GetError());
  Fail(path_.string() + ": expected a file that can be written" + reason);
}

void CheckOutputFile(const std::filesystem::path& path) { static_cast<void>(PlaceOf(path, StatusOf(path))); }

void WriteFile(const std::filesystem::path& path, std::string_view text)
{
  OutputFile file(path);
  file.Write(text);
  file.Publish();
}

}  // namespace quilon
