#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

#include "console/commands.h"
#include "console/console_files.h"
#include "console/importer.h"

namespace sorvel::console {

namespace {

constexpr int32_t kMostFrames = 65535;
constexpr int32_t kLongestHold = 32767;  // what a cut file can say
constexpr int32_t kHighestRate = 127;    // what a stream can say

bool ParseSettings(const Arguments& arguments, ImportSettings* settings) {
  if (!NumberOption(arguments, "--fps", 1, kHighestRate, &settings->fps) ||
      !NumberOption(arguments, "--width", 1, kLargestPictureSide, &settings->width) ||
      !NumberOption(arguments, "--height", 1, kLargestPictureSide, &settings->height) ||
      !NumberOption(arguments, "--antialias", 0, 2, &settings->antialias) ||
      !NumberOption(arguments, "--hold", 1, kLongestHold, &settings->hold)) {
    return false;
  }
  const std::string* color = arguments.Find("--transparent");
  if (color == nullptr) return true;
  const bool isColor = color->size() == 6 && std::all_of(color->begin(), color->end(),
                                                         [](unsigned char digit) { return std::isxdigit(digit) != 0; });
  if (!isColor) {
    FailUsage("option --transparent takes a colour RRGGBB");
    return false;
  }
  const unsigned long value = std::stoul(*color, nullptr, 16);
  settings->hasTransparent = true;
  for (size_t i = 0; i < 3; ++i) settings->transparent[i] = static_cast<uint8_t>(value >> (16 - 8 * i));
  return true;
}

}  // namespace

int RunImport(const Arguments& arguments) {
  const std::string& out = arguments.Plain()[0];
  const std::vector<std::string> pictures(arguments.Plain().begin() + 1, arguments.Plain().end());
  ImportSettings settings;
  if (!ParseSettings(arguments, &settings)) return kUsage;
  if (pictures.size() > kMostFrames) return FailUsage("a cut has no more than 65535 frames");
  Importer importer(settings);
  const auto progress = [](int32_t done, int32_t total) {
    ShowProgress("picture", done, total);
    return true;
  };
  if (!importer.Add(pictures, progress)) return kFailed;
  ClearProgress();
  return WriteOutput(out, [&importer](OutputFile* file) { return importer.Result()->Save(file->Stream()); });
}

}  // namespace sorvel::console
