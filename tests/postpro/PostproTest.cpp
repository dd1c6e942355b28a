#include <gtest/gtest.h>

#include <filesystem>

#include "postpro/Postpro.h"
#include "support/TestSupport.h"

namespace {

using namespace rm;
using rmtest::ScriptedUi;

struct BatchRun {
  std::string text, report;
  BatchRunResult result;
};

BatchRun RunText(const std::string& batch, const std::string& input, const std::string& outputFolder = "/nonexistent",
                 ScriptedUi* givenUi = nullptr) {
  ScriptedUi ownUi;
  ScriptedUi& ui = givenUi ? *givenUi : ownUi;
  TextLines target, report, lines;
  target.SetText(input);
  lines.SetText(batch);
  BatchMemory memory;
  BatchRunner runner(target, report, ui, BatchFolders{outputFolder}, memory);
  BatchRun run;
  run.result = runner.Run(lines.Lines(), "Batch/test.SPP");
  run.text = target.Text();
  run.report = report.Text();
  return run;
}

struct BatchCase {
  const char* what;
  const char* batch;
  const char* input;
  const char* output;
  const char* reportLine;  // a line the report must hold
};

// Each keyword at least once; positions count from 1 and every insert pads the line.
const BatchCase kBatchCases[] = {
    {"insert pads", "if 'abc'\nthen insert (1)'X'", "abc\nzzz\n", "Xabc \nzzz\n", "                Insert1X  >> X"},
    {"insert at 0 on an empty line", "if unconditional\nthen insert (0)'x'", "\n", "  x\n",
     "0: if unconditional '' = True "},
    {"overwrite at the match", "if 'cd'\nthen overwrite (INDEX)'XY'", "abcdef\n", "abXYef \n", "    cd >> XY"},
    {"remove", "if 'a'\nthen remove 'bc'", "abcabc\n", "aabc\n", "  >> bc"},
    {"delete line", "if 'x'\nthen delete line", "a\nx1\nx2\nb\n", "a\nb\n", "1: if 'x' = True "},
    {"insert line", "if 'b'\nthen insert line", "a\nb\n", "a\n\nb\n", "                Insert line"},
    {"next line", "if 'a'\nthen next line\nthen insert (1)'Z'", "a\nb\nc\n", "a\nZb  \nc\n",
     "                next line"},
    {"flag across blocks", "if 'start'\nthen set flag\n\nif flag\nthen insert (1)'F'", "x\nstart\n", "Fx  \nFstart \n",
     "0: if flag '' = True "},
    {"reset flag", "if unconditional\nthen reset flag\n\nif not flag\nthen insert (1)'N'", "x\n", "Nx  \n", ""},
    {"and not is raw", "if 'A'\nand not 'b'\nthen insert (1)'!'", "aB\nab\n", "!aB \nab\n", "1: and not 'b' = False "},
    {"or", "if 'x'\nor 'y'\nthen insert (1)'+'", "y\nz\n", "+y  \nz\n", ""},
    {"if not", "if not 'x'\nthen delete line", "x\na\nx\n", "x\nx\n", ""},
    {"while repeats on its line", "while 'ab'\nthen remove 'ab'", "ababc\n", "c\n", ""},
    {"while not", "while not 'x'\nthen insert (1)'x'", "a\n", "xa  \n", ""},
    {"line number", "if line number(2)\nthen insert (1)'#'", "a\nb\nc\n", "a\n#b  \nc\n", ""},
    {"line number index is 1", "if line number(index)\nthen insert (1)'#'", "a\nb\n", "#a  \nb\n", ""},
    {"last line", "if last line\nthen insert (1)'E'", "a\nb\n", "a\nEb  \n", ""},
    {"last line of an empty text", "if last line\nthen insert line", "", "", ""},
    {"case sensitive", "case sensitive on\nif 'A'\nthen insert (1)'!'", "a\nA\n", "a\n!A  \n",
     "Batch task : case sensitive  "},
    {"search back", "search back from line end\nif 'ab'\nthen overwrite (INDEX)'XY'", "ab-ab\n", "ab-XY  \n", ""},
    {"get integer", "if unconditional\nthen get integer (1)", "a 12 b 34\n", "a 12 b 34\n",
     "                get integer1 << 34"},
    {"get integer missing", "if unconditional\nthen get integer (5)", "a 1\n", "a 1\n", " Not_found "},
    {"get and insert float", "if unconditional\nthen get float (0)\nthen insert float (1)", "v=2,5\n", "2.5v=2,5 \n",
     ""},
    {"get and insert string", "if unconditional\nthen get string (3)\nthen insert string (1)", "abcd\n", "cdabcd \n",
     "String is: cd"},
    {"insert integer is a plain insert", "if unconditional\nthen insert integer (2)", "ab\n", "ab \n", ""},
    {"hex AND and overwrite",
     "set hex prefix as '0x'\nif hex in line\nthen get hex (1)\nthen AND (0F)\nthen overwrite hex", "db 0x12, 0xAB\n",
     "db 0x12, 0x0B\n", "  >> 10101011 >> 00001011 0x0B"},
    {"XOR is an OR", "set hex suffix as 'h'\nif hex in line\nthen get hex (0)\nthen XOR (FF)\nthen overwrite hex",
     "mov a,0F0h\n", "mov a,0FFh\n", "0: if hex in line ''  >> True = True "},
    {"OR", "set hex prefix as '$'\nif hex in line\nthen get hex (0)\nthen OR (3)\nthen overwrite hex", "$10\n", "$13\n",
     ""},
    {"while hex walks the values", "set hex prefix as '0x'\nwhile hex in line\nthen insert (1)'*'", "0xAB 0xCD\n",
     "**0xAB 0xCD  \n", ""},
    {"nine digits are too many", "set hex prefix as '$'\nif hex in line\nthen get hex (0)\nthen insert hex (1)",
     "$123456789\n", "$123456789\n", " No_Hex_Value"},
    {"insert hex", "set hex prefix as '$'\nif hex in line\nthen get hex (0)\nthen insert hex (1)", "$F\n", "$0F$F   \n",
     ""},
    {"shift left keeps the digits",
     "set hex prefix as '0x'\nif hex in line\nthen get hex (0)\nshift left (4)\nthen overwrite hex", "0x1F\n", "0xF0\n",
     ""},
    {"shift right", "set hex prefix as '0x'\nif hex in line\nthen get hex (0)\nshift right (1)\nthen overwrite hex",
     "0x1F\n", "0x0F\n", ""},
    {"rotate right",
     "set hex prefix as '0x'\nif hex in line\nthen get hex (0)\nrotate bits to right (1)\nthen overwrite hex", "0x01\n",
     "0x80\n", ""},
    {"rotate left",
     "set hex prefix as '0x'\nif hex in line\nthen get hex (0)\nrotate bits to left (1)\nthen overwrite hex", "0x81\n",
     "0x03\n", ""},
    {"NOT", "set hex prefix as '0x'\nif hex in line\nthen get hex (0)\nthen NOT\nthen overwrite hex", "0x0F\n",
     "0xF0\n", ""},
    {"set bit", "set hex prefix as '0x'\nif hex in line\nthen get hex (0)\nset bit (7)\nthen overwrite hex", "0x01\n",
     "0x81\n", ""},
    {"clear bit", "set hex prefix as '0x'\nif hex in line\nthen get hex (0)\nclear bit (0)\nthen overwrite hex",
     "0x01\n", "0x00\n", ""},
    {"toggle bit", "set hex prefix as '0x'\nif hex in line\nthen get hex (0)\ntoggle bit (1)\nthen overwrite hex",
     "0x01\n", "0x03\n", ""},
    {"bit number too high", "set hex prefix as '0x'\nif hex in line\nthen get hex (0)\nset bit (40)", "0x01\n",
     "0x01\n", " Bit Number > 31"},
    {"bit is set", "set hex prefix as '0x'\nwhile hex in line if bit is set (0)\nthen insert (1)'1'", "0x01\n0x02\n",
     "10x01 \n0x02\n", ""},
    {"bit is cleared without a value", "if bit is cleared (0)\nthen insert (1)'1'", "a\n", "a\n",
     " GOT_No_Hex_Value = False "},
    {"hex without marks", "if hex in line\nthen insert (1)'1'", "0x1\n", "0x1\n",
     "  >> Error : No hex Prefix AND No hex Suffix defined = False "},
    {"copy range", "if 'begin'\nor 'end'\nthen start copy\nthen stop copy", "x\nbegin\na\nb\nend\n",
     "x\nbegin\na\nb\nend\n", "                Stop Copy"},
    {"delete range", "if 'begin'\nor 'end'\nthen start delete\nthen stop delete", "x\nbegin\na\nend\ny\n", "x\ny\n",
     ""},
    {"delete until", "if 'a'\nthen delete until (1)'z'", "abcz\n", "a\n", "  >> 3 chars deleted"},
    {"delete until not found", "if 'a'\nthen delete until (1)'q'", "abc\n", "abc\n", " Not_Found"},
    {"search moves the cursor", "if 'a'\nthen search 'q'\nthen insert (1)'>'", "a\nb\nq\nc\n", "a\nb\nq\n>c  \n",
     "    q >> found at line 3"},
    {"search fails", "if 'a'\nthen search 'q'\nthen insert (1)'>'", "a\nb\n", "a\nb\n", "    q >> not found 0"},
    {"reserved words", "begin of loop\nif unconditional\nthen run 'x'\nlog 'y'", "a\n", "a\n",
     "                then runx  >>"},
    {"two adjacent conditions: the second goes", "if 'a'\nif 'b'\nthen insert (1)'!'", "a\nb\n", "!a  \nb\n", ""},
    {"a first then line goes", "then insert (1)'!'\nif 'a'\nthen remove 'a'", "a\n", "\n", ""},
    {"comment is not a keyword", "if 'a' // then delete line\nthen insert (1)'!'", "a\n", "!a  \n", ""},
    {"a while that keeps its match stops", "while 'a'\nthen set flag", "a\n", "a\n", " Loop_Limit 1000"},
    {"two empty lines end the batch", "if 'a'\nthen remove 'a'\n\n\nif 'b'\nthen remove 'b'", "ab\n", "b\n", ""},
};

TEST(BatchRunner, KeywordsRewriteTheTextAsTheTableSays) {
  for (const BatchCase& c : kBatchCases) {
    SCOPED_TRACE(c.what);
    const BatchRun run = RunText(c.batch, c.input);
    EXPECT_EQ(run.text, c.output);
    if (*c.reportLine) {
      EXPECT_NE(run.report.find(std::string(c.reportLine) + "\n"), std::string::npos) << run.report;
    }
  }
}

// Which phrase a line is taken as: the longer phrase wins over those it holds.
TEST(ParseBatchLine, LongerPhrasesWinAndArgumentsAreNotSearched) {
  const struct {
    const char* line;
    const char* conditions;  // CondKeys and SetupKeys joined by "|"
    const char* actions;
  } cases[] = {
      {"if not flag", "if not flag", ""},
      {"if flag", "if flag", ""},
      {"if not 'if'", "if not", ""},
      {"and not flag", "and not flag", ""},
      {"or 'then delete line'", "or", ""},
      {"if last line", "if last line", ""},
      {"if bit is set (3)", "bit is set", ""},
      {"if input 'sensor'", "if input", ""},
      {"while hex in line", "while hex in line", ""},
      {"while not 'x'", "while not", ""},
      {"then insert hex (2)", "", "insert hex"},
      {"then insert integer (2)", "", "Insert"},
      {"then overwrite hex", "", "Overwrite hex"},
      {"then load and insert 'f'", "", "Load File"},
      {"shift left (2)", "", "shift left"},
      {"AND (F0)", "", "AND"},
      {"and 'F0'", "and", ""},
      {"then get analog input", "", "then get analog"},
      {"[U] set analog output", "", "set analog"},
      {"case sensitive off", "case sensitive off", ""},
      {"set hex prefix as '0x'", "set hex prefix", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.line);
    CompiledBlock block;
    ASSERT_TRUE(ParseBatchLine(c.line, ParsePass::Condition, block));
    ParseBatchLine(c.line, ParsePass::Action, block);
    std::string conditions, actions;
    for (std::size_t i = 0; i < block.CondKeys.size(); ++i)
      conditions +=
          (conditions.empty() ? "" : "|") + (block.CondKeys[i] == "none" ? block.SetupKeys[i] : block.CondKeys[i]);
    for (const std::string& a : block.ActionKeys) actions += (actions.empty() ? "" : "|") + a;
    EXPECT_EQ(conditions, c.conditions);
    EXPECT_EQ(actions, c.actions);
  }
  CompiledBlock block;
  EXPECT_FALSE(ParseBatchLine("ADD integer +(val)", ParsePass::Condition, block));
  EXPECT_FALSE(ParseBatchLine("   // a comment", ParsePass::Condition, block));
  ParseBatchLine("then overwrite (index)'x'", ParsePass::Action, block);
  EXPECT_EQ(block.ActionNumbers.back(), "INDEX");
}

TEST(BatchRunner, BadBatchesSayWhatIsWrong) {
  const struct {
    const char* batch;
    const char* reportLine;
  } cases[] = {
      {"frobnicate 'x'", "Batch line 1 : not understood, the block ends here : frobnicate 'x'"},
      {"if 'abc\nthen remove 'a'", "Batch line 1 : a text opened by ' is not closed : if 'abc"},
      {"if 'a'\nthen insert (3'x'", "Batch line 2 : a ( is not closed by ) : then insert (3'x'"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.batch);
    const BatchRun run = RunText(c.batch, "abc\n");
    EXPECT_NE(run.report.find(std::string(c.reportLine) + "\n"), std::string::npos) << run.report;
  }
}

TEST(BatchRunner, FilesStayInTheOutputFolder) {
  rmtest::TempDir dir;
  const std::string out = dir.path + "/out";
  std::filesystem::create_directories(out);
  const BatchRun run = RunText(
      "if 'begin'\nor 'end'\nthen start copy\nthen stop copy\n\nif last line\nthen save copy as 'part.txt'\nthen save "
      "as "
      "'all.txt'\nthen save as '../evil.txt'\nthen save as '/tmp/evil.txt'\n\nif 'x'\nthen load and insert 'all.txt'",
      "x\nbegin\na\nb\nend\n", out);
  EXPECT_EQ(rmtest::ReadFile(out + "/part.txt"), "a\nb\n");
  EXPECT_EQ(rmtest::ReadFile(out + "/all.txt"), "x\nbegin\na\nb\nend\n");
  EXPECT_EQ(run.text, "x\nbegin\na\nb\nend\nx\nbegin\na\nb\nend\n");
  EXPECT_FALSE(std::filesystem::exists(dir.path + "/evil.txt"));
  EXPECT_EQ(run.result.refused, (std::vector<std::string>{"../evil.txt", "/tmp/evil.txt"}));
  EXPECT_NE(run.report.find("  >> refused: ../evil.txt is outside the output folder " + out), std::string::npos);
  EXPECT_NE(run.report.find(" << " + out + "/all.txt 5 lines"), std::string::npos);
}

TEST(BatchRunner, MissingBatchEscapeAndHeader) {
  ScriptedUi ui;
  TextLines target, report;
  target.SetText("a\nb\n");
  BatchMemory memory;
  BatchRunner runner(target, report, ui, BatchFolders{"/nonexistent"}, memory);
  EXPECT_FALSE(runner.RunBatch({"/nonexistent", kNoBatchSelected}).ran);
  EXPECT_FALSE(runner.RunBatch({"/nonexistent", "nope.SPP"}).ran);
  ASSERT_EQ(ui.messages.size(), 2u);
  EXPECT_EQ(ui.messages[0].text, " No Processing Batch has been selected !");
  EXPECT_EQ(ui.messages[0].title, "No Processing batch Active!");
  EXPECT_EQ(ui.messages[1].text,
            " No Processing Batch File has been activated\ror Batch File not longer exists !\rnope.SPP");
  EXPECT_EQ(ui.messages[1].title, "SPP file not found !");
  EXPECT_EQ(ui.beeps, 1);

  ScriptedUi esc;
  esc.escapeAfterPolls = 1;
  const BatchRun run = RunText("if unconditional\nthen insert (1)'!'", "a\nb\nc\n", "/nonexistent", &esc);
  EXPECT_EQ(run.text, "!a  \nb\nc\n");
  EXPECT_EQ(run.report.rfind("/* 01/01/1970 00:00:00 */\n", 0), 0u);
  EXPECT_NE(run.report.find("/* Batch/test.SPP Batch Report      */\n\n"), std::string::npos);
  EXPECT_TRUE(run.result.aborted);
  EXPECT_EQ(run.report.substr(run.report.size() - 31), "Processing Aborted by escape !\n");
}

TEST(SearchReplaceGrid, RowsRunOverAllButTheLastLine) {
  using Rows = std::vector<SearchReplaceRow>;
  const struct {
    const char* what;
    Rows rows;
    bool single;
    const char* input;
    const char* output;
    int counter;
  } cases[] = {
      {"replace all", {{"a", "b", ""}}, false, "aa\nlast a\n", "bb\nlast a\n", 1},
      {"first per line", {{"a", "b", "Single Occurence Line"}}, false, "aa\naa\nz\n", "ba\nba\nz\n", 2},
      {"first in file", {{"a", "b", "Single Occurence File"}}, false, "aa\naa\nz\n", "ba\naa\nz\n", 1},
      {"delete line", {{"x", "", "Delete Line"}}, false, "x1\nk\nx2\nx3\n", "k\nx3\n", 2},
      {"delete string", {{"ab", "", "Delete Search String"}}, false, "xabab\nab\n", "x\nab\n", 1},
      {"void lines", {{"", "", "Delete Void Lines"}}, false, "a\n  \n\nb\n\n", "a\nb\n\n", 2},
      {"empty row ends", {{"a", "b", ""}, {"", "", ""}, {"c", "d", ""}}, false, "ac\nz\n", "bc\nz\n", 1},
      {"duplicates", {{"", "", "Remove Duplicates"}}, false, "a\na\nb\n", "a\nb\n", 1},
      {"single run", {{"a", "b", ""}}, true, "a\na\nz\n", "b\na\nz\n", 1},
      {"no replace, no function", {{"a", "", ""}}, false, "a\nz\n", "a\nz\n", 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    SearchReplaceGrid grid;
    grid.rows = c.rows;
    TextLines text;
    text.SetText(c.input);
    EXPECT_EQ(grid.Run(text, c.single), c.counter);
    EXPECT_EQ(text.Text(), c.output);
  }
  const SearchReplaceGrid kept = SearchReplaceGrid::FromKeys({{"s11", "a"}, {"s12", "b"}, {"s23", "Delete Line"}});
  ASSERT_EQ(kept.rows.size(), 2u);
  EXPECT_EQ(kept.rows[1].function, "Delete Line");
  EXPECT_EQ(SearchReplaceGrid::FromKeys(kept.ToKeys()).rows[0].replace, "b");
  EXPECT_EQ(OccurrencesLabel(3), "Occurences Counter = 3");
}

}  // namespace
