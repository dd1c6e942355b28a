#pragma once
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/Bitmap.h"
#include "engine/ConversionSession.h"
#include "engine/TextLines.h"
#include "engine/UiPort.h"
#include "fonts/CharSelection.h"
#include "fonts/FontChoice.h"
#include "fonts/FontEngine.h"
#include "fonts/FontJob.h"
#include "fonts/FontScript.h"
#include "fonts/GlyphPlacement.h"

namespace rm {

// The Font Panel, headless: the one font job and the parts that change it (the selection, the
// font choice, the glyph placement), and the Font Script that mirrors the job line by line while
// the panel is in Font Script Mode. Every control of the panel that changes the job rewrites its
// line of an open script through Script(). The paging direction, origin corner and bit order of a
// job are the conversion session's own.
class TasciiChild {
 private:
  UiPort& ui_;
  ConversionSession& session_;

 public:
  TasciiChild(UiPort& ui, ConversionSession& session);

  FontJob job;
  CharSelection selection{job, ui_};
  FontChoice choice{job, ui_};
  GlyphPlacement placement{job, ui_};
  // The scratch images: the glyph of the current character, and the enlarged view.
  Bitmap glyphImage{129, 129};
  Bitmap enlargedImage{129, 129};

  // The open Font Script, as the editors' script tab holds it, and its tab's name.
  TextLines script;
  std::string scriptName;
  bool FontScriptMode = false;
  bool scriptChanged = false;
  // ANSI mode: the line under the grid where the list can be typed or pasted.
  std::string listEditor;
  // The address range controls: the button's caption and the mode's label.
  std::string addressRangeButton = "Enable Adress Range Selection";
  std::string addressRangeLabel;

  // The desktop's font machinery. Without it a code page byte is its own character (ISO 8859-1),
  // every glyph counts as there and no size is measured.
  void SetFontEngine(const FontEngine* engine);
  // The job's font as last opened; nullptr without an engine or when it could not be opened.
  const Font* JobFont() const { return font_.get(); }

  // Clears the selection and both stretch factors; with a script freshly opened, writes its
  // font name and size lines again.
  void InitAsciiChild();
  // The mode buttons (ANSI, Unicode, Editable Font, SVG Font). Refused while a font is being
  // created (Font Script Mode).
  bool ChangeMode(FontSource source);

  // Replaces line `index` of the open script (TMainForm.Script): nothing when the script has no
  // such line; then renames the script after the job, unless it was opened from a file.
  void Script(int index, const std::string& text);
  // The name a script of the job gets: font, size, styles, and the Unicode block and subblock,
  // joined by the separator (usco), without characters no file name may hold.
  std::string DefaultScriptName() const;

  // The "Create Font" button: a new script of the job, and Font Script Mode.
  void CreateFontButtonClick();
  // A ".FSC" file opened from the explorer: refused while an animation is active; otherwise the
  // script is read into the job and the panel goes into Font Script Mode.
  bool OpenFontScript(const std::vector<std::string>& lines, bool animationActive);
  // Leaves Font Script Mode, asking first whether a changed script is to be saved into `folder`.
  // False when the user cancels.
  bool QuitFontscriptClick(const std::string& folder);

  // The job as a script holds it, and back.
  FontScriptFields Fields() const;
  void ApplyFields(const FontScriptFields& f);

  // The panel's controls. Each changes the job and rewrites its script line.
  void GridClick(int col, int row);
  void StartRange() { selection.StartRange(); }
  void ClearSelection();
  void AnsiListChange(std::string_view text);
  void SetAddressRangeMode(bool on);
  void ValidAdress();
  bool FontSizeChange(std::string_view text);
  void FontNameChange(const std::string& name, bool sizeListed = true);
  void StyleButtonClick(int style, bool on);
  void DirectionButtonClick(PagingDirection direction);
  void CornerButtonClick(OriginCorner corner);
  void MsbButtonClick(bool first);
  void ShiftButtonClick(int dx, int dy);
  void ClearFontShiftsAndSizeLimits();
  bool MaximalFontHeight(std::string_view entry);
  bool MaximalFontWidth(std::string_view entry);
  void CharsLengthChange(bool fixed);
  void FontPrefixChange(const std::string& text);
  void FontSuffixChange(const std::string& text);
  bool ComboBoxBlockChange(std::string_view blockName);
  void NextSubblock();
  void PreviousSubblock();
  void FirstSubblock();
  void LastSubblock();
  bool SubblockGridClick(int col, int row);

 private:
  void WriteListLine() { Script(14, SelectedCharsLine(job.SelectedChars)); }
  void WriteCharsLengthLine();
  void WriteFontTypeLine() { Script(8, FontTypeLine(Fields())); }
  bool Unicode() const { return job.Source == FontSource::Unicode || job.Source == FontSource::ExcelList; }

  // Opens the job's font after a change of name, size or style, and measures it: a font too large
  // for the font data is refused with a message.
  void OpenJobFont();

  const FontEngine* engine_ = nullptr;
  std::unique_ptr<Font> font_;
  bool nameFromFile_ = false;  // a script opened from a file keeps its name until renamed by hand
  bool freshlyOpened_ = false;
};

}  // namespace rm
