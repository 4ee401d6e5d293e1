#include "console/video_writer.h"

#ifdef SORVEL_VIDEO

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/opt.h>
}

#include <dlfcn.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <deque>
#include <utility>
#include <vector>

#include "foundation/job_line.h"
#include "foundation/replacement_file.h"

namespace sorvel::console {

namespace {

// clang-format off
#define SORVEL_LIBAV_FUNCTIONS(USE) \
  USE(av_dict_free) USE(av_dict_set) USE(av_dict_set_int) USE(av_frame_alloc) USE(av_frame_free) \
  USE(av_frame_get_buffer) USE(av_frame_make_writable) USE(av_free) USE(av_freep) USE(av_guess_format) \
  USE(av_log_set_level) USE(av_malloc) USE(av_opt_set_int) USE(av_packet_alloc) USE(av_packet_free) \
  USE(av_packet_rescale_ts) USE(av_packet_unref) USE(av_rescale_q) USE(av_strerror) USE(av_write_frame) \
  USE(av_write_trailer) USE(avcodec_alloc_context3) USE(avcodec_find_encoder_by_name) USE(avcodec_free_context) \
  USE(avcodec_open2) USE(avcodec_parameters_from_context) USE(avcodec_receive_packet) USE(avcodec_send_frame) \
  USE(avformat_alloc_output_context2) USE(avformat_free_context) USE(avformat_new_stream) USE(avformat_write_header) \
  USE(avio_alloc_context) USE(avio_context_free) USE(avio_flush)
// clang-format on

// The functions of libavformat and of the libraries that it brings. They are loaded when a video is to be written:
// linking them would load more than a hundred libraries at every start of the program.
struct Libav {
// NOLINTNEXTLINE(bugprone-macro-parentheses)
#define SORVEL_DECLARE(name) decltype(&::name) name = nullptr;
  SORVEL_LIBAV_FUNCTIONS(SORVEL_DECLARE)
#undef SORVEL_DECLARE

