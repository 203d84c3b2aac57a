// The two file operations every format stands on: reading a file that another
// program may hold, and writing one so that a failed save never costs the
// user's existing file or the new content.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <iosfwd>
#include <memory>
#include <string>

namespace Tabrino {

// Writes the whole content of one file to the stream it is given. Every saver
// hands one to SaveToFileViaTemp.
class TWriteStreamProc {
 public:
  virtual ~TWriteStreamProc() = default;
  virtual void Invoke(std::ostream& AStream) = 0;
};
using TWriteStreamProcRef = std::shared_ptr<TWriteStreamProc>;

TWriteStreamProcRef MakeWriteStreamProc(std::function<void(std::ostream&)> AWrite);

// Reports how far a long read has come, in bytes.
using TIoProgressProc = std::function<void(uint64_t ADone, uint64_t ATotal)>;

// Opens a file for reading; raises EException when it cannot.
using TReadOpener = std::function<std::unique_ptr<std::istream>(const std::filesystem::path&)>;
std::unique_ptr<std::istream> OpenReadOnly(const std::filesystem::path& APath);

// Opens AFileName for reading and returns true. Raises EException "File not
// found: <name>" when it does not exist. When it cannot be opened (another
// program holds it), the file is copied to "tabrino_<pid>_<name>" in the temp
// folder, replacing an earlier copy, and the copy is opened instead, with
// AUsedCopy set; the copy stays behind. If that fails too, the error of the
// copy passes on. AOpen is how files are opened, replaceable for tests.
bool OpenSharedReadStream(const std::string& AFileName, std::unique_ptr<std::istream>& AStream, bool& AUsedCopy,
                          const TReadOpener& AOpen = OpenReadOnly);
// Where OpenSharedReadStream puts its copy of AFileName.
std::filesystem::path SharedReadCopyPath(const std::string& AFileName);

// Writes through "<name>.tabrino.tmp" beside the target, then deletes the
// target and renames the temp file onto it. A writer that raises leaves the
// target untouched and the temp file on disk; a target that cannot be
// replaced raises EException naming the temp file, which holds the complete
// new content. Nothing is retried.
void SaveToFileViaTemp(const std::string& AFileName, const TWriteStreamProcRef& AWriter);
// The temp file SaveToFileViaTemp writes for AFileName.
std::filesystem::path SaveTempPath(const std::string& AFileName);

// The rest of the stream from its current position.
std::string ReadAllBytes(std::istream& AStream);

}  // namespace Tabrino
