// `rastermill batch` on pictures: one picture, a folder of them side by side, and the
// post-processing of `rastermill convert`.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "support/CliRunner.h"
#include "support/ShellTestSupport.h"
#include "support/TestSupport.h"

namespace {

namespace fs = std::filesystem;
using rmtest::Has;

class GraphicBatchCommand : public rmtest::CliFixture {
 protected:
  std::string Write(const std::string& name, const std::string& text) {
    const std::string path = in_ + "/" + name;
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }
  std::string Picture(const std::string& name, unsigned seed) {
    return Png(name, rmtest::PatternPicture(128, 64, {rm::kBlack, rm::kWhite}, seed));
  }
  // Every file of `folder` with its content, in name order.
  static std::string Contents(const std::string& folder) {
    std::string all;
    for (const std::string& name : rmtest::Names(folder))
      all += "== " + name + "\n" + rmtest::ReadFile(folder + "/" + name);
    return all;
  }
  const std::string kBlock = "load graphic 'any.png'\nconvert graphic to data\noverwrite data file\n";
};

TEST_F(GraphicBatchCommand, ConvertsThePictureAndOverwritesItsDataFile) {
  const std::string batch = Write("g.SIP", kBlock);
  const std::string picture = Picture("logo.png", 3);
  const std::string data = out_ + "/data";
  std::ofstream((fs::create_directories(data), data + "/logo.h")) << "old\n";
  const rmtest::CliResult r =
      Run({"batch", in_ + "/g", "--graphic", picture, "--output-dir", data, "--report", out_ + "/report.txt"});
  ASSERT_EQ(r.status, 0) << r.err;
  // The data file is what the conversion of the picture on the project's display gives.
  const rmtest::CliResult converted = Run({"convert", picture, "--size", "project", "--no-info", "-o", out_ + "/c.h"});
  ASSERT_EQ(converted.status, 0) << converted.err;
  EXPECT_EQ(rmtest::ReadFile(data + "/logo.h"), rmtest::ReadFile(out_ + "/c.h"));
  EXPECT_EQ(r.out, rmtest::ReadFile(out_ + "/c.h"));
  const std::string report = rmtest::ReadFile(out_ + "/report.txt");
  EXPECT_TRUE(Has(
      report, " >> " + picture + " = Graphic File loaded \n" + std::string(26, ' ') + "2 colors image >> 2 colors\n"))
      << report;
  EXPECT_TRUE(Has(report, "Batch task : overwrite data file   " + data + "/logo.h >>  = OK \n")) << report;

  // Run twice, the file holds the second text (the same here) and nothing else is written.
  ASSERT_EQ(Run({"batch", batch, "--graphic", picture, "--output-dir", data, "-o", out_ + "/text.h"}).status, 0);
  EXPECT_EQ(rmtest::Names(data), rmtest::Args{"logo.h"});
  EXPECT_EQ(rmtest::ReadFile(out_ + "/text.h"), rmtest::ReadFile(out_ + "/c.h"));
}

TEST_F(GraphicBatchCommand, RefusesWhatItCannotFindAndWritesNothingOutsideItsFolder) {
  const std::string picture = Picture("p.png", 1);
  ExpectRefused({"batch", in_ + "/none", "--graphic", picture}, 1, "Processing File not found !");
  const std::string batch = Write("g.SPP", kBlock + "\nif last line\nthen save as '../escaped.txt'\n");
  ExpectRefused({"batch", batch, "--graphic", in_ + "/none.png"}, 1, "Specified File not found !");
  ExpectRefused({"batch", batch}, 2, "give a TEXTFILE, --graphic PICTURE or --folder DIR");

  const rmtest::CliResult r = Run({"batch", batch, "--graphic", picture, "--output-dir", out_ + "/data"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_TRUE(Has(r.err, "lies outside the Output folder")) << r.err;
  EXPECT_FALSE(fs::exists(out_ + "/escaped.txt"));
  EXPECT_EQ(rmtest::Names(out_ + "/data"), rmtest::Args{"p.h"});

  // A broken picture: the run goes to its end and fails, naming the picture.
  const std::string broken = Write("broken.png", "\x89PNG\r\n\x1a\nnot a picture");
  const rmtest::CliResult bad = Run({"batch", batch, "--graphic", broken, "--output-dir", out_ + "/data"});
  EXPECT_EQ(bad.status, 1);
  EXPECT_TRUE(Has(bad.err, "load graphic any.png >> ERROR : " + broken)) << bad.err;
}

TEST_F(GraphicBatchCommand, AFolderGivesTheSameFilesOnOneWorkerAsOnFour) {
  const std::string batch = Write("g.SIP", kBlock);
  const std::string pictures = dir_ + "/pictures";
  fs::create_directories(pictures);
  for (unsigned i = 0; i < 20; ++i) {
    const std::string name = "pic" + std::to_string(10 + i) + ".png";
    fs::rename(Picture(name, i + 1), pictures + "/" + name);
  }
  std::ofstream(pictures + "/pic15b.png", std::ios::binary) << "\x89PNG\r\n\x1a\nbroken";
  std::ofstream(pictures + "/notes.txt") << "not a picture\n";

  std::string first;
  for (const char* jobs : {"1", "4"}) {
    SCOPED_TRACE(jobs);
    const std::string data = out_ + "/j" + jobs;
    const rmtest::CliResult r =
        Run({"batch", batch, "--folder", pictures, "--ext", ".PNG", "-j", jobs, "--output-dir", data});
    EXPECT_EQ(r.status, 1) << r.err;
    EXPECT_EQ(r.out, "");
    EXPECT_TRUE(Has(r.err, "pic15b.png: failed: load graphic any.png >> ERROR")) << r.err;
    EXPECT_TRUE(Has(r.err, "21 files: 20 done, 1 failed, 21 files written\n")) << r.err;
    EXPECT_FALSE(Has(r.err, "pic14.png:")) << r.err;
    const std::string files = Contents(data);
    EXPECT_TRUE(Has(files, "== pic29.h\n")) << files;
    if (first.empty()) first = files;
    EXPECT_EQ(files, first);
  }
  // The pictures themselves: one by one as --graphic runs them.
  ASSERT_EQ(Run({"batch", batch, "--graphic", pictures + "/pic17.png", "--output-dir", out_ + "/one"}).status, 0);
  EXPECT_EQ(rmtest::ReadFile(out_ + "/one/pic17.h"), rmtest::ReadFile(out_ + "/j4/pic17.h"));

  ExpectRefused({"batch", batch, "--folder", pictures, "--ext", ".gif"}, 1, "no .gif file in " + pictures);
}

TEST_F(GraphicBatchCommand, AFolderOfTextsIsRewrittenIntoTheOutputFolder) {
  const std::string batch = Write("t.SPP", "if 'x'\nthen remove 'x'\n");
  const std::string texts = dir_ + "/texts";
  fs::create_directories(texts);
  for (const char* name : {"b.txt", "a.txt", "c.TXT"}) std::ofstream(texts + "/" + name) << name << "\nx1\n";
  std::ofstream(texts + "/skip.c") << "x\n";
  const rmtest::CliResult r = Run({"batch", batch, "--folder", texts, "-j", "2", "--output-dir", out_ + "/t"});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_TRUE(Has(r.err, "3 files: 3 done, 0 failed, 3 files written\n")) << r.err;
  EXPECT_EQ(rmtest::Names(out_ + "/t"), (rmtest::Args{"a.txt", "b.txt", "c.TXT"}));
  EXPECT_EQ(rmtest::ReadFile(out_ + "/t/c.TXT"), "c.TXT\n1\n");
  EXPECT_EQ(rmtest::ReadFile(texts + "/a.txt"), "a.txt\nx1\n");  // the folder itself is left as it was
}

TEST_F(GraphicBatchCommand, ConvertPostprocessesTheTextBeforeWritingIt) {
  const std::string batch = Write("p.SPP", "if 'const'\nthen insert (1)'static '\n");
  const std::string picture = Picture("p.png", 2);
  const rmtest::CliResult r = Run({"convert", picture, "--postpro", batch, "-o", out_ + "/p.c"});
  ASSERT_EQ(r.status, 0) << r.err;
  const std::string text = rmtest::ReadFile(out_ + "/p.c");
  EXPECT_TRUE(Has(text, "/* Postprocessing is ENABLED  */\n")) << text;
  EXPECT_TRUE(Has(text, "\nstatic const")) << text;
  EXPECT_TRUE(Has(r.err, "Text Postprocessing done !")) << r.err;
  EXPECT_TRUE(Has(rmtest::ReadFile(out_ + "/p.rtf"), "Text processing filename : p.SPP"));
  ExpectRefused({"convert", picture, "--postpro", in_ + "/none.SPP", "-o", out_ + "/q.c"}, 1,
                "Processing File not found !");
  EXPECT_FALSE(fs::exists(out_ + "/q.c"));
}

}  // namespace
