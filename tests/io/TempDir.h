// A fresh folder per test, removed with everything in it afterwards.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace TabrinoTest {

class TTempDir {
 public:
  TTempDir() {
    static int Counter = 0;
    FPath = std::filesystem::temp_directory_path() /
            ("tabrino_io_test_" + std::to_string(getpid()) + "_" + std::to_string(++Counter));
    std::filesystem::remove_all(FPath);
    std::filesystem::create_directories(FPath);
  }
  ~TTempDir() {
    std::error_code Ignored;
    std::filesystem::permissions(FPath, std::filesystem::perms::owner_all, std::filesystem::perm_options::add, Ignored);
    std::filesystem::remove_all(FPath, Ignored);
  }
  TTempDir(const TTempDir&) = delete;
  TTempDir& operator=(const TTempDir&) = delete;

  const std::filesystem::path& Path() const { return FPath; }
  std::string File(const std::string& Name) const { return (FPath / Name).string(); }

 private:
  std::filesystem::path FPath;
};

inline std::string ReadFile(const std::filesystem::path& Path) {
  std::ifstream In(Path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(In), std::istreambuf_iterator<char>());
}

inline void WriteFile(const std::filesystem::path& Path, const std::string& Bytes) {
  std::ofstream Out(Path, std::ios::binary | std::ios::trunc);
  Out << Bytes;
}

}  // namespace TabrinoTest
