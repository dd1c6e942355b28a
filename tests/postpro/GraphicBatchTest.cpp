// The graphic commands of the batch language through a canvas that records what it is asked,
// and the limits that keep a batch to its folder.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "postpro/Postpro.h"
#include "support/TestSupport.h"

namespace {

using namespace rm;
using rmtest::ScriptedUi;

// Converting puts two lines of "data" in the text; a load of "missing" fails.
class FakeCanvas : public GraphicBatchPort {
 public:
  explicit FakeCanvas(TextLines& text) : text_(text) {}
  std::vector<std::string> LoadGraphic(const std::string& name) override {
    calls.push_back("load " + name);
    if (name == "missing") return {" >> ERROR : missing : File_Not_Found  "};
    loaded = name;
    return {" >> " + name + " = Graphic File loaded ", "    2 colors image >> 2 colors"};
  }
  std::string ConvertGraphic() override {
    calls.push_back("convert " + loaded);
    text_.SetText("data " + loaded + " 0x01\ndata 0x02\n");
    return " >>  = Convert Graphic To Data : Done  ";
  }
  std::string OverwriteDataFile() override {
    calls.push_back("overwrite " + text_.Text());
    return " " + loaded + ".c >>  = OK ";
  }
  std::vector<std::string> calls;
  std::string loaded;

 private:
  TextLines& text_;
};

bool Has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

struct GraphicRun {
  std::vector<std::string> calls;
  std::string text, report;
  BatchRunResult result;
};

GraphicRun RunGraphic(const std::string& batch, bool reportOff = false, const std::string& folder = "/nonexistent") {
  ScriptedUi ui;
  TextLines target, report, lines;
  lines.SetText(batch);
  BatchMemory memory;
  BatchRunner runner(target, report, ui, BatchFolders{folder}, memory);
  FakeCanvas canvas(target);
  runner.graphic = &canvas;
  runner.reportOff = reportOff;
  GraphicRun run;
  run.result = runner.Run(lines.Lines(), "g.SIP");
  run.calls = canvas.calls;
  run.text = target.Text();
  run.report = report.Text();
  return run;
}

TEST(GraphicBatch, ABlockOfSetupsLoadsConvertsAndWritesOnAnEmptyText) {
  const GraphicRun run = RunGraphic("load graphic 'a.bmp'\nconvert graphic to data\noverwrite data file\n");
  const std::vector<std::string> calls = {"load a.bmp", "convert a.bmp", "overwrite data a.bmp 0x01\ndata 0x02\n"};
  EXPECT_EQ(run.calls, calls);
  EXPECT_EQ(run.result.occurrences, 1);  // the conversion counts, the load and the write do not
  EXPECT_TRUE(run.result.graphicFailures.empty());
  EXPECT_TRUE(Has(run.report,
                  "Batch task : load graphic  a.bmp >> a.bmp = Graphic File loaded \n"
                  "    2 colors image >> 2 colors\n"
                  "Batch task : convert graphic   >>  = Convert Graphic To Data : Done  \n"
                  "Batch task : overwrite data file   a.bmp.c >>  = OK \n"))
      << run.report;
}

TEST(GraphicBatch, TextCommandsOfTheNextBlockWorkOnTheConvertedText) {
  // The second block rewrites the fresh output; a third block writes it again: the file gets
  // the rewritten text.
  const GraphicRun run = RunGraphic(
      "load graphic 'b.png'\nconvert graphic to data\n\n"
      "if '0x02'\nthen remove ' 0x02'\n\n"
      "overwrite data file\n");
  ASSERT_EQ(run.calls.size(), 3u);
  EXPECT_EQ(run.calls[2], "overwrite data b.png 0x01\ndata\n");
  EXPECT_EQ(run.text, "data b.png 0x01\ndata\n");
}

TEST(GraphicBatch, AFailedLoadIsReportedAndTheBatchGoesOn) {
  for (const bool reportOff : {false, true}) {
    SCOPED_TRACE(reportOff);
    const GraphicRun run =
        RunGraphic("load graphic 'missing'\nconvert graphic to data\noverwrite data file\n", reportOff);
    EXPECT_EQ(run.calls.size(), 3u);  // the conversion still runs on what the canvas holds
    ASSERT_EQ(run.result.graphicFailures.size(), 1u);
    EXPECT_EQ(run.result.graphicFailures[0], "load graphic missing >> ERROR : missing : File_Not_Found  ");
    // The failure stands in the report also when the report is off; the rest only when on.
    EXPECT_TRUE(Has(run.report, " >> ERROR : missing : File_Not_Found  ")) << run.report;
    EXPECT_EQ(Has(run.report, "Convert Graphic To Data : Done"), !reportOff) << run.report;
  }
}

TEST(GraphicBatch, WithoutACanvasTheCommandsAreOnlyReported) {
  ScriptedUi ui;
  TextLines target, report, lines;
  target.SetText("x\n");
  lines.SetText("load graphic 'a.bmp'\nconvert graphic to data\n");
  BatchMemory memory;
  BatchRunner runner(target, report, ui, BatchFolders{"/nonexistent"}, memory);
  const BatchRunResult result = runner.Run(lines.Lines(), "t.SPP");
  EXPECT_EQ(result.occurrences, 0);
  EXPECT_EQ(target.Text(), "x\n");
  EXPECT_TRUE(Has(report.Text(), "load graphic  a.bmp  >> a graphic batch command: not run on a text"))
      << report.Text();
}

TEST(GraphicBatch, FilesStayInTheOutputFolder) {
  const std::string dir = rmtest::MakeTempDir();
  const std::string out = dir + "/out";
  std::filesystem::create_directories(out);
  std::ofstream(dir + "/outside.txt") << "secret\n";
  {
    // A file past the size a text can have is not pasted in.
    std::ofstream big(out + "/big.txt", std::ios::binary);
    const std::string line(1023, 'x');
    for (int i = 0; i < 17 * 1024; ++i) big << line << '\n';
  }
  const GraphicRun run = RunGraphic(
      "load graphic 'c.png'\nconvert graphic to data\n\n"
      "if last line\nthen save as '../escaped.c'\nthen save as 'kept.c'\nthen save as '/tmp/abs.c'\n"
      "then load and insert '../outside.txt'\nthen load and insert 'big.txt'\nthen load and insert 'none.txt'\n\n"
      "then wobble the canvas\n",
      false, out);
  EXPECT_FALSE(std::filesystem::exists(dir + "/escaped.c"));
  EXPECT_TRUE(std::filesystem::exists(out + "/kept.c"));
  const std::vector<std::string> refused = {"../escaped.c", "/tmp/abs.c", "../outside.txt"};
  EXPECT_EQ(run.result.refused, refused);
  EXPECT_FALSE(Has(run.text, "secret"));
  EXPECT_FALSE(Has(run.text, "xxxx"));
  EXPECT_TRUE(Has(run.report, "big.txt is larger than 16 MiB")) << run.report;
  // The unknown line ends the batch with a word in the report.
  EXPECT_TRUE(Has(run.report, "not understood")) << run.report;
  std::filesystem::remove_all(dir);
}

}  // namespace
