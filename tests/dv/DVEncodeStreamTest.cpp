// A .dv stream of our frames read by the ffmpeg command-line tool, when it is installed: it must
// recognise the stream and decode every frame at our size and sampling without complaint.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "Ombrix.h"
#include "dv/DVEncodeTestSupport.h"

namespace ombrix_test {
namespace {

bool HaveFFmpeg() { return std::system("command -v ffmpeg > /dev/null 2>&1") == 0; }

std::string RunAndCapture(const std::string& command) {
  std::string out;
  if (FILE* pipe = popen(command.c_str(), "r")) {
    char buffer[512];
    while (fgets(buffer, sizeof(buffer), pipe)) out += buffer;
    pclose(pipe);
  }
  return out;
}

TEST(DVEncodeStream, FFmpegToolReadsOurStreams) {
  if (!HaveFFmpeg()) GTEST_SKIP() << "the ffmpeg command-line tool is not installed";
  struct Case {
    const char* name;
    OX_PixelFormat format, source;
    int width, height;
    const char* sampling;
  };
  const Case cases[] = {
      {"ntsc_dv25", OX_PixelFormat_NTSCDV25, OX_PixelFormat_YUYV_422_8u, 720, 480, "yuv411p"},
      {"pal_dv25", OX_PixelFormat_PALDV25, OX_PixelFormat_YUYV_422_8u, 720, 576, "yuv420p"},
      {"pal_dv50", OX_PixelFormat_PALDV50, OX_PixelFormat_YUYV_422_8u, 720, 576, "yuv422p"},
      {"dv100_1080i60", OX_PixelFormat_NTSC_DV100_1080i, OX_PixelFormat_YUYV_422_8u_709, 1280, 1080, "yuv422p"},
  };
  const std::filesystem::path dir = std::filesystem::temp_directory_path() / "ombrix_dv_stream_test";
  std::filesystem::create_directories(dir);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const std::filesystem::path path = dir / (std::string(c.name) + ".dv");
    {
      std::ofstream out(path, std::ios::binary);
      for (int frame = 0; frame < 3; ++frame) {
        const std::vector<uint8_t> picture = PackYUYV(MakeTestPicture422(frame, c.width, c.height, 40 + frame));
        std::vector<uint8_t> dv(size_t(OX_PixelFormatSize(c.format, 0, 0)));
        ASSERT_EQ(OX_Convert(picture.data(), c.width * 2, c.source, dv.data(), int32_t(dv.size()), c.format, c.width,
                             c.height, 4),
                  OX_Success);
        out.write(reinterpret_cast<const char*>(dv.data()), std::streamsize(dv.size()));
      }
    }
    const std::string quoted = "'" + path.string() + "'";
    const std::string probe =
        RunAndCapture("ffmpeg -hide_banner -v error -i " + quoted + " -f framecrc - 2>&1");
    size_t frames = 0;
    for (size_t at = probe.find("\n0,"); at != std::string::npos; at = probe.find("\n0,", at + 1)) ++frames;
    EXPECT_EQ(frames, 3u) << probe;
    const std::string info = RunAndCapture("ffmpeg -hide_banner -i " + quoted + " 2>&1");
    EXPECT_NE(info.find("dvvideo"), std::string::npos) << info;
    EXPECT_NE(info.find(std::to_string(c.width) + "x" + std::to_string(c.height)), std::string::npos) << info;
    EXPECT_NE(info.find(c.sampling), std::string::npos) << info;
  }
  std::filesystem::remove_all(dir);
}

}  // namespace
}  // namespace ombrix_test
