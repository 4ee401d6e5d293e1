// The films that `sorvel render` writes, read by other readers than its own: libpng, zlib, and plain text. What ffmpeg
// makes of them is compared by scripts/compare-render.
//
// Rules with numbers. Pictures hold the greys 0 to 255 of the player's screen. A picture's time is a fraction of a
// second; equal pictures that follow each other are one. Raw pictures come at the common multiple of the rates.

#include <gtest/gtest.h>
#include <png.h>
#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "export/film_export.h"
#include "export/picture_folder_writer.h"
#include "support/test_program.h"
#include "support/test_streams.h"

namespace sorvel {
namespace {

using namespace teststreams;

using Words = std::vector<std::string>;

std::string AsText(const Bytes& bytes) {
  return std::string(bytes.begin(), bytes.end());
}

std::string Line(const Bytes& numbers) {
  std::string text;
  for (const uint8_t number : numbers) text += (text.empty() ? "" : " ") + std::to_string(number);
  return text;
}

// A film of two rates: two ticks of 1/4 s, then three of 1/6 s, of which the first two are the same.
Bytes TwoRates() {
  return Container(4, 1, 4, 1,
                   {CutRecord({"", 4, 1, 4, 1, 4, 4}, {Block(1, 1, 0xE4), Block(1, 1, 0xFF)}),
                    CutRecord({"", 4, 1, 4, 1, 6, 4}, {Block(2, 1, 0x00), Block(1, 1, 0xE4)})});
}

// The pictures of a Y4M file, each as a line of greys, with its rate and size in front.
std::string RawPictures(const std::string& file) {
  const size_t headEnd = file.find('\n');
  const std::string head = file.substr(0, headEnd);
  int width = 0;
  int height = 0;
  int rate = 0;
  if (std::sscanf(head.c_str(), "YUV4MPEG2 W%d H%d F%d:1 Ip A1:1 Cmono XCOLORRANGE=FULL", &width, &height, &rate) !=
      3) {
    return "another head: " + head;
  }
  std::string text = std::to_string(width) + "x" + std::to_string(height) + "@" + std::to_string(rate);
  const auto bytes = static_cast<size_t>(width * height);
  for (size_t at = headEnd + 1; at < file.size(); at += 6 + bytes) {
    if (file.substr(at, 6) != "FRAME\n" || at + 6 + bytes > file.size()) return text + " | broken";
    text +=
        " | " + Line(Bytes(file.begin() + static_cast<int>(at) + 6, file.begin() + static_cast<int>(at + 6 + bytes)));
  }
  return text;
}

struct Png {
  uint32_t width = 0;
  uint32_t height = 0;
  Bytes greys;
};

Png ReadPng(const Bytes& file) {
  Png picture;
  png_image image = {};
  image.version = PNG_IMAGE_VERSION;
  if (png_image_begin_read_from_memory(&image, file.data(), file.size()) == 0) {
    ADD_FAILURE() << image.message;
    return picture;
  }
  EXPECT_EQ(image.format, PNG_FORMAT_GRAY);
  image.format = PNG_FORMAT_GRAY;
  picture.width = image.width;
  picture.height = image.height;
  picture.greys.resize(PNG_IMAGE_SIZE(image));
  EXPECT_NE(png_image_finish_read(&image, nullptr, picture.greys.data(), 0, nullptr), 0) << image.message;
  return picture;
}

uint32_t Big32(const uint8_t* bytes) {
  return static_cast<uint32_t>(bytes[0]) << 24 | static_cast<uint32_t>(bytes[1]) << 16 |
         static_cast<uint32_t>(bytes[2]) << 8 | bytes[3];
}

Bytes Chunk(const std::string& type, const Bytes& data) {
  Bytes body = Join({Bytes(type.begin(), type.end()), data});
  const auto crc = static_cast<uint32_t>(crc32(0, body.data(), static_cast<uInt>(body.size())));
  Bytes size;
  Bytes sum;
  for (int shift = 24; shift >= 0; shift -= 8) {
    size.push_back(static_cast<uint8_t>(data.size() >> shift));
    sum.push_back(static_cast<uint8_t>(crc >> shift));
  }
  return Join({size, body, sum});
}

// An animated PNG as text: "pictures/plays", then each picture's time, rectangle and the whole screen behind it. Each
// picture is read by libpng from a PNG file of its own.
std::string AnimatedPictures(const Bytes& file) {
  std::ostringstream text;
  Bytes header;
  Bytes screen;
  uint32_t sequence = 0;
  std::vector<uint32_t> rect(4);
  uint32_t screenWidth = 0;
  const Bytes signature(file.begin(), file.begin() + 8);
  for (size_t at = 8; at + 12 <= file.size();) {
    const size_t length = Big32(&file[at]);
    if (at + 12 + length > file.size()) return "broken chunk";
    const std::string type(file.begin() + static_cast<int>(at) + 4, file.begin() + static_cast<int>(at) + 8);
    const Bytes data(file.begin() + static_cast<int>(at) + 8, file.begin() + static_cast<int>(at + 8 + length));
    const Bytes whole(file.begin() + static_cast<int>(at), file.begin() + static_cast<int>(at + 12 + length));
    EXPECT_EQ(whole, Chunk(type, data)) << "the checksum of " << type;
    at += length + 12;
    if (type == "IHDR") {
      header = data;
      screenWidth = Big32(&data[0]);
      screen.resize(static_cast<size_t>(screenWidth) * Big32(&data[4]));
    } else if (type == "acTL") {
      text << Big32(&data[0]) << "/" << Big32(&data[4]);
    } else if (type == "fcTL") {
      EXPECT_EQ(Big32(&data[0]), sequence++);
      for (size_t i = 0; i < 4; ++i) rect[i] = Big32(&data[4 + 4 * i]);
      text << " | " << (data[20] << 8 | data[21]) << "/" << (data[22] << 8 | data[23]) << " s " << rect[0] << "x"
           << rect[1] << "+" << rect[2] << "+" << rect[3];
      EXPECT_EQ(data[24], 0);
      EXPECT_EQ(data[25], 0);
    } else if (type == "IDAT" || type == "fdAT") {
      const bool isLater = type == "fdAT";
      if (isLater) {
        EXPECT_EQ(Big32(&data[0]), sequence++);
      }
      Bytes size = header;
      for (size_t i = 0; i < 8; ++i) size[i] = static_cast<uint8_t>(rect[i / 4] >> (24 - 8 * (i % 4)));
      const Bytes compressed(data.begin() + (isLater ? 4 : 0), data.end());
      const Png part = ReadPng(Join({signature, Chunk("IHDR", size), Chunk("IDAT", compressed), Chunk("IEND", {})}));
      for (uint32_t y = 0; y < part.height; ++y) {
        std::copy_n(&part.greys[y * part.width], part.width, &screen[(rect[3] + y) * screenWidth + rect[2]]);
      }
      text << ": " << Line(screen);
    }
  }
  return text.str();
}

class ConsoleRender : public testing::Test {
 protected:
  void Render(const Words& words) const {
    Words all = {"render"};
    all.insert(all.end(), words.begin(), words.end());
    const Answer run = folder.Sorvel(all);
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, "");
  }

