#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace sorvel {

// A test in a folder of its own, in which the user's data folder lies too, so that tests leave nothing behind.
class DocumentFolderTest : public testing::Test {
 protected:
  DocumentFolderTest() {
    std::string name = std::filesystem::temp_directory_path() / "sorvel-folder-XXXXXX";
    folder = mkdtemp(name.data());
    const char* old = std::getenv("XDG_DATA_HOME");
    if (old != nullptr) oldDataHome = old;
    setenv("XDG_DATA_HOME", (folder / "data").c_str(), 1);
  }
  ~DocumentFolderTest() override {
    if (oldDataHome.empty()) {
      unsetenv("XDG_DATA_HOME");
    } else {
      setenv("XDG_DATA_HOME", oldDataHome.c_str(), 1);
    }
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
  }

  std::string Path(const std::string& name) const { return (folder / name).string(); }

  void Put(const std::string& name, const std::string& text) const { std::ofstream(Path(name)) << text; }

  // Of a file at a full path, or of one in the folder.
  std::string Contents(const std::string& name) const {
    std::ifstream file(folder / name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
  }

  std::filesystem::path folder;

 private:
  std::string oldDataHome;
};

}  // namespace sorvel
