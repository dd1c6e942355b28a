#include "cli/ImportArrayCommand.h"

#include <CLI/CLI.hpp>

#include "cli/ControllersCommand.h"
#include "cli/ConvertCommand.h"
#include "cli/StdoutCheck.h"
#include "platform/PlatformImageCodecs.h"
#include "shell/Application.h"
#include "shell/ConsoleUi.h"

namespace rmcli {

using namespace rm;

CLI::App* AddImportArrayCommand(CLI::App& app, ImportArrayOptions& options) {
  ArrayImportRequest& r = options.request;
  CLI::App* c = app.add_subcommand(
      "import-array", "Paint a Data Array (the text, .bin bytes or .hex records of a table) back into a picture");
  c->add_option("FILE", r.input,
                "The table: a binary when its name ends in .bin, Intel HEX records in .hex, text otherwise")
      ->required()
      ->check(CLI::ExistingFile);
  c->add_option("-o", r.outputFile, "The PNG picture to write")->required();
  c->add_option("--size", r.scheme.size, "The display size WxH the table was made for")->required();
  AddSchemeOptions(*c, r.scheme);
  c->add_option("--prefix", r.syntax.prefix, "What stands before each datum in the text (default 0x; $, 0b, ...)");
  c->add_option("--suffix", r.syntax.suffix, "What stands after each datum in the text (h, b, ...)");
  c->add_option("--radix", r.syntax.radix, "The digits of a datum: 16 (default), 10 or 2")
      ->check(CLI::IsMember({16, 10, 2}));
  c->add_option("--table", r.table, "Which table of the text, counted from 1 (default 1)")->check(CLI::PositiveNumber);
  c->add_option("--project", r.scheme.project, "Read the settings of this project file instead of the active project")
      ->check(CLI::ExistingFile);
  c->add_option("--set", r.scheme.settings, "Any project setting by its key, e.g. Neg=1 (repeatable)");
  c->add_flag("-v,--verbose", options.verbose, "Print every step of the log");
  AddHardwareOptions(*c, r.scheme);
  return c;
}

int RunImportArray(const ImportArrayOptions& options) {
  ConsoleUi ui(stderr, nullptr);
  ui.SetVerbose(options.verbose);
  SystemClock clock;
  Application app(ui, clock);
  PlatformImageCodecs codecs;
  app.codecs = &codecs;
  return Report(ImportArrayFile(app, options.request));
}

}  // namespace rmcli
