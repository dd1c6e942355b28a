#include "shell/FontScriptJob.h"

#include "engine/TextLines.h"
#include "shell/Application.h"
#include "shell/ProjectContext.h"

namespace rm {

JobOutcome RunFontScriptJob(Application& app, const FontScriptRequest& r) {
  std::string error;
  if (!OpenProject(app, r.project, error)) return JobOutcome::Failed(error);
  if (JobOutcome set = ApplySettingOverrides(app, r.settings); !set.Done()) return set;
  TextLines lines;
  if (!lines.LoadFromFile(r.script)) return JobOutcome::Failed(r.script + ": the font script cannot be read");
  TasciiChild& panel = app.asciiChild;
  if (!panel.OpenFontScript(lines.Lines(), app.globals.AnimationMode)) return JobOutcome::Failed("");
  // A new script of the job as read: leave the script the file gave, then create one.
  panel.FontScriptMode = false;
  panel.CreateFontButtonClick();
  JobOutcome done;
  done.output = panel.script.Text();
  if (!r.saveScript.empty() && r.saveScript != "-") {
    if (!WriteFileAtomically(r.saveScript, done.output, &error)) return JobOutcome::Failed(r.saveScript + ": " + error);
    done.filesWritten.push_back(r.saveScript);
    done.output.clear();
  }
  return done;
}

}  // namespace rm
