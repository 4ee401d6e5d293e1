// The flood fill beside OpenCV's, on the same pictures: 8 bits a pixel, connected by four, exactly equal pixels, plain
// ink, the whole bounding box as a result. The colour changes from round to round, so that nothing has to be put back.

#include <benchmark/benchmark.h>

#include <opencv2/imgproc.hpp>

#include "imaging/indexed_image.h"
#include "ink_pictures.h"

namespace sorvel {
namespace {

using inkbench::kHeight;
using inkbench::kWidth;
using inkbench::Picture;

void FillHere(benchmark::State& state) {
  const inkbench::Pixels pixels = inkbench::PixelsOf(static_cast<Picture>(state.range(0)));
  state.SetLabel(inkbench::kPictureNames[state.range(0)]);
  IndexedImage image;
  image.Resize(kWidth, kHeight, 0);
  for (int32_t y = 0; y < kHeight; ++y) image.WriteRow(0, y, kWidth, pixels.data() + y * kWidth);
  int32_t color = 2;
  for (auto _ : state) {
    Rect rect;
    benchmark::DoNotOptimize(image.FloodFill(0, 0, {7, 0, 0, color}, 0, &rect));
    benchmark::DoNotOptimize(rect);
    color ^= 1;
  }
}
BENCHMARK(FillHere)->DenseRange(0, 4)->Unit(benchmark::kMicrosecond);

void FillThere(benchmark::State& state) {
  const inkbench::Pixels pixels = inkbench::PixelsOf(static_cast<Picture>(state.range(0)));
  state.SetLabel(inkbench::kPictureNames[state.range(0)]);
  cv::setNumThreads(1);
  cv::Mat image(kHeight, kWidth, CV_8UC1);
  std::copy(pixels.begin(), pixels.end(), image.data);
  int32_t color = 2;
  for (auto _ : state) {
    cv::Rect rect;
    benchmark::DoNotOptimize(
        cv::floodFill(image, cv::Point(0, 0), cv::Scalar(color), &rect, cv::Scalar(), cv::Scalar(), 4));
    benchmark::DoNotOptimize(rect);
    color ^= 1;
  }
}
BENCHMARK(FillThere)->DenseRange(0, 4)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace sorvel

BENCHMARK_MAIN();
