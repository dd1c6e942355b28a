// A sequence of frames encoded into one file per frame, with the changed area of each frame, the
// list of frames whose compression did not pay, and one parameter file for the run.
#include <gtest/gtest.h>

#include <filesystem>

#include "support/ShellTestSupport.h"

namespace {

using rm::Bitmap;
using rmtest::TestProgram;
namespace fs = std::filesystem;

// A dot moving right on a 32 x 8 canvas, one column block per frame.
std::vector<Bitmap> MovingDot(int count) {
  std::vector<Bitmap> frames;
  for (int f = 0; f < count; ++f) {
    Bitmap b(32, 8);
    for (int y = 2; y < 5; ++y) b.SetPixel(4 + f * 9, y, rm::kBlack);
    frames.push_back(b);
  }
  return frames;
}

struct Sequence {
  TestProgram p;
  rmtest::TempDir tmp;
  const std::string dir = tmp.path;
  explicit Sequence(std::vector<std::string> answers = {}) {
    p.Setup(1, Bitmap(32, 8), true);
    p.app.session.OutputFolder = dir;
    p.app.session.LastBitmapName = "dot.bmp";
    p.app.session.CoordinatesDescriptors = true;
    p.ui.answers.assign(answers.begin(), answers.end());
  }
  std::string File(const std::string& name) const { return rmtest::ReadFile(dir + "/" + name); }
};

TEST(Animation, OneFilePerFrameWithTheChangedArea) {
  Sequence r;
  r.p.app.session.AutoChangeFraming = true;
  ASSERT_TRUE(r.p.app.mainForm.ConvertAnimation(MovingDot(3)));
  EXPECT_EQ(r.p.ui.messages.front().text, " Encode and save animation sequence to files ? ");
  const std::string third = r.File("dot_3.h");
  EXPECT_NE(third.find("/* Animated Sequence Part # 3 of 3  */"), std::string::npos) << third;
  EXPECT_NE(third.find("see info file " + r.dir + "/dot.rtf"), std::string::npos);
  // The first frame is whole; the second holds only the bytes where the dot left and arrived:
  // columns 0 to 15 (rounded to whole bytes) of rows 2 to 4.
  EXPECT_NE(r.File("dot_1.h").find("dotX = 0 ;"), std::string::npos);
  const std::string second = r.File("dot_2.h");
  EXPECT_NE(second.find("dotY = 2 ;"), std::string::npos) << second;
  // The size's place counts the frame's name without its underscore, so the size lands one
  // character early, over the bracket.
  EXPECT_NE(second.find("const uint8_t  dot_2 [6] PROGMEM = {"), std::string::npos) << second;
  EXPECT_NE(second.find("\n 0x00 , 0x04 , 0x00 , 0x04 , 0x00 , 0x04 \n};"), std::string::npos) << second;
  const std::string info = r.File("dot.rtf");
  EXPECT_NE(info.find("dot_3.h"), std::string::npos) << info;
  EXPECT_FALSE(fs::exists(r.dir + "/dot_1.rtf"));
  // The clip unit plays the frames, each drawn over its own area.
  EXPECT_EQ(r.File("clip_dot.h"),
            "#include <dot_1.h>\n#include <dot_2.h>\n#include <dot_3.h>\n\n"
            "void dot(void)\n{\n"
            "  GLCD_Bitmap(dot_1,0,0,32,8);\n"
            "  GLCD_Bitmap(dot_2,0,2,16,3);\n"
            "  GLCD_Bitmap(dot_3,8,2,16,3);\n"
            "};\n\n/*  See info file " +
                r.dir + "/dot.rtf\n");
  // The canvas and the names come back as they were.
  EXPECT_EQ(r.p.app.pixelForm.WorkBitmap, Bitmap(32, 8));
  EXPECT_EQ(r.p.app.session.OutputFileName, "dot.h");
}

TEST(Animation, ClipUnitDelaysAndCompressedFrames) {
  rm::ClipSyntax c;
  c.withDelay = true;
  c.withPositionAndSize = false;
  std::vector<rm::ClipFrame> frames(2);
  frames[0] = {"a_1.h", "a_1", "x_a_1", 0, 0, 8, 8, 40};
  frames[1] = {"a_2.h", "a_2", "", 0, 0, 8, 8, 70};
  auto lines = rm::ClipUnitLines(c, "a", frames, " ;", "a.rtf");
  const std::vector<std::string> plain = {"  GLCD_xBitmap(a_1,x_a_1);", "  delay(40);", "  GLCD_Bitmap(a_2);", "};"};
  EXPECT_EQ(std::vector<std::string>(lines.begin() + 5, lines.begin() + 9), plain);
  c.delayAfterLastFrame = true;
  lines = rm::ClipUnitLines(c, "a", frames, " ;", "a.rtf");
  EXPECT_EQ(lines[8], "  delay(70);");
  EXPECT_EQ(lines.back(), " ; See info file a.rtf");
}

TEST(Animation, QuestionsAndRefusals) {
  {
    Sequence r({"No"});
    EXPECT_FALSE(r.p.app.mainForm.ConvertAnimation(MovingDot(2)));
    EXPECT_TRUE(fs::is_empty(r.dir));
  }
  {
    Sequence r({"Yes", "No"});
    rm::WriteFileAtomically(r.dir + "/dot_1.h", "old");
    EXPECT_FALSE(r.p.app.mainForm.ConvertAnimation(MovingDot(2)));
    EXPECT_EQ(r.p.ui.messages.back().text, " File in animated sequence exists ! Overwrite it ? ");
    EXPECT_EQ(r.File("dot_1.h"), "old");
  }
  {
    Sequence r;
    EXPECT_FALSE(r.p.app.mainForm.ConvertAnimation({}));
    EXPECT_EQ(r.p.ui.messages.back().text, " Animation is empty ! ");
  }
}

TEST(Animation, FramesWhoseCompressionDoesNotPayAreListed) {
  Sequence r;
  r.p.app.session.Compression = true;
  std::vector<Bitmap> frames = MovingDot(2);
  // A busy third frame: no byte repeats its neighbour.
  Bitmap busy(32, 8);
  for (int y = 0; y < 8; ++y)
    for (int x = 0; x < 32; ++x)
      if ((x + y * 3) % 5 == 0 || (x * y) % 7 == 1) busy.SetPixel(x, y, rm::kBlack);
  frames.push_back(busy);
  ASSERT_TRUE(r.p.app.mainForm.ConvertAnimation(frames));
  EXPECT_EQ(r.p.ui.messages.back().text, "No efficient data compression was possible on frame(s) : \r3");
  EXPECT_NE(r.File("dot_1.h").find("COMPRESSED"), std::string::npos);
  EXPECT_EQ(r.File("dot_3.h").find("COMPRESSED"), std::string::npos);  // made again plainly
}

}  // namespace
