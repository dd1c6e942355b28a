// The console session: its help, its runs of a batch on a named file and its refusals, line by
// line on a text stream.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "shell/ConsoleSession.h"
#include "support/ShellTestSupport.h"

namespace {

namespace fs = std::filesystem;

class ConsoleSession : public rmtest::HomeTest {};

TEST_F(ConsoleSession, RunsBatchesOnNamedFilesUntilExit) {
  const std::string dir = home_ + "/work", out = home_ + "/out";
  fs::create_directories(dir);
  rm::PlatformImageCodecs codecs;
  std::string error;
  for (const char* name : {"/pic.png", "/later.png"})
    ASSERT_TRUE(codecs.SavePng(rmtest::PatternPicture(128, 64, {rm::kBlack, rm::kWhite}), dir + name, error));
  std::ofstream(dir + "/g.sip") << "load graphic 'x'\nconvert graphic to data\noverwrite data file\n";
  std::ofstream(dir + "/t.SPP") << "if 'b'\nthen remove 'b'\n\nif last line\nthen save as 'saved.txt'\n";
  std::ofstream(dir + "/text.txt") << "abc\nb2\n";

  std::istringstream in("?\nwhat now\nRASTERMILL " + dir + "/g " + dir +
                        "/pic.png\n"
                        "rastermill.exe " +
                        dir + "/none " + dir + "/pic.png\nrastermill " + dir + "/g " + dir + "/none.png\nRasterMill " +
                        dir + "/t.SPP " + dir + "/text.txt\nexit\nrastermill " + dir + "/g " + dir + "/later.png\n");
  std::ostringstream said;
  rmtest::ScriptedUi ui;
  rm::FixedClock clock{1700000000};
  const int failed = rm::RunConsoleSession(in, said, ui, clock, codecs, {"", out});
  const std::string help =
      "\"Rastermill < Graphic Processing Batch Filename > < Filename >\" \n\"Exit\" to go back to GUI mode\n\"?\" for "
      "Help\n";
  EXPECT_EQ(said.str(), help + help +
                            "Processing... \nProcessing Done !\n"
                            "Processing File not found !\n"
                            "Specified File not found !\n"
                            "Processing... \nProcessing Done !\n");
  EXPECT_EQ(failed, 2);
  // The graphic batch wrote the picture's data file; the text batch its copy; nothing ran after EXIT.
  EXPECT_TRUE(fs::exists(out + "/pic.h"));
  EXPECT_FALSE(fs::exists(out + "/later.h"));
  std::ifstream saved(out + "/saved.txt");
  std::stringstream text;
  text << saved.rdbuf();
  EXPECT_EQ(text.str(), "ac\n2\n");
}

}  // namespace
