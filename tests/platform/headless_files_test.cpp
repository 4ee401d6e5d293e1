#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "platform/files.h"
#include "platform/replacement.h"

namespace sorvel::platform {
namespace {

std::string Content(const std::string& path) {
  FILE* file = OpenStdioFile(path.c_str(), "rb");
  if (file == nullptr) return "none";
  std::string text;
  for (int byte = std::fgetc(file); byte != EOF; byte = std::fgetc(file)) text.push_back(static_cast<char>(byte));
  std::fclose(file);
  return text;
}

void Write(const std::string& path, const char* text) {
  FILE* file = OpenStdioFile(path.c_str(), "wb");
  ASSERT_NE(file, nullptr);
  std::fputs(text, file);
  std::fclose(file);
}

TEST(HeadlessFiles, RenamingNeverWritesOverAnotherFile) {
  const std::string folder = testing::TempDir() + "sorvel-rename-" + std::to_string(getpid());
  const std::string a = folder + "-a";
  const std::string b = folder + "-b";
  const std::string c = folder + "-c";
  Write(a, "one");
  Write(b, "two");
  EXPECT_FALSE(MoveFileAt(a, b));
  EXPECT_EQ(Content(b), "two");
  EXPECT_TRUE(MoveFileAt(a, c));
  EXPECT_EQ(Content(c), "one");
  EXPECT_FALSE(PathExists(a.c_str()));
  EXPECT_FALSE(MoveFileAt(a, folder + "-d"));
  DeletePath(b.c_str());
  DeletePath(c.c_str());
}

}  // namespace
}  // namespace sorvel::platform