  // False if this system lacks the library.
  bool Load() {
    if (library == nullptr) library = dlopen("libavformat.so." AV_STRINGIFY(LIBAVFORMAT_VERSION_MAJOR), RTLD_LAZY);
    bool hasAll = library != nullptr;
#define SORVEL_LOAD(name) \
  hasAll = hasAll && ((name) = reinterpret_cast<decltype(name)>(dlsym(library, #name))) != nullptr;
    SORVEL_LIBAV_FUNCTIONS(SORVEL_LOAD)
#undef SORVEL_LOAD
    return hasAll;
  }

  void* library = nullptr;  // never closed
};

Libav libav;

struct Option {
  const char* name;
  const char* value;
};

struct Kind {
  const char* container;
  const char* codec;
  AVPixelFormat pixels;
  int64_t rate;  // units of time a second, 0 for those of the film
  std::vector<Option> options;
};

constexpr int kIoBytes = 1 << 16;
constexpr int64_t kGifRate = 100;
constexpr int64_t kFinestRate = 1000000;
constexpr int64_t kLongestGifTime = 65535;
constexpr uint8_t kNoColor = 128;  // of the two colour planes

const Kind& KindOf(VideoKind kind) {
  static const Kind kKinds[] = {
      {"gif", "gif", AV_PIX_FMT_PAL8, kGifRate, {}},
      {"mp4",
       "libx264",
       AV_PIX_FMT_YUV420P,
       0,
       {{"preset", "medium"}, {"tune", "animation"}, {"crf", "15"}, {"deblock", "-3:-3"}}},
      {"webm", "libvpx-vp9", AV_PIX_FMT_YUV420P, 0, {{"crf", "16"}, {"b", "0"}, {"cpu-used", "4"}, {"row-mt", "1"}}},
      {"matroska",
       "ffv1",
       AV_PIX_FMT_GRAY8,
       0,
       {{"level", "3"}, {"slicecrc", "1"}, {"coder", "range_def"}, {"context", "1"}, {"g", "120"}}},
  };
  return kKinds[static_cast<size_t>(kind)];
}

// A grey from 0 to 255 as luma from 16 to 235, which is what players expect.
constexpr auto kLuma = [] {
  std::array<uint8_t, 256> luma{};
  for (int grey = 0; grey < 256; ++grey)
    luma[static_cast<size_t>(grey)] = static_cast<uint8_t>(16 + (grey * 219 + 127) / 255);
  return luma;
}();

class VideoWriter final : public FilmWriter {
 public:
  VideoWriter(VideoKind videoKind, std::string filePath)
      : isGif(videoKind == VideoKind::kGif), kind(KindOf(videoKind)), path(std::move(filePath)) {}
  ~VideoWriter() override;

  bool Begin(const FilmForm& form) override;
  bool Add(const FilmPicture& picture) override;
  bool Finish() override;

 private:
  bool FailBy(int error);
  bool OpenCodec();
  bool OpenContainer();
  int64_t PlaceOf(int64_t time) const;
  void Draw(const FilmPicture& picture);
  bool Send(int64_t start, int64_t duration);
  bool TakePackets();
  bool WriteWaiting();

  // One reader or writer of the file, at its own place.
  struct FileEnd {
    VideoWriter* writer = nullptr;
    int64_t place = 0;
  };
  static int WriteBytes(void* user, uint8_t* bytes, int count);
  static int ReadBytes(void* user, uint8_t* bytes, int count);
  static int64_t SeekBytes(void* user, int64_t offset, int whence);
  static AVIOContext* OpenEnd(FileEnd* end, bool writes);
  static void CloseEnd(AVIOContext* io);
  static int OpenForReading(AVFormatContext* context, AVIOContext** io, const char* url, int flags,
                            AVDictionary** options);
  static int CloseAfterReading(AVFormatContext* context, AVIOContext* io);

  bool isGif;
  const Kind& kind;
  std::string path;
  ReplacementFile file;
  int writeError = 0;
  FilmForm film;
  int64_t rate = 0;
  FileEnd out;
  FileEnd in;
  AVFormatContext* container = nullptr;
  AVCodecContext* codec = nullptr;
  AVStream* stream = nullptr;
  AVFrame* frame = nullptr;
  AVPacket* packet = nullptr;
  AVPacket* waiting = nullptr;  // written when the next one comes or the film ends
  bool hasPackets = false;
  int64_t firstDts = 0;
  // Starts and durations of the pictures that the encoder has.
  std::deque<std::pair<int64_t, int64_t>> times;
  int64_t lastDuration = 0;
};

VideoWriter::~VideoWriter() {
  libav.av_packet_free(&waiting);
  libav.av_packet_free(&packet);
  libav.av_frame_free(&frame);
  libav.avcodec_free_context(&codec);
  if (container == nullptr) return;
  CloseEnd(container->pb);
  libav.avformat_free_context(container);
}

int VideoWriter::WriteBytes(void* user, uint8_t* bytes, int count) {
  auto* end = static_cast<FileEnd*>(user);
  FILE* file = end->writer->file.stream.file;
  errno = 0;
  if (fseeko(file, end->place, SEEK_SET) == 0 &&
      std::fwrite(bytes, 1, static_cast<size_t>(count), file) == static_cast<size_t>(count)) {
    end->place += count;
    return count;
  }
  end->writer->writeError = errno != 0 ? errno : EIO;
  return AVERROR(end->writer->writeError);
}

int VideoWriter::ReadBytes(void* user, uint8_t* bytes, int count) {
  auto* end = static_cast<FileEnd*>(user);
  FILE* file = end->writer->file.stream.file;
  if (fseeko(file, end->place, SEEK_SET) != 0) return AVERROR(errno);
  const size_t got = std::fread(bytes, 1, static_cast<size_t>(count), file);
  end->place += static_cast<int64_t>(got);
  return got > 0 ? static_cast<int>(got) : AVERROR_EOF;
}

int64_t VideoWriter::SeekBytes(void* user, int64_t offset, int whence) {
  auto* end = static_cast<FileEnd*>(user);
  FILE* file = end->writer->file.stream.file;
  const int origin = whence & ~AVSEEK_FORCE;
  if (origin == SEEK_SET) return end->place = offset;
  if (origin == SEEK_CUR) return end->place += offset;
  if (fseeko(file, 0, SEEK_END) != 0) return AVERROR(errno);
  const int64_t size = ftello(file);
  return origin == AVSEEK_SIZE ? size : end->place = size + offset;
}

AVIOContext* VideoWriter::OpenEnd(FileEnd* end, bool writes) {
  auto* buffer = static_cast<uint8_t*>(libav.av_malloc(kIoBytes));
  if (buffer == nullptr) return nullptr;
  AVIOContext* io = libav.avio_alloc_context(buffer, kIoBytes, writes ? 1 : 0, end, ReadBytes, WriteBytes, SeekBytes);
  if (io == nullptr) libav.av_free(buffer);
  return io;
}

void VideoWriter::CloseEnd(AVIOContext* io) {
  if (io != nullptr) libav.av_freep(&io->buffer);
  libav.avio_context_free(&io);
}

// To bring its index to the front, the container reads what it wrote.
int VideoWriter::OpenForReading(AVFormatContext* context, AVIOContext** io, const char* /*url*/, int /*flags*/,
                                AVDictionary** /*options*/) {
  auto* writer = static_cast<VideoWriter*>(context->opaque);
  writer->in = {writer, 0};
  *io = OpenEnd(&writer->in, false);
  return *io != nullptr ? 0 : AVERROR(ENOMEM);
}

int VideoWriter::CloseAfterReading(AVFormatContext* /*context*/, AVIOContext* io) {
  CloseEnd(io);
  return 0;
}

// Notes a failure of the library, or the one of the file that it comes from.
bool VideoWriter::FailBy(int error) {
  if (writeError != 0) return FailWith(writeError);
  char text[AV_ERROR_MAX_STRING_SIZE] = "";
  libav.av_strerror(error, text, sizeof(text));
  return error == AVERROR(ENOMEM) ? Fail("not enough memory") : Fail(std::string(kind.codec) + ": " + text);
}

bool VideoWriter::Begin(const FilmForm& form) {
  film = form;
  rate = kind.rate != 0 ? kind.rate : std::min(form.rate, kFinestRate);
  libav.av_log_set_level(AV_LOG_QUIET);
  if (!file.OpenUtf8(path)) return FailOf(file);
  return OpenCodec() && OpenContainer();
}

bool VideoWriter::OpenCodec() {
  const AVCodec* encoder = libav.avcodec_find_encoder_by_name(kind.codec);
  const AVOutputFormat* format = libav.av_guess_format(kind.container, nullptr, nullptr);
  if (encoder == nullptr || format == nullptr) {
    return Fail(std::string("this system's libavcodec and libavformat lack ") + kind.codec + " in " + kind.container);
  }
  codec = libav.avcodec_alloc_context3(encoder);
  frame = libav.av_frame_alloc();
  packet = libav.av_packet_alloc();
  waiting = libav.av_packet_alloc();
  if (codec == nullptr || frame == nullptr || packet == nullptr || waiting == nullptr) return FailBy(AVERROR(ENOMEM));
  const bool isHalved = kind.pixels == AV_PIX_FMT_YUV420P;
  // H.264 of even size is what all players have; VP9 takes any size.
  const bool isEven = codec->codec_id == AV_CODEC_ID_H264;
  codec->width = film.width + (isEven ? film.width % 2 : 0);
  codec->height = film.height + (isEven ? film.height % 2 : 0);
  codec->pix_fmt = kind.pixels;
  codec->time_base = {1, static_cast<int>(rate)};
  codec->framerate = {film.fastest, 1};
  // 0 leaves the number to the codec.
  codec->thread_count = RequestedThreads();
  if (isHalved) {
    codec->color_range = AVCOL_RANGE_MPEG;
    codec->colorspace = AVCOL_SPC_BT709;
    codec->color_primaries = AVCOL_PRI_BT709;
    codec->color_trc = AVCOL_TRC_BT709;
  } else {
    codec->color_range = AVCOL_RANGE_JPEG;
  }
  if ((format->flags & AVFMT_GLOBALHEADER) != 0) codec->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
  AVDictionary* options = nullptr;
  for (const Option& option : kind.options) libav.av_dict_set(&options, option.name, option.value, 0);
  const int opened = libav.avcodec_open2(codec, encoder, &options);
  libav.av_dict_free(&options);
  if (opened < 0) return FailBy(opened);
  frame->format = codec->pix_fmt;
  frame->width = codec->width;
  frame->height = codec->height;
  frame->color_range = codec->color_range;
  const int allocated = libav.av_frame_get_buffer(frame, 0);
  if (allocated < 0) return FailBy(allocated);
  const int halfRows = (codec->height + 1) / 2;
  for (int plane = 1; isHalved && plane < 3; ++plane) {
    std::memset(frame->data[plane], kNoColor,
                static_cast<size_t>(frame->linesize[plane]) * static_cast<size_t>(halfRows));
  }
  if (isGif) {
    for (uint32_t i = 0; i < 256; ++i) {
      const uint32_t color = 0xFF000000U | i * 0x010101U;
      std::memcpy(frame->data[1] + 4 * i, &color, sizeof(color));
    }
  }
  return true;
}

bool VideoWriter::OpenContainer() {
  const int made = libav.avformat_alloc_output_context2(&container, nullptr, kind.container, nullptr);
  if (made < 0) return FailBy(made);
  out.writer = this;
  container->pb = OpenEnd(&out, true);
  container->opaque = this;
  container->io_open = OpenForReading;
  container->io_close2 = CloseAfterReading;
  stream = libav.avformat_new_stream(container, nullptr);
  if (container->pb == nullptr || stream == nullptr) return FailBy(AVERROR(ENOMEM));
  container->flags |= AVFMT_FLAG_CUSTOM_IO | AVFMT_FLAG_BITEXACT;
  stream->time_base = codec->time_base;
  const int copied = libav.avcodec_parameters_from_context(stream->codecpar, codec);
  if (copied < 0) return FailBy(copied);
  // Of a GIF: without end, once, or so many times after the first.
  if (isGif)
    libav.av_opt_set_int(container->priv_data, "loop", film.plays == 0 ? 0 : film.plays == 1 ? -1 : film.plays - 1, 0);
  AVDictionary* options = nullptr;
  libav.av_dict_set(&options, "movflags", "+faststart", 0);
  libav.av_dict_set_int(&options, "movie_timescale", rate, 0);
  const int begun = libav.avformat_write_header(container, &options);
  libav.av_dict_free(&options);
  return begun >= 0 || FailBy(begun);
}

// A time in the unit of the codec, rounded from the exact one so that no error adds up.
int64_t VideoWriter::PlaceOf(int64_t time) const {
  return TimeInUnits(time, film.rate, rate);
}

bool VideoWriter::Add(const FilmPicture& picture) {
  int64_t start = PlaceOf(picture.start);
  const int64_t end = PlaceOf(picture.start + picture.duration);
  if (start == end) return true;
  const int writable = libav.av_frame_make_writable(frame);
  if (writable < 0) return FailBy(writable);
  Draw(picture);
  const int64_t longest = isGif ? kLongestGifTime : INT64_MAX;
  while (start < end) {
    const int64_t duration = std::min(end - start, longest);
    if (!Send(start, duration)) return false;
    start += duration;
  }
  return true;
}

void VideoWriter::Draw(const FilmPicture& picture) {
  const bool isHalved = kind.pixels == AV_PIX_FMT_YUV420P;
  for (int y = 0; y < codec->height; ++y) {
    const uint8_t* from =
        picture.pixels + static_cast<size_t>(std::min(y, film.height - 1)) * static_cast<size_t>(film.width);
    uint8_t* to = frame->data[0] + static_cast<ptrdiff_t>(y) * frame->linesize[0];
    if (isHalved) {
      std::transform(from, from + film.width, to, [](uint8_t grey) { return kLuma[grey]; });
    } else {
      std::copy_n(from, film.width, to);
    }
    std::fill(to + film.width, to + codec->width, to[film.width - 1]);
  }
}

bool VideoWriter::Send(int64_t start, int64_t duration) {
  frame->pts = start;
  times.emplace_back(start, duration);
  lastDuration = duration;
  const int sent = libav.avcodec_send_frame(codec, frame);
  return sent < 0 ? FailBy(sent) : TakePackets();
}

bool VideoWriter::TakePackets() {
  while (true) {
    const int taken = libav.avcodec_receive_packet(codec, packet);
    if (taken == AVERROR(EAGAIN) || taken == AVERROR_EOF) return true;
    if (taken < 0) return FailBy(taken);
    const auto own =
        std::find_if(times.begin(), times.end(), [this](const auto& time) { return time.first == packet->pts; });
    if (own != times.end()) {
      packet->duration = own->second;
      times.erase(own);
    }
    if (!hasPackets) firstDts = packet->dts;
    if (hasPackets && !WriteWaiting()) return false;
    hasPackets = true;
    std::swap(packet, waiting);
  }
}

bool VideoWriter::WriteWaiting() {
  // The end is rounded as the start of the next picture is.
  const int64_t end = libav.av_rescale_q(waiting->pts + waiting->duration, codec->time_base, stream->time_base);
  libav.av_packet_rescale_ts(waiting, codec->time_base, stream->time_base);
  waiting->duration = end - waiting->pts;
  waiting->stream_index = stream->index;
  const int written = libav.av_write_frame(container, waiting);
  libav.av_packet_unref(waiting);
  return written >= 0 || FailBy(written);
}

bool VideoWriter::Finish() {
  const int ended = libav.avcodec_send_frame(codec, nullptr);
  if (ended < 0) return FailBy(ended);
  if (!TakePackets()) return false;
  if (hasPackets) {
    // Where pictures are decoded in another order than shown, the one decoded last may have to make up the length.
    const int64_t end = PlaceOf(film.duration);
    const int64_t missing = std::min(end - waiting->pts, end - (waiting->dts - firstDts));
    waiting->duration = std::max(waiting->duration, missing);
    if (!WriteWaiting()) return false;
  }
  // A GIF's last picture would get the time of the one before.
  if (isGif) libav.av_opt_set_int(container->priv_data, "final_delay", lastDuration, 0);
  const int finished = libav.av_write_trailer(container);
  if (finished < 0) return FailBy(finished);
  libav.avio_flush(container->pb);
  if (writeError != 0) return FailWith(writeError);
  return file.Commit() || FailOf(file);
}

}  // namespace

std::unique_ptr<FilmWriter> MakeVideoWriter(VideoKind kind, const std::string& path) {
  if (!libav.Load()) return nullptr;
  return std::make_unique<VideoWriter>(kind, path);
}

}  // namespace sorvel::console

#else

namespace sorvel::console {

std::unique_ptr<FilmWriter> MakeVideoWriter(VideoKind /*kind*/, const std::string& /*path*/) {
  return nullptr;
}

}  // namespace sorvel::console

#endif
