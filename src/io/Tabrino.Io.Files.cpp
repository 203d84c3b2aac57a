#include "Tabrino.Io.Files.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <system_error>

#include "Tabrino.Types.h"

namespace Tabrino {

namespace fs = std::filesystem;

namespace {

class TFunctionWriteStreamProc : public TWriteStreamProc {
 public:
  explicit TFunctionWriteStreamProc(std::function<void(std::ostream&)> AWrite) : FWrite(std::move(AWrite)) {}
  void Invoke(std::ostream& AStream) override { FWrite(AStream); }

 private:
  std::function<void(std::ostream&)> FWrite;
};

bool IsExistingFile(const fs::path& APath) {
  std::error_code Error;
  fs::file_status Status = fs::status(APath, Error);
  return !Error && fs::exists(Status) && !fs::is_directory(Status);
}

}  // namespace

TWriteStreamProcRef MakeWriteStreamProc(std::function<void(std::ostream&)> AWrite) {
  return std::make_shared<TFunctionWriteStreamProc>(std::move(AWrite));
}

std::unique_ptr<std::istream> OpenReadOnly(const fs::path& APath) {
  auto Stream = std::make_unique<std::ifstream>(APath, std::ios::binary);
  if (!Stream->is_open()) {
    throw EException(fmt::format("Cannot open file \"{}\". {}", APath.string(), std::strerror(errno)));
  }
  return Stream;
}

fs::path SharedReadCopyPath(const std::string& AFileName) {
  return fs::temp_directory_path() /
         fmt::format("tabrino_{}_{}", static_cast<long>(getpid()), fs::path(AFileName).filename().string());
}

bool OpenSharedReadStream(const std::string& AFileName, std::unique_ptr<std::istream>& AStream, bool& AUsedCopy,
                          const TReadOpener& AOpen) {
  AStream.reset();
  AUsedCopy = false;
  if (!IsExistingFile(AFileName)) throw EException(fmt::format("File not found: {}", AFileName));
  try {
    AStream = AOpen(AFileName);
    return true;
  } catch (const std::exception&) {
    // Held by another program: fall through to reading a copy, silently.
  }
  const fs::path Copy = SharedReadCopyPath(AFileName);
  std::error_code Ignored;
  fs::remove(Copy, Ignored);
  fs::copy_file(AFileName, Copy, fs::copy_options::none);
  AStream = AOpen(Copy);
  AUsedCopy = true;
  return true;
}

fs::path SaveTempPath(const std::string& AFileName) {
  const fs::path Target(AFileName);
  // Beside the target, so that the final rename stays within one volume.
  fs::path Folder = Target.parent_path();
  if (Folder.empty()) Folder = fs::current_path();
  return Folder / (Target.filename().string() + ".tabrino.tmp");
}

void SaveToFileViaTemp(const std::string& AFileName, const TWriteStreamProcRef& AWriter) {
  if (!AWriter) throw EException(fmt::format("Nothing to write to \"{}\"", AFileName));
  const fs::path Target(AFileName);
  const fs::path Temp = SaveTempPath(AFileName);
  std::error_code Ignored;
  fs::remove(Temp, Ignored);
  {
    std::ofstream Out(Temp, std::ios::binary | std::ios::trunc);
    if (!Out.is_open()) {
      throw EException(fmt::format("Cannot create file \"{}\". {}", Temp.string(), std::strerror(errno)));
    }
    AWriter->Invoke(Out);
    Out.close();
    // A short write (a full disk) must not go on to replace the target.
    if (Out.fail()) throw EException(fmt::format("Cannot write file \"{}\"", Temp.string()));
  }
  // Deliberately delete, then rename: when another program holds the target
  // it is the delete that fails, and the message says what to do then.
  try {
    if (fs::exists(fs::symlink_status(Target))) fs::remove(Target);
    fs::rename(Temp, Target);
  } catch (const std::exception&) {
    throw EException(
        fmt::format("Cannot save to \"{}\" because it is open in another program.\r\nYour changes were saved to:\r\n{}",
                    AFileName, Temp.string()));
  }
}

std::string ReadAllBytes(std::istream& AStream) {
  std::string Bytes;
  const std::streampos Start = AStream.tellg();
  if (Start != std::streampos(-1) && AStream.seekg(0, std::ios::end)) {
    const std::streamoff Size = AStream.tellg() - Start;
    AStream.seekg(Start);
    if (Size > 0) {
      Bytes.resize(static_cast<size_t>(Size));
      AStream.read(Bytes.data(), Size);
      Bytes.resize(static_cast<size_t>(AStream.gcount()));
    }
  }
  AStream.clear(AStream.rdstate() & ~std::ios::failbit);
  // Unsized streams, and anything appended since the size was taken.
  char Chunk[65536];
  while (AStream.read(Chunk, sizeof Chunk) || AStream.gcount() > 0) {
    Bytes.append(Chunk, static_cast<size_t>(AStream.gcount()));
  }
  return Bytes;
}

}  // namespace Tabrino
