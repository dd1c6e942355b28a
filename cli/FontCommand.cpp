#include "cli/FontCommand.h"

#include <CLI/CLI.hpp>

#include "cli/StdoutCheck.h"
#include "platform/FreeTypeFontEngine.h"
#include "shell/Application.h"
#include "shell/CommandNames.h"
#include "shell/ConsoleUi.h"
#include "shell/FontJobs.h"
#include "shell/FontScriptJob.h"

namespace rmcli {

using namespace rm;

namespace {

void AddFontDataOptions(CLI::App& c, FontOptions& o) {
  FontDataRequest& d = o.data;
  c.add_option("--font", d.font, "An installed font family, or a font file (TTF, OTF, BDF, PCF ...)");
  c.add_option("--size", d.size, "Font size in points (1 to 300)")->check(CLI::Range(1, 300));
  c.add_flag("--bold", d.bold, "Bold");
  c.add_flag("--italic", d.italic, "Italic");
  c.add_flag("--underline", d.underline, "Underlined");
  c.add_flag("--strikeout", d.strikeOut, "Struck out");
  c.add_flag("--outline", d.outline, "The letters' outline stroked over their fill");
  c.add_flag("--antialias", d.antialias, "Grey levels at the edges (in the gray modes)");
  auto* chars = c.add_option("--chars", d.chars, "The characters to make data of, as text (in the code page)");
  auto* range = c.add_option("--range", d.ranges,
                             "A range of codes FIRST-LAST in hexadecimal, e.g. 20-7E (repeatable); codes above FF "
                             "are Unicode")
                    ->excludes(chars);
  auto* block = c.add_option("--unicode-block", d.unicodeBlock, "A Unicode block by name (font blocks lists them)")
                    ->excludes(chars)
                    ->excludes(range);
  c.add_option("--subblock", d.subblock, "The subblock of the block, from 1 (256 codes each)")->needs(block);
  c.add_option("--codepage", d.codePage, "The code page of ANSI characters, e.g. 1252");
  c.add_option("--structure", d.structure, "Data structure: raw, bloc (Font Bloc), struct or dmd")
      ->check(CLI::IsMember({"raw", "bloc", "struct", "dmd"}));
  c.add_flag("--fixed", d.fixed, "Fixed length: every character as wide as the widest, filled with the Font Filler");
  c.add_option("--max-width", d.maxWidth, "Maximal character width in pixels (0: none)")->check(CLI::Range(0, 255));
  c.add_option("--max-height", d.maxHeight, "Maximal character height in pixels (0: none)")->check(CLI::Range(0, 255));
  c.add_option("--shift", d.shift, "Shift of the glyphs X,Y in pixels");
  c.add_option("--stretch", d.stretch, "Stretch factors W,H and an optional upward row shift");
  c.add_option("--mode", d.mode, "Colour mode by its short name (mono, gray16, ...)");
  c.add_option("--direction", d.direction, "Data direction: tr, tl, tda or tua")
      ->check(CLI::IsMember(DirectionNames()));
  auto* first = c.add_flag("--msb-first", d.msbFirst, "Most significant bit first");
  c.add_flag("--msb-last", d.msbLast, "Most significant bit last")->excludes(first);
  c.add_option("--output", d.outputKind, "text (source) or bin (records of a binary file)")
      ->check(CLI::IsMember({"text", "bin"}));
  c.add_flag("-y,--yes", o.yes, "Answer Yes (or the first button) to every question");
  c.add_option("--answer", o.answers, "Answer the next question with this button's text (repeatable)");
  c.add_option("-o,--out", o.output, "Write the data to this file; '-' or no option prints them");
}

}  // namespace

void AddFontCommands(CLI::App& c, FontOptions& o) {
  c.require_subcommand(0, 1);
  c.add_option("--script", o.script, "Font Script (.FSC) to read into the font job")->check(CLI::ExistingFile);
  c.add_option("--save-script", o.saveScript,
               "Write the job as read as a new Font Script to this file ('-' prints it) instead of making the data");
  c.add_option("--project", o.project, "Read the settings of this project file instead of the active project")
      ->check(CLI::ExistingFile);
  c.add_option("--set", o.settings, "Any project setting by its key, e.g. SFONS=12 (repeatable)");
  c.add_flag("-v,--verbose", o.verbose, "Print every step of the log");
  AddFontDataOptions(c, o);
  auto* list = c.add_subcommand("list",
                                "The installed font families, each with its kind (TrueType Font, Fixed "
                                "TrueType, Raster Font with its sizes in points, ...)");
  list->callback([&o] { o.list = true; });
  list->add_option("--filter", o.filter,
                   "Only the families of one kind: fixed, not-truetype, variable, truetype, device, raster (or the "
                   "Font Panel's names, e.g. \"Fixed Pitch Only\")");
  c.add_subcommand("blocks", "The Unicode blocks a Unicode font is chosen from, as FIRST..LAST; Name")->callback([&o] {
    o.blocks = true;
  });
}

namespace {

int Print(const JobOutcome& outcome, bool toStdout) {
  if (!outcome.Done()) return Report(outcome);
  std::string error;
  if (toStdout && !PrintWhole(outcome.output, error)) return Report(JobOutcome::Failed("standard output: " + error));
  return 0;
}

}  // namespace

int RunFont(const FontOptions& o) {
  if (o.list) {
    const FreeTypeFontEngine engine;
    return Print(ListInstalledFonts(engine, {o.filter}), true);
  }
  if (o.blocks) return Print(ListUnicodeBlocks(), true);
  if (o.script.empty() && o.data.font.empty())
    return Report(JobOutcome::Failed("font needs --font NAME|FILE or --script FILE, or the list or blocks command", 2));
  ConsoleUi ui(stderr, nullptr);
  ui.SetVerbose(o.verbose);
  ui.SetYes(o.yes);
  for (const auto& a : o.answers) ui.QueueAnswer(a);
  SystemClock clock;
  Application app(ui, clock);
  if (!o.saveScript.empty()) {
    const JobOutcome outcome = RunFontScriptJob(app, {o.script, o.saveScript, o.project, o.settings});
    return Print(outcome, outcome.filesWritten.empty());
  }
  FontDataRequest request = o.data;
  request.script = o.script;
  request.project = o.project;
  request.settings = o.settings;
  request.outputFile = o.output;
  const FreeTypeFontEngine engine;
  const JobOutcome outcome = MakeFontData(app, engine, request);
  return Print(outcome, outcome.filesWritten.empty());
}

void AddKerningCommand(CLI::App& c, KerningOptions& o) {
  c.add_option("--font", o.request.font, "An installed font family, or a font file")->required();
  c.add_option("--size", o.request.size, "Font size in points (1 to 300)")->check(CLI::Range(1, 300))->required();
  c.add_flag("--bold", o.request.bold, "Bold");
  c.add_flag("--italic", o.request.italic, "Italic");
  c.add_option("--project", o.request.project, "Read the settings of this project file instead of the active project")
      ->check(CLI::ExistingFile);
  c.add_option("--set", o.request.settings, "Any project setting by its key, e.g. KERSUF=[][3]= (repeatable)");
  c.add_option("-o,--out", o.output, "Write the table to this file; '-' or no option prints it");
}

int RunKerning(const KerningOptions& o) {
  ConsoleUi ui(stderr, nullptr);
  SystemClock clock;
  Application app(ui, clock);
  KerningRequest request = o.request;
  request.outputFile = o.output;
  const FreeTypeFontEngine engine;
  const JobOutcome outcome = MakeKerningTable(app, engine, request);
  return Print(outcome, outcome.filesWritten.empty());
}

}  // namespace rmcli
