#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "platform/text.h"
#include "support/places.h"
#include "support/test_scripts.h"

namespace sorvel {
namespace {

using namespace teststreams;
using Json = nlohmann::json;

std::string ReadText(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

std::vector<std::string> ScriptNames() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(kScriptsPath)) {
    if (entry.path().extension() == ".sorvel") names.push_back(entry.path().stem().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

// Compares what the script left with what is expected of it: an object by the keys that are expected, all else whole.
void Compare(const Json& expected, const Json& actual, const std::string& where) {
  if (expected.is_object() && actual.is_object()) {
    for (const auto& [name, value] : expected.items()) {
      ASSERT_TRUE(actual.contains(name)) << where << "." << name;
      Compare(value, actual[name], where + "." + name);
    }
  } else if (expected.is_array() && actual.is_array() && expected.size() == actual.size()) {
    for (size_t i = 0; i < expected.size(); ++i) {
      Compare(expected[i], actual[i], where + "[" + std::to_string(i) + "]");
    }
  } else if (expected.is_array() && actual.is_string()) {
    // A picture in place of its checksum; the view has a byte for each pixel, a cell half of one.
    const std::vector<std::string> rows = expected.get<std::vector<std::string>>();
    const bool isView = where.size() >= 5 && where.compare(where.size() - 5, 5, ".view") == 0;
    EXPECT_EQ(actual.get<std::string>(), isView ? ViewChecksum(rows) : CellChecksum(rows)) << where;
  } else {
    EXPECT_EQ(expected, actual) << where;
  }
}

// The words of a grey map of either kind: the head, and each grey as a number.
std::vector<std::string> GreyMapWords(const std::string& text) {
  std::istringstream in(text);
  std::vector<std::string> words(4);
  for (std::string& word : words) in >> word;
  if (words[0] == "P5") {
    in.get();
    for (int grey = in.get(); grey != EOF; grey = in.get()) words.push_back(std::to_string(grey));
  } else {
    for (std::string word; in >> word;) words.push_back(word);
  }
  words[0].clear();
  return words;
}

class Scripts : public testing::TestWithParam<std::string> {};

TEST_P(Scripts, LeavesWhatIsExpected) {
  const std::string name = GetParam();
  const std::string base = std::string(kScriptsPath) + "/" + name;
  const Folder folder;
  const Answer run = folder.Sorvel({"run", base + ".sorvel", "--settings", "settings.ini"});
  EXPECT_EQ(run.status, 0) << run;
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "");

  std::vector<std::string> compared;
  for (const auto& entry : std::filesystem::directory_iterator(kScriptsPath)) {
    const std::string file = entry.path().filename().string();
    if (file.rfind(name + ".", 0) != 0 || file == name + ".sorvel") continue;
    const std::string output = file.substr(name.size() + 1);
    SCOPED_TRACE(output);
    compared.push_back(output);
    const std::string expected = ReadText(entry.path().string());
    std::string actual = ReadText(folder.Path(output));
    const std::string extension = entry.path().extension().string();
    if (extension == ".json") {
      for (size_t at = 0; (at = actual.find(folder.path, at)) != std::string::npos;) {
        actual.replace(at, folder.path.size(), "/FOLDER");
      }
      Compare(Json::parse(expected, nullptr, false), Json::parse(actual, nullptr, false), "");
    } else if (extension == ".pgm") {
      EXPECT_EQ(GreyMapWords(expected), GreyMapWords(actual));
    } else {
      std::string text;
      EXPECT_TRUE(platform::ShiftJisToUtf8(actual, &text));
      EXPECT_EQ(expected, text);
    }
  }
  // No state is written for nothing.
  for (const auto& entry : std::filesystem::directory_iterator(folder.path)) {
    const std::string output = entry.path().filename().string();
    if (entry.path().extension() != ".json" && entry.path().extension() != ".pgm") continue;
    EXPECT_NE(std::find(compared.begin(), compared.end(), output), compared.end()) << output;
  }
}

INSTANTIATE_TEST_SUITE_P(All, Scripts, testing::ValuesIn(ScriptNames()),
                         [](const testing::TestParamInfo<std::string>& script) { return script.param; });

}  // namespace
}  // namespace sorvel
