#include <malloc.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "cli/AnimationCommand.h"
#include "cli/BatchCommand.h"
#include "cli/ClutCommand.h"
#include "cli/ControllersCommand.h"
#include "cli/ConvertCommand.h"
#include "cli/FontCommand.h"
#include "cli/ImportArrayCommand.h"
#include "cli/ProjectCommand.h"
#include "cli/SettingsCommand.h"

namespace {

volatile std::sig_atomic_t& InterruptFlag() {
  // Raised by Ctrl-C; long work reads it as the Esc key and stops, keeping what it made.
  static volatile std::sig_atomic_t flag = 0;
  return flag;
}

void OnInterrupt(int) { InterruptFlag() = 1; }

}  // namespace

int main(int argc, char** argv) {
  // A conversion makes and drops a few canvas-sized pictures (3 MiB at 1024 x 768). By default
  // each such block is a fresh mapping, paid for again page by page; kept in the heap, the memory
  // of one is reused by the next, which takes about a third off a large conversion.
  mallopt(M_MMAP_THRESHOLD, 64 << 20);
  mallopt(M_TRIM_THRESHOLD, 128 << 20);
  CLI::App app{"rastermill: turns pictures into the exact data arrays small display controllers want"};
  app.require_subcommand(1);
  app.set_version_flag("--version", std::string("rastermill ") + rmcli::VersionText());

  rmcli::ConvertOptions convert;
  CLI::App* conv = app.add_subcommand("convert", "Convert a picture into a Data Array");
  rmcli::AddConvertOptions(*conv, convert);
  rmcli::AnimationOptions animation;
  CLI::App* animationCommand = rmcli::AddAnimationCommand(app, animation);
  rmcli::ClutOptions clut;
  CLI::App* clutCommand = app.add_subcommand("clut", "Write the colour mode's palette as a Color Look-up Table");
  rmcli::AddClutOptions(*clutCommand, clut);
  rmcli::SettingsOptions settings;
  CLI::App* settingsCommand = app.add_subcommand("settings", "List, read or change the settings of a project file");
  rmcli::AddSettingsCommands(*settingsCommand, settings);
  rmcli::ProjectOptions project;
  CLI::App* projectCommand =
      app.add_subcommand("project", "List, create, activate, rename, delete or show the projects");
  rmcli::AddProjectCommands(*projectCommand, project);
  CLI::App* controllersCommand = rmcli::AddControllersCommand(app);
  rmcli::FontOptions font;
  CLI::App* fontCommand = app.add_subcommand(
      "font",
      "Make the data of a font's characters, from the options or a Font Script; write a script back; list the "
      "installed fonts or the Unicode blocks");
  rmcli::AddFontCommands(*fontCommand, font);
  rmcli::KerningOptions kerning;
  CLI::App* kerningCommand = app.add_subcommand("kerning", "Export a font's kerning pairs as a table");
  rmcli::AddKerningCommand(*kerningCommand, kerning);
  rmcli::BatchOptions batch;
  CLI::App* batchCommand = rmcli::AddBatchCommand(app, batch);
  rmcli::BatchOptions grid;
  CLI::App* gridCommand = rmcli::AddGridCommand(app, grid);
  rmcli::BatchOptions console;
  CLI::App* consoleCommand = rmcli::AddConsoleCommand(app, console);
  rmcli::ImportArrayOptions importArray;
  CLI::App* importArrayCommand = rmcli::AddImportArrayCommand(app, importArray);

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    return app.exit(e) == 0 ? 0 : 2;
  }

  std::signal(SIGINT, OnInterrupt);
  if (*conv) return rmcli::RunConvert(convert, InterruptFlag(), isatty(fileno(stderr)) != 0);
  if (*animationCommand) return rmcli::RunAnimation(animation, InterruptFlag(), isatty(fileno(stderr)) != 0);
  if (*clutCommand) return rmcli::RunClut(clut);
  if (*settingsCommand) return rmcli::RunSettings(settings);
  if (*projectCommand) return rmcli::RunProject(project);
  if (*controllersCommand) return rmcli::RunControllers();
  if (*fontCommand) return rmcli::RunFont(font);
  batch.terminal = isatty(fileno(stderr)) != 0;
  if (*kerningCommand) return rmcli::RunKerning(kerning);
  if (*batchCommand) return rmcli::RunBatchCommand(batch, InterruptFlag());
  if (*gridCommand) return rmcli::RunGridCommand(grid);
  if (*consoleCommand) return rmcli::RunConsoleCommand(console, InterruptFlag());
  if (*importArrayCommand) return rmcli::RunImportArray(importArray);
  return 2;
}