  // The raw pictures of film.sv.
  std::string Raw(const Words& options = {}) const {
    Words words = {"film.sv", "out.y4m"};
    words.insert(words.end(), options.begin(), options.end());
    Render(words);
    return RawPictures(AsText(folder.Read("out.y4m")));
  }

  // Runs it with a failure about this name. Nothing comes or goes in the folder.
  void ExpectFailure(const Words& words, const std::string& about, int status = 1) const {
    SCOPED_TRACE(testing::PrintToString(words));
    const std::string before = folder.List();
    Words all = {"render"};
    all.insert(all.end(), words.begin(), words.end());
    const Answer run = folder.Sorvel(all);
    EXPECT_EQ(run.status, status) << run;
    EXPECT_TRUE(run.IsOneLineAbout(about)) << run;
    EXPECT_EQ(folder.List(), before);
  }

  const Folder folder;
};

TEST_F(ConsoleRender, RawPicturesComeAtTheCommonMultipleOfTheRates) {
  folder.Write("film.sv", TwoRates());
  EXPECT_EQ(Raw(),
            "4x1@12 | 0 85 170 255 | 0 85 170 255 | 0 85 170 255 | 255 255 255 255 | 255 255 255 255 | "
            "255 255 255 255 | 0 0 0 0 | 0 0 0 0 | 0 0 0 0 | 0 0 0 0 | 0 85 170 255 | 0 85 170 255");
}

TEST_F(ConsoleRender, RawPicturesGoToStandardOutputToo) {
  folder.Write("film.sv", TwoRates());
  const Answer run = folder.Sorvel({"render", "film.sv", "-"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  Render({"film.sv", "out.y4m"});
  EXPECT_EQ(run.out, AsText(folder.Read("out.y4m")));
}

TEST_F(ConsoleRender, OnlyTheRatesOfTheTicksThatAreWrittenCount) {
  folder.Write("film.sv", TwoRates());
  EXPECT_EQ(Raw({"--ticks", "1-1"}), "4x1@4 | 255 255 255 255");
  EXPECT_EQ(Raw({"--ticks", "3-4"}), "4x1@6 | 0 0 0 0 | 0 85 170 255");
}

TEST_F(ConsoleRender, PictureOfAnotherRateIsTheOneThatIsShownWhenItBegins) {
  folder.Write("film.sv", TwoRates());
  // At 0, 1/3, 2/3 and 1 s of a film that changes at 1/4, 1/2 and 5/6 s.
  EXPECT_EQ(Raw({"--fps", "3"}), "4x1@3 | 0 85 170 255 | 255 255 255 255 | 0 0 0 0");
  EXPECT_EQ(Raw({"--fps", "1"}), "4x1@1 | 0 85 170 255");
  EXPECT_EQ(Raw({"--fps", "8", "--ticks", "1-3"}),
            "4x1@8 | 255 255 255 255 | 255 255 255 255 | 0 0 0 0 | 0 0 0 0 | 0 0 0 0");
}

TEST_F(ConsoleRender, ScaleRepeatsPixels) {
  folder.Write("film.sv", TwoRates());
  EXPECT_EQ(Raw({"--ticks", "0-0", "--scale", "2"}), "8x2@4 | 0 0 85 85 170 170 255 255 0 0 85 85 170 170 255 255");
}

TEST_F(ConsoleRender, LoopWritesTheFilmAgain) {
  folder.Write("film.sv", TwoRates());
  EXPECT_EQ(Raw({"--ticks", "1-2", "--loop", "2", "--fps", "4"}),
            "4x1@4 | 255 255 255 255 | 0 0 0 0 | 255 255 255 255 | 0 0 0 0");
}

TEST_F(ConsoleRender, EverySourceIsRendered) {
  folder.Write("a.cut", SmallCutFile());
  ASSERT_EQ(folder.Sorvel({"compile", "a.cut", "b.ca"}).status, 0);
  const std::string list = "title\nauthor\n4, 2\na.cut\n";
  folder.Write("f.flm", Bytes(list.begin(), list.end()));
  Render({"b.ca", "of-ca.y4m"});
  Render({"a.cut", "of-cut.y4m"});
  Render({"f.flm", "of-film.y4m"});
  EXPECT_EQ(folder.Read("of-ca.y4m"), folder.Read("of-cut.y4m"));
  EXPECT_EQ(folder.Read("of-ca.y4m").empty(), false);
  EXPECT_EQ(RawPictures(AsText(folder.Read("of-film.y4m"))).substr(0, 4), "4x2@");
}

TEST_F(ConsoleRender, FolderHasEachPictureOnceAndItsDuration) {
  folder.Write("film.sv", TwoRates());
  Render({"film.sv", "out"});
  EXPECT_EQ(folder.List(), "film.sv out out/00001.png out/00002.png out/00003.png out/00004.png out/durations.txt");
  std::string pictures;
  for (const char* name : {"out/00001.png", "out/00002.png", "out/00003.png", "out/00004.png"}) {
    const Png picture = ReadPng(folder.Read(name));
    EXPECT_EQ(picture.width, 4U);
    EXPECT_EQ(picture.height, 1U);
    pictures += Line(picture.greys) + " | ";
  }
  EXPECT_EQ(pictures, "0 85 170 255 | 255 255 255 255 | 0 0 0 0 | 0 85 170 255 | ");
  EXPECT_EQ(AsText(folder.Read("out/durations.txt")),
            "ffconcat version 1.0\n"
            "\nfile 00001.png\nduration 0.250000\n# 1/4 s\n"
            "\nfile 00002.png\nduration 0.250000\n# 1/4 s\n"
            "\nfile 00003.png\nduration 0.333333\n# 1/3 s\n"
            "\nfile 00004.png\nduration 0.166667\n# 1/6 s\n");
}

TEST_F(ConsoleRender, FolderMayBeThereIfItIsEmpty) {
  folder.Write("film.sv", TwoRates());
  folder.MakeFolder("out.d");
  Render({"film.sv", "out.d", "--ticks", "0-0"});
  EXPECT_EQ(folder.List(), "film.sv out.d out.d/00001.png out.d/durations.txt");
  ExpectFailure({"film.sv", "out.d"}, "out.d: the folder isn't empty");
}

TEST_F(ConsoleRender, LeftoverOfAKilledRunIsReplaced) {
  folder.Write("film.sv", TwoRates());
  folder.MakeFolder("out.partial");
  folder.Write("out.partial/lock", {});
  folder.Write("out.partial/00007.png", {1});
  Render({"film.sv", "out", "--ticks", "0-0"});
  EXPECT_EQ(folder.List(), "film.sv out out/00001.png out/durations.txt");
}

TEST_F(ConsoleRender, ForeignFolderInTheWayStays) {
  folder.Write("film.sv", TwoRates());
  folder.MakeFolder("out.partial");
  folder.Write("out.partial/00001.png", {1});
  ExpectFailure({"film.sv", "out"}, "out.partial is in the way");
  folder.Write("out.partial/lock", {});
  folder.Write("out.partial/mine", {1});
  ExpectFailure({"film.sv", "out"}, "out.partial is in the way");
}

TEST_F(ConsoleRender, AnimatedPngHasTheRectanglesThatChange) {
  folder.Write(
      "film.sv",
      Container(6, 2, 4, 1,
                {CutRecord({"", 4, 1, 4, 1, 24, 4}, {Block(3, 1, 0xE4), Block(1, 1, 0xE4), Block(1, 1, 0xD4)})}));
  Render({"film.sv", "out.png"});
  EXPECT_EQ(AnimatedPictures(folder.Read("out.png")),
            "2/0 | 1/6 s 6x2+0+0: 0 0 85 170 255 0 0 0 0 0 0 0 | 1/24 s 1x1+3+0: 0 0 85 85 255 0 0 0 0 0 0 0");
}

TEST_F(ConsoleRender, AnimatedPngPlaysAsOftenAsItIsTold) {
  folder.Write("film.sv", TwoRates());
  for (const char* plays : {"0", "1", "7"}) {
    Render({"film.sv", "out.png", "--loop", plays, "--ticks", "2-3"});
    EXPECT_EQ(AnimatedPictures(folder.Read("out.png")), std::string("1/") + plays + " | 1/3 s 4x1+0+0: 0 0 0 0");
  }
}

TEST_F(ConsoleRender, PictureThatStandsLongerThanAFieldHoldsIsGivenTwice) {
  folder.Write("film.sv", Compiled({"", 4, 1, 4, 1, 1, 4},
                                   {Block(30000, 1, 0xE4), Still(30000, 1), Still(30000, 1), Block(1, 1, 0xFF)}));
  Render({"film.sv", "out.png"});
  EXPECT_EQ(AnimatedPictures(folder.Read("out.png")),
            "3/0 | 65535/1 s 4x1+0+0: 0 85 170 255 | 24465/1 s 1x1+0+0: 0 85 170 255 | 1/1 s 3x1+0+0: "
            "255 255 255 255");
}

TEST_F(ConsoleRender, AnyNumberOfThreadsWritesTheSamePictures) {
  folder.Write("film.sv", TwoRates());
  for (const std::string threads : {"1", "2", "5"}) {
    // Large enough to be shared.
    Render({"film.sv", threads + ".png", "--scale", "32", "--loop", "5", "--threads", threads});
    Render({"film.sv", "folder" + threads, "--scale", "32", "--threads", threads});
    EXPECT_EQ(folder.Read(threads + ".png"), folder.Read("1.png"));
    const Bytes list = folder.Read("folder" + threads + "/durations.txt");
    EXPECT_FALSE(list.empty());
    EXPECT_EQ(list, folder.Read("folder1/durations.txt"));
    for (const std::string name : {"/00001.png", "/00002.png", "/00003.png", "/00004.png"}) {
      EXPECT_FALSE(folder.Read("folder1" + name).empty());
      EXPECT_EQ(folder.Read("folder" + threads + name), folder.Read("folder1" + name));
    }
  }
}

TEST_F(ConsoleRender, GifSaysHowOftenItPlays) {
  folder.Write("film.sv", TwoRates());
  const auto repeats = [this](const Words& options) {
    Words words = {"film.sv", "out.gif"};
    words.insert(words.end(), options.begin(), options.end());
    Render(words);
    const std::string file = AsText(folder.Read("out.gif"));
    EXPECT_EQ(file.substr(0, 6), "GIF89a");
    const size_t at = file.find("NETSCAPE2.0");
    return at == std::string::npos ? -1 : static_cast<int>(static_cast<uint8_t>(file[at + 13]));
  };
  EXPECT_EQ(repeats({}), 0);
  EXPECT_EQ(repeats({"--loop", "1"}), -1);
  EXPECT_EQ(repeats({"--loop", "3"}), 2);
}

TEST_F(ConsoleRender, ExistingFileIsReplaced) {
  folder.Write("film.sv", TwoRates());
  folder.Write("out.png", {1, 2, 3});
  Render({"film.sv", "out.png", "--ticks", "0-0"});
  EXPECT_EQ(ReadPng(folder.Read("out.png")).width, 4U);
}

TEST_F(ConsoleRender, WrongOptionsAreUsage) {
  folder.Write("film.sv", TwoRates());
  ExpectFailure({"film.sv", "out.avi"}, "out.avi", 2);
  ExpectFailure({"film.sv", "out.gif", "--ticks", "5"}, "--ticks", 2);
  ExpectFailure({"film.sv", "out.gif", "--ticks", "3-2"}, "--ticks", 2);
  ExpectFailure({"film.sv", "out.gif", "--ticks", "-1-2"}, "--ticks", 2);
  ExpectFailure({"film.sv", "out.gif", "--scale", "0"}, "--scale", 2);
  ExpectFailure({"film.sv", "out.gif", "--scale", "33"}, "--scale", 2);
  ExpectFailure({"film.sv", "out.gif", "--loop", "-1"}, "--loop", 2);
  ExpectFailure({"film.sv", "out.mp4", "--loop", "0"}, "--loop", 2);
  ExpectFailure({"film.sv", "out.gif", "--fps", "0"}, "--fps", 2);
  ExpectFailure({"film.sv", "out.gif", "--fps", "1001"}, "--fps", 2);
  ExpectFailure({"film.sv"}, "usage", 2);
}

TEST_F(ConsoleRender, WhatCantBeRenderedLeavesNothing) {
  folder.Write("film.sv", TwoRates());
  Bytes damaged = TwoRates();
  damaged.resize(damaged.size() - 1);
  folder.Write("damaged.sv", damaged);
  folder.Write("empty.ca", Compiled({"", 4, 1, 0, 1, 24, 4}, {Block(1, 1, 0xE4)}));
  folder.Write("large.ca", Compiled({"", 4, 1, 4000, 1, 24, 4}, {Block(1, 1, 0xE4)}));
  std::vector<Bytes> records;
  for (const int32_t fps : {127, 113, 109, 107, 103}) {
    records.push_back(CutRecord({"", 4, 1, 4, 1, fps, 4}, {Block(1, 1, 0xE4)}));
  }
  folder.Write("rates.sv", Container(4, 1, 4, 1, records));
  for (const std::string out : {"out", "out.png", "out.gif", "out.mp4", "out.webm", "out.mkv", "out.y4m"}) {
    ExpectFailure({"none.sv", out}, "none.sv");
    ExpectFailure({"damaged.sv", out}, "damaged.sv");
    ExpectFailure({"empty.ca", out}, "empty.ca");
    ExpectFailure({"large.ca", out, "--scale", "32"}, "large.ca");
    ExpectFailure({"rates.sv", out}, "no common multiple");
    ExpectFailure({"film.sv", out, "--ticks", "0-5"}, "the film has the ticks 0 to 4");
    ExpectFailure({"film.sv", "none/" + out}, out);
  }
}

TEST_F(ConsoleRender, FullDeviceIsAFailure) {
  folder.Write("film.sv", TwoRates());
  for (const std::string out : {"full.png", "full.gif", "full.mp4", "full.mkv", "full.y4m"}) {
    ASSERT_EQ(symlink("/dev/full", folder.Path(out).c_str()), 0);
    ExpectFailure({"film.sv", out}, out);
  }
}

// A film that a writer takes in this process.
class RenderedFilm {
 public:
  explicit RenderedFilm(const Bytes& bytes, const ExportOptions& options = {}) : input(bytes) {
    std::string problem;
    EXPECT_TRUE(shown.Read(&input.stream, "name", &problem)) << problem;
    EXPECT_TRUE(film.Open(&input.stream, shown, options, &problem)) << problem;
  }

  FilmExport film;

 private:
  Input input;
  ShownFilm shown;
};

TEST_F(ConsoleRender, StoppedFolderLeavesNothing) {
  for (int32_t stop = 1; stop <= 5; ++stop) {
    RenderedFilm rendered(TwoRates());
    {
      PictureFolderWriter writer(folder.Path("out"));
      EXPECT_FALSE(rendered.film.Run(&writer, [stop](int32_t done, int32_t total) {
        EXPECT_EQ(total, 5);
        return done < stop;
      }));
      EXPECT_EQ(writer.Problem(), WriteProblem::kNone);
      EXPECT_TRUE(folder.Has("out.partial"));
    }
    EXPECT_EQ(folder.List(), "");
  }
}

TEST_F(ConsoleRender, FolderThatAnotherProgramWritesIsLeftAlone) {
  RenderedFilm first(TwoRates());
  RenderedFilm second(TwoRates());
  PictureFolderWriter writer(folder.Path("out"));
  EXPECT_TRUE(first.film.Run(&writer, [&](int32_t done, int32_t /*total*/) {
    if (done != 3) return true;
    const std::string before = folder.List();
    PictureFolderWriter other(folder.Path("out"));
    EXPECT_FALSE(second.film.Run(&other, {}));
    EXPECT_NE(other.Problem(), WriteProblem::kNone);
    EXPECT_EQ(folder.List(), before);
    return true;
  }));
  EXPECT_EQ(folder.List(), "out out/00001.png out/00002.png out/00003.png out/00004.png out/durations.txt");
}

}  // namespace
}  // namespace sorvel
