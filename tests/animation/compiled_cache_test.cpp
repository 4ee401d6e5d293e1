#include "animation/compiled_cache.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "document/cut.h"
#include "support/test_program.h"
#include "support/test_streams.h"

namespace sorvel {
namespace {

using namespace teststreams;

TEST(CompiledCache, OpensAWholeStreamAtItsStart) {
  Folder folder;
  folder.Write("a.ca", SmallCutCompiled());
  FileStream cache(OpenCache(folder.Path("a.ca").c_str()));
  ASSERT_TRUE(cache.IsOpen());
  EXPECT_EQ(cache.Tell(), 0);
  cache.Close();
}

TEST(CompiledCache, DoesNotOpenWhatIsNoWholeStream) {
  Folder folder;
  folder.Write("empty.ca", {});
  folder.Write("film.ca", Container(4, 1, 4, 1, {CutRecord({}, {Block(1, 1, 0)})}));
  folder.Write("short.ca", Part(SmallCutCompiled(), 0, SmallCutCompiled().size() - 1));
  folder.MakeFolder("folder.ca");
  for (const char* name : {"gone.ca", "empty.ca", "film.ca", "short.ca", "folder.ca"}) {
    EXPECT_EQ(OpenCache(folder.Path(name).c_str()), nullptr) << name;
  }
}

TEST(CompiledCache, KeepsACopyOfTheWholeStream) {
  Folder folder;
  Input input(SmallCutCompiled());
  input.stream.Seek(6, kFromStart);
  EXPECT_TRUE(KeepCache(&input.stream, folder.Path("a.ca").c_str()));
  EXPECT_EQ(folder.Read("a.ca"), SmallCutCompiled());
  EXPECT_FALSE(KeepCache(&input.stream, folder.Path("none/a.ca").c_str()));
}

// A size field that begins with a zero byte reads as an empty credit. The frame data are written behind that byte.
TEST(CompiledCache, PatchesAStreamWhoseSizeFieldReadsAsTheCredit) {
  const std::unique_ptr<Cut> cut = MakeCut(32, 16, {""});
  cut->frameWidth = 24;
  cut->frameHeight = 12;
  Frame* frame = cut->frames.At(0);
  frame->time = 7;
  frame->x = 5;
  frame->y = -2;
  cut->stateFlags = (cut->stateFlags & ~uint32_t{kImagesStale}) | kTimingStale;
  Output output;
  output.stream.Write("CA", 2);
  output.stream.Write(Bytes(62).data(), 62);
  output.stream.Seek(0, kFromStart);
  EXPECT_TRUE(cut->PatchCompiledStream(&output.stream));
  EXPECT_EQ(output.Written(),
            Join({Hex("43 41 00 20 00 10 00 18 00 0C 00 18 04 07 00 01 00 32 05 00 FE FF"), Bytes(42)}));
  EXPECT_FALSE(cut->Has(kTimingStale));
}

}  // namespace
}  // namespace sorvel
