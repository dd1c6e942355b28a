#include "shell/KerningJob.h"

#include <filesystem>

#include "engine/Clock.h"
#include "engine/ProgramVersion.h"
#include "engine/TextLines.h"
#include "fonts/FontEngine.h"
#include "fonts/KerningTable.h"
#include "shell/Application.h"
#include "shell/ProjectContext.h"

namespace rm {

JobOutcome MakeKerningTable(Application& app, const FontEngine& engine, const KerningRequest& r) {
  std::string error;
  if (!OpenProject(app, r.project, error)) return JobOutcome::Failed(error);
  if (JobOutcome set = ApplySettingOverrides(app, r.settings); !set.Done()) return set;
  if (r.size < 1 || r.size > 300) return JobOutcome::Failed("--size takes 1 to 300 points", 2);
  FontRequest fr;
  if (std::filesystem::is_regular_file(r.font))
    fr.file = r.font;
  else
    fr.family = r.font;
  fr.pointSize = r.size;
  fr.bold = r.bold;
  fr.italic = r.italic;
  const std::unique_ptr<Font> font = engine.Open(fr, error);
  if (!font) return JobOutcome::Failed(r.font + ": " + error);

  const FontJob& job = app.asciiChild.job;
  KerningSyntax k;
  k.prefix = job.KerningPrefix;
  k.suffix = job.KerningSuffix;
  k.tableBegin = job.KerningTableBegin;
  k.tableEnd = job.KerningTableEnd;
  k.lineBegin = job.KerningLineBegin;
  k.lineEnd = job.KerningLineEnd;
  std::string styles;
  if (r.bold) styles += ", Bold";
  if (r.italic) styles += ", Italic";
  const std::string family = font->Identity().family;
  // The table's name is the font's, as a C name.
  std::string name = family + "_" + std::to_string(r.size) + (r.bold ? "_B" : "") + (r.italic ? "_I" : "");
  for (char& c : name)
    if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
  const std::vector<KerningPair> pairs = font->KerningPairs(600);
  TextLines text;
  for (std::string& l : KerningTable(pairs, name, family + ", " + std::to_string(r.size) + styles, k, app.session,
                                     ProgramVersion(), FormatDateTime(app.clock.Now())))
    text.Add(std::move(l));
  JobOutcome done;
  done.output = text.Text();
  if (!r.outputFile.empty() && r.outputFile != "-") {
    if (!WriteFileAtomically(r.outputFile, done.output, &error)) return JobOutcome::Failed(r.outputFile + ": " + error);
    done.filesWritten.push_back(r.outputFile);
  }
  app.ui.Status(std::to_string(pairs.size()) + " kerning pairs exported");
  return done;
}

}  // namespace rm
