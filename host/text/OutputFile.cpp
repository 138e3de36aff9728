#include "text/OutputFile.h"

#include <array>
#include <cstdint>
#include <random>
#include <streambuf>
#include <string>
#include <system_error>
#include <utility>

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
  ~Buffer() override { files_.Close(handle_); }

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
    if (count != 0 && files_.WriteAt(handle_, size_, pbase(), count)) return -1;
    size_ += count;
    setp(bytes_.data(), bytes_.data() + bytes_.size());
    return 0;
  }

private:
  FED_FileLayer&                          files_;
  FED_FileLayer::Handle                   handle_;
  std::uint64_t                           size_ = 0;
  std::array<char, std::size_t{1} << 16U> bytes_{};
};

OutputFile::OutputFile(std::filesystem::path path) : path_(std::move(path)), place_(path_)
{
  FED_FileStatus status;
  if (const std::error_code error = files_.GetStatus(path_, status)) Fail(path_.string() + ": " + error.message());
  if (status.kind == FED_FileStatus::Folder) Fail(path_.string() + ": expected a file to write, found a folder");
  if (status.kind == FED_FileStatus::Other) {
    inPlace_ = std::make_unique<std::filebuf>();
    if (inPlace_->open(place_, std::ios::out | std::ios::binary) != nullptr) out_.rdbuf(inPlace_.get());
    Check();
    return;
  }
  const bool isThere = status.kind == FED_FileStatus::File;
  if (isThere) place_ = std::filesystem::canonical(path_);
  const std::filesystem::path beside = place_.string() + RandomSuffix();
  FED_FileLayer::Handle       handle = FED_FileLayer::kNoHandle;
  const auto                  mode   = isThere ? FED_FileLayer::CreatePrivate : FED_FileLayer::Create;
  if (!files_.Open(beside, mode, handle)) {
    beside_ = beside;
    buffer_ = std::make_unique<Buffer>(files_, handle);
    if (!isThere || !files_.SetPermissions(handle, status.permissions)) out_.rdbuf(buffer_.get());
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

void OutputFile::Publish()
{
  out_.flush();
  Check();
  if (inPlace_ != nullptr) {
    const bool isClosed = inPlace_->close() != nullptr;
    out_.rdbuf(nullptr);
    if (!isClosed) Check();
    return;
  }
  out_.rdbuf(nullptr);
  buffer_.reset();
  if (const std::error_code error = files_.Rename(beside_, place_))
    Fail(path_.string() + ": expected a place for a file: " + error.message());
  beside_.clear();
}

void OutputFile::Check() const
{
  if (!out_) Fail(path_.string() + ": expected a file that can be written");
}

void WriteFile(const std::filesystem::path& path, std::string_view text)
{
  OutputFile file(path);
  file.Write(text);
  file.Publish();
}

}  // namespace quilon
