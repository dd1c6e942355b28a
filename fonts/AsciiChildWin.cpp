#include "fonts/AsciiChildWin.h"

#include <algorithm>
#include <charconv>

namespace rm {

namespace {

constexpr std::string_view kNotInFileNames = "\\/:*?\"<>|";

}  // namespace

TasciiChild::TasciiChild(UiPort& ui, ConversionSession& session) : ui_(ui), session_(session) {}

void TasciiChild::SetFontEngine(const FontEngine* engine) {
  engine_ = engine;
  if (!engine_) {
    selection.SetCodePageMap({});
    selection.SetGlyphTest({});
    font_.reset();
    return;
  }
  selection.SetCodePageMap([this](std::uint8_t byte) -> std::optional<char32_t> {
    int page = 0;
    const std::string& text = job.CodePage;
    std::from_chars(text.data(), text.data() + text.size(), page);
    return engine_->ToUnicode(page, byte);
  });
  selection.SetGlyphTest([this](char32_t c) { return !font_ || font_->HasGlyph(c); });
  OpenJobFont();
}

void TasciiChild::OpenJobFont() {
  if (!engine_) return;
  FontRequest request;
  request.family = job.FontName;
  request.pointSize = job.FontSize;
  request.bold = job.FontStyleBold;
  request.italic = job.FontStyleItalic;
  request.underline = job.FontStyleUnderline;
  request.strikeOut = job.FontStyleStrikeOut;
  request.outline = job.FontStyleOutline;
  request.antialiased = job.Antialiased;
  std::string error;
  font_ = engine_->Open(request, error);
  if (!font_) {
    ui_.Status(error);
    return;
  }
  choice.CheckMeasuredSize(font_->Metrics().height, font_->Measure(U'W').advance);
}

void TasciiChild::InitAsciiChild() {
  selection.Clear();
  placement.ResetFactors();
  if (FontScriptMode && freshlyOpened_) {
    Script(1, FontNameLine(job.FontName));
    Script(2, FontSizeLine(job.FontSize, choice.SizeListed()));
    freshlyOpened_ = false;
  }
}

bool TasciiChild::ChangeMode(FontSource source) {
  if (FontScriptMode) {
    ui_.MessageDlg("Denied : Font Creation Active !", "Warning", DlgType::Warning, {"OK"});
    return false;
  }
  job.Source = source;
  return true;
}

std::string TasciiChild::DefaultScriptName() const {
  const std::string& sep = session_.Underscore;
  std::string styles;
  if (job.FontStyleBold) styles += "B";
  if (job.FontStyleItalic) styles += "I";
  if (job.FontStyleUnderline) styles += "U";
  if (job.FontStyleStrikeOut) styles += "S";
  std::string name;
  if (job.Source == FontSource::Vector) {
    name = job.FontName + sep + "Vector" + sep + styles + ".FSC";
  } else {
    std::string block;
    if (Unicode()) {
      const std::string& b = job.UnicodeBlockName;
      const std::size_t blank = b.find(' ');
      const std::string second = blank == std::string::npos ? "" : b.substr(blank + 1, b.find(' ', blank + 1) - blank - 1);
      block = "U" + b.substr(0, 5) + sep + second;
      if (job.SubblockCount > 1) block += sep + std::to_string(selection.SubblockNumber());
    }
    name = job.FontName + sep + std::to_string(job.FontSize) + sep + styles + block + ".FSC";
  }
  std::erase_if(name, [](char c) { return kNotInFileNames.find(c) != std::string_view::npos; });
  return name;
}

void TasciiChild::Script(int index, const std::string& text) {
  if (index != 14) {
    ui_.Status("Script Line = " + std::to_string(index));
    ui_.Status("Script = " + text);
  }
  if (index < 0 || static_cast<std::size_t>(index) >= script.Count()) return;
  // Line 13 of a Unicode script only takes text of the list's form, unless a range is chosen.
  const bool skipped = Unicode() && index == 13 && text.find('/') == std::string::npos &&
                       text != SelectedCharsLine("") && !job.AddressRangeMode;
  if (!skipped) script[static_cast<std::size_t>(index)] = text;
  if (index == 14 && job.Source == FontSource::Ansi) {
    const std::size_t open = text.find('['), close = text.rfind(']');
    if (open != std::string::npos && close != std::string::npos && close > open)
      listEditor = text.substr(open + 1, close - open - 1);
  }
  if (index != 14) scriptChanged = true;
  if (nameFromFile_) return;
  if (job.Source == FontSource::Editable) {
    script[0] = "Editable Font Filename :[" + job.FontName + ".EFF ]";
    if (script.Count() > 1) script[1] = "";
    return;
  }
  scriptName = DefaultScriptName();
  script[0] = FileNameLine(scriptName, true);
}

FontScriptFields TasciiChild::Fields() const {
  FontScriptFields f;
  f.fileName = scriptName;
  f.fontName = job.FontName;
  f.fontSize = job.FontSize;
  f.sizeListed = choice.SizeListed();
  f.bold = job.FontStyleBold;
  f.italic = job.FontStyleItalic;
  f.underline = job.FontStyleUnderline;
  f.strikeOut = job.FontStyleStrikeOut;
  f.outline = job.FontStyleOutline;
  f.source = job.Source;
  f.codePage = job.CodePage;
  f.blockName = job.UnicodeBlockName;
  f.subblock = selection.SubblockNumber();
  f.subblockCount = job.SubblockCount;
  f.direction = session_.Direction;
  f.corner = session_.Origin;
  f.msbFirst = session_.BigEndian;
  f.fixed = job.FixedChars;
  f.maxHeight = job.MaxCharHeight;
  f.maxWidth = job.MaxCharWidth;
  f.shiftX = job.ShiftX;
  f.shiftY = job.ShiftY;
  f.prefix = job.FontPrefix;
  f.suffix = job.FontSuffix;
  f.list = job.SelectedChars;
  return f;
}

void TasciiChild::ApplyFields(const FontScriptFields& f) {
  job.FontName = f.fontName;
  job.FontSize = f.fontSize;
  job.FontStyleBold = f.bold;
  job.FontStyleItalic = f.italic;
  job.FontStyleUnderline = f.underline;
  job.FontStyleStrikeOut = f.strikeOut;
  job.FontStyleOutline = f.outline;
  job.Source = f.source;
  job.CodePage = f.codePage;
  if (Unicode() && selection.SelectBlock(f.blockName)) selection.ShowSubblockNumber(f.subblock);
  session_.Direction = f.direction;
  session_.Horizontal = IsHorizontal(f.direction);
  session_.Origin = f.corner;
  session_.BigEndian = f.msbFirst;
  job.FixedChars = f.fixed;
  job.MaxCharHeight = f.maxHeight;
  job.MaxCharWidth = f.maxWidth;
  job.ShiftX = f.shiftX;
  job.ShiftY = f.shiftY;
  job.FontPrefix = f.prefix;
  job.FontSuffix = f.suffix;
  job.SelectedChars = job.SelectedCharsScriptForm = f.list;
}

void TasciiChild::CreateFontButtonClick() {
  ui_.Status("Create Font Button");
  script.Clear();
  FontScriptMode = true;
  nameFromFile_ = false;
  ui_.Status("Font Script Mode");
  placement.ResetFactors();
  job.StretchOn = false;
  // A new script starts with at least one character: "A", or in Unicode the "A" cell of the
  // subblock on show.
  if (job.SelectedChars.empty()) job.SelectedChars = job.SelectedCharsScriptForm = Unicode() ? "41/" : "A";
  scriptName = DefaultScriptName();
  FontScriptFields f = Fields();
  f.fileName = scriptName;
  for (std::string& line : WriteNewFontScript(f)) script.Add(std::move(line));
  scriptChanged = true;
}

bool TasciiChild::OpenFontScript(const std::vector<std::string>& lines, bool animationActive) {
  if (animationActive) {
    ui_.MessageDlg("Animation mode is still active, no font script edition in this mode", "Font script edition error",
                   DlgType::Error, {"OK"});
    return false;
  }
  std::vector<std::string> text = lines;
  FontScriptFields f = Fields();
  FontScriptReadNotes notes;
  ReadFontScript(text, f, &notes);
  script.Clear();
  for (std::string& line : text) script.Add(std::move(line));
  FontScriptMode = true;
  nameFromFile_ = true;
  freshlyOpened_ = true;
  ApplyFields(f);
  if (notes.addressRange) {
    ui_.Status("Address List Enable");
    addressRangeButton = "Disable Adress Range Selection";
    addressRangeLabel = "Adress Range Selection Mode";
    selection.SetAddressRangeMode(true);
    selection.SetFirstAddress(notes.rangeFirst);
    selection.SetLastAddress(notes.rangeLast);
  }
  if (job.Source == FontSource::Ansi) listEditor = job.SelectedChars;
  scriptChanged = false;
  return true;
}

bool TasciiChild::QuitFontscriptClick(const std::string& folder) {
  if (FontScriptMode && scriptChanged) {
    const std::string path = folder + "/" + scriptName;
    const std::string answer = ui_.MessageDlg(path + " Save Font script to file ? \r \r", "Font Script not saved !",
                                              DlgType::Confirmation, {"Yes", "No", "Cancel"});
    if (answer == "Cancel") return false;
    if (answer == "Yes") {
      std::string error;
      if (!script.SaveToFile(path, &error)) {
        ui_.MessageDlg(" File could not be saved to disk, access denied ! \r Reason = " + error, "Error",
                       DlgType::Error, {"OK"});
        return false;
      }
      ui_.Status("Saved !");
    }
  }
  ui_.Status("Quit Font Script");
  placement.ClearFontShiftsAndSizeLimits();
  FontScriptMode = false;
  scriptChanged = false;
  nameFromFile_ = false;
  script.Clear();
  ui_.Status("Normal Mode");
  return true;
}

void TasciiChild::GridClick(int col, int row) {
  selection.GridClick(col, row);
  if (!selection.RangeInProgress() && !job.AddressRangeMode) WriteListLine();
}

void TasciiChild::ClearSelection() {
  selection.Clear();
  Script(14, SelectedCharsLine(""));
}

void TasciiChild::AnsiListChange(std::string_view text) {
  selection.SetAnsiList(text);
  WriteListLine();
}

void TasciiChild::SetAddressRangeMode(bool on) {
  selection.SetAddressRangeMode(on);
  addressRangeButton = on ? "Disable Adress Range Selection" : "Enable Adress Range Selection";
  addressRangeLabel = on ? "Adress Range Selection Mode" : "";
}

void TasciiChild::ValidAdress() {
  if (selection.ValidAdress()) WriteListLine();
}

bool TasciiChild::FontSizeChange(std::string_view text) {
  if (!choice.FontSizeChange(text)) return false;
  OpenJobFont();
  ui_.Status("Font Size : " + std::to_string(job.FontSize));
  Script(2, FontSizeLine(job.FontSize, true));
  return true;
}

void TasciiChild::FontNameChange(const std::string& name, bool sizeListed) {
  choice.FontNameChange(name, sizeListed);
  choice.AddFontsMRUF();
  OpenJobFont();
  Script(1, FontNameLine(name));
  Script(2, FontSizeLine(job.FontSize, sizeListed));
}

void TasciiChild::StyleButtonClick(int style, bool on) {
  choice.SetStyle(style, on);
  OpenJobFont();
  Script(3 + style, StyleLine(3 + style, on));
}

void TasciiChild::DirectionButtonClick(PagingDirection direction) {
  session_.Direction = direction;
  session_.Horizontal = IsHorizontal(direction);
  Script(9, OrientationButtonLine(direction, session_.Origin));
}

void TasciiChild::CornerButtonClick(OriginCorner corner) {
  session_.Origin = corner;
  Script(9, OrientationButtonLine(session_.Direction, corner));
}

void TasciiChild::MsbButtonClick(bool first) {
  session_.BigEndian = first;
  Script(10, EndianLine(first));
}

void TasciiChild::WriteCharsLengthLine() {
  Script(11, CharsLengthLine(job.FixedChars, job.MaxCharHeight, job.MaxCharWidth, job.ShiftX, job.ShiftY));
}

void TasciiChild::ShiftButtonClick(int dx, int dy) {
  job.ShiftX += dx;
  job.ShiftY += dy;
  WriteCharsLengthLine();
}

void TasciiChild::ClearFontShiftsAndSizeLimits() {
  placement.ClearFontShiftsAndSizeLimits();
  WriteCharsLengthLine();
}

bool TasciiChild::MaximalFontHeight(std::string_view entry) {
  if (!placement.MaximalFontHeight(entry)) return false;
  WriteCharsLengthLine();
  return true;
}

bool TasciiChild::MaximalFontWidth(std::string_view entry) {
  if (!placement.MaximalFontWidth(entry)) return false;
  WriteCharsLengthLine();
  return true;
}

void TasciiChild::CharsLengthChange(bool fixed) {
  placement.SetFixedChars(fixed);
  WriteCharsLengthLine();
}

void TasciiChild::FontPrefixChange(const std::string& text) {
  job.FontPrefix = text;
  Script(12, PrefixLine(text));
}

void TasciiChild::FontSuffixChange(const std::string& text) {
  job.FontSuffix = text;
  Script(13, SuffixLine(text));
}

bool TasciiChild::ComboBoxBlockChange(std::string_view blockName) {
  if (!selection.SelectBlock(blockName)) return false;
  WriteFontTypeLine();
  return true;
}

void TasciiChild::NextSubblock() {
  selection.NextSubblock();
  WriteFontTypeLine();
}

void TasciiChild::PreviousSubblock() {
  selection.PreviousSubblock();
  WriteFontTypeLine();
}

void TasciiChild::FirstSubblock() {
  selection.FirstSubblock();
  WriteFontTypeLine();
}

void TasciiChild::LastSubblock() {
  selection.LastSubblock();
  WriteFontTypeLine();
}

bool TasciiChild::SubblockGridClick(int col, int row) {
  if (!selection.SubblockGridClick(col, row)) return false;
  WriteFontTypeLine();
  return true;
}

}  // namespace rm
