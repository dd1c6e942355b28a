#include "shell/FontDataJob.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <set>

#include "engine/Clock.h"
#include "engine/ColourModes.h"
#include "engine/ProgramVersion.h"
#include "engine/TextLines.h"
#include "fonts/CharSelection.h"
#include "fonts/FontDataMaker.h"
#include "fonts/UnicodeBlocks.h"
#include "shell/Application.h"
#include "shell/CommandNames.h"
#include "shell/ProjectContext.h"
#include "shell/ProjectFiles.h"
#include "shell/SettingsTable.h"

namespace rm {

namespace {

// The value of the per-structure variant of the setting that fills `member`: its key with the
// structure's suffix ("wua" and "wua_r").
template <class Member>
std::string Variant(const Application& app, Member member, const std::string& suffix) {
  for (const SettingDef& d : SettingsTable()) {
    const Member* bound = std::get_if<Member>(&d.field);
    if (!bound || *bound != member) continue;
    const SettingDef* variant = FindSetting(std::string(d.key) + suffix);
    return variant ? GetSetting(app, *variant) : std::string();
  }
  return {};
}

bool ParseHex(std::string_view text, int& value) {
  if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) text.remove_prefix(2);
  if (text.empty()) return false;
  const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
  return ec == std::errc() && end == text.data() + text.size();
}

// Two whole numbers "A,B" and an optional third.
bool ParseNumbers(const std::string& text, std::vector<double>& out, std::size_t least, std::size_t most) {
  out.clear();
  std::size_t from = 0;
  while (from <= text.size()) {
    const std::size_t comma = text.find(',', from);
    const std::string part = text.substr(from, comma == std::string::npos ? std::string::npos : comma - from);
    char* end = nullptr;
    const double v = std::strtod(part.c_str(), &end);
    if (part.empty() || *end != '\0') return false;
    out.push_back(v);
    if (comma == std::string::npos) break;
    from = comma + 1;
  }
  return out.size() >= least && out.size() <= most;
}

// The per-structure variants of the descriptor switches and ranks, which the Font Panel puts in
// force when a structure is chosen.
void TakeStructureVariants(const Application& app, FontJob& job, FontStructure structure) {
  const std::string k = structure == FontStructure::RawData      ? "_r"
                        : structure == FontStructure::Structured ? "_s"
                        : structure == FontStructure::FontBloc   ? "_b"
                                                                 : "_d";
  for (bool FontJob::*flag :
       {&FontJob::CharAddress, &FontJob::CharWidthBits, &FontJob::CharHeightBits, &FontJob::XOffset, &FontJob::YOffset,
        &FontJob::StartAddress, &FontJob::CharSizeBytes, &FontJob::CharSizeBits, &FontJob::CharSpacing})
    job.*flag = Variant(app, flag, k) == "1";
  for (std::string FontJob::*rank :
       {&FontJob::CharAddressRank, &FontJob::CharWidthRank, &FontJob::CharHeightRank, &FontJob::XOffsetRank,
        &FontJob::YOffsetRank, &FontJob::StartAddressRank, &FontJob::CharSizeBytesRank, &FontJob::CharSizeBitsRank,
        &FontJob::CharSpacingRank})
    job.*rank = Variant(app, rank, k);
}

FontStructure StructureOf(const FontJob& job) {
  if (job.DmdStruct) return FontStructure::DmdStruct;
  if (job.FontBloc) return FontStructure::FontBloc;
  if (job.RawData) return FontStructure::RawData;
  return FontStructure::Structured;
}

void SetStructure(FontJob& job, FontStructure s) {
  job.RawData = s == FontStructure::RawData || s == FontStructure::DmdStruct;
  job.FontBloc = s == FontStructure::FontBloc;
  job.DmdStruct = s == FontStructure::DmdStruct;
}

// The data's name: the script's without ".FSC", blanks made "_", and any other character that
// no C name may hold made "_" too.
std::string DataName(const std::string& scriptName, const std::string& codePageSuffix) {
  std::string n = scriptName;
  if (n.size() >= 4) {
    std::string ext = n.substr(n.size() - 4);
    std::transform(ext.begin(), ext.end(), ext.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    if (ext == ".FSC") n.erase(n.size() - 4);
  }
  n += codePageSuffix;
  for (char& c : n)
    if (!std::isalnum(static_cast<unsigned char>(c)) && c != '_') c = '_';
  for (std::size_t at = n.find("__"); at != std::string::npos; at = n.find("__")) n.erase(at, 1);
  if (n.empty() || std::isdigit(static_cast<unsigned char>(n[0]))) n = "_" + n;
  return n;
}

// The Code Header template of the structure: the project's template's name with the structure's
// suffix. A project that has none yet gets the program's own, as its graphics template is made
// when missing; only when it cannot be written is the user asked.
JobOutcome TemplateLines(Application& app, FontStructure structure, std::vector<std::string>& lines) {
  lines = ProjectFiles::DefaultHeaderTemplate(FontTemplateSuffix(structure));
  const std::string& graphics = app.session.HeaderIncludeFile;
  if (graphics.empty()) return {};
  const std::filesystem::path p(graphics);
  const std::string path = (p.parent_path() / (p.stem().string() + FontTemplateSuffix(structure))).string();
  TextLines t;
  if (t.LoadFromFile(path)) {
    lines = t.Lines();
    return {};
  }
  TextLines made;
  for (const std::string& l : lines) made.Add(l);
  if (made.SaveToFile(path)) return {};
  const std::string answer = app.ui.MessageDlg(
      " No Header Include file available to include inside the code\r Continue or Cancel \r >> Edit the Header to "
      "include or restore the default Header \r in the configuration Settings ",
      "Warning", DlgType::Warning, {"Continue", "Cancel"});
  if (answer != "Continue") return JobOutcome::Failed("cancelled: no Code Header template");
  return {};
}

// The characters of the request, or of the job's selection when the request names none.
JobOutcome CollectChars(Application& app, const FontEngine& engine, const FontDataRequest& r,
                        std::vector<FontChar>& chars, bool& unicode, std::string& listed) {
  FontJob& job = app.asciiChild.job;
  int page = 0;
  std::from_chars(job.CodePage.data(), job.CodePage.data() + job.CodePage.size(), page);
  const auto ansiChar = [&](int byte) -> char32_t {
    const auto c = engine.ToUnicode(page, static_cast<std::uint8_t>(byte));
    return c ? *c : static_cast<char32_t>(byte);
  };
  std::set<int> codes;
  unicode = false;
  if (!r.chars.empty()) {
    for (char32_t c : FromUtf8(r.chars)) {
      int found = -1;
      for (int b = 0x20; b <= 0xFF && found < 0; ++b)
        if (ansiChar(b) == c) found = b;
      if (found < 0)
        return JobOutcome::Failed("the character " + Utf8(c) + " is not in code page " + job.CodePage +
                                      " (--range or --unicode-block take any character)",
                                  2);
      codes.insert(found);
    }
    listed = r.chars;
  } else if (!r.ranges.empty()) {
    for (const std::string& range : r.ranges) {
      const std::size_t dash = range.find('-');
      int first = 0, last = 0;
      if (dash == std::string::npos || !ParseHex(range.substr(0, dash), first) ||
          !ParseHex(range.substr(dash + 1), last) || first > last || last > 0xFFFF)
        return JobOutcome::Failed(
            "--range takes FIRST-LAST in hexadecimal, FIRST not above LAST, not \"" + range + "\"", 2);
      if (last > 0xFF) unicode = true;
      for (int c = first; c <= last; ++c) codes.insert(c);
      listed += (listed.empty() ? "" : " + ") + range;
    }
  } else if (!r.unicodeBlock.empty()) {
    TasciiChild& panel = app.asciiChild;
    if (!panel.selection.SelectBlock(r.unicodeBlock))
      return JobOutcome::Failed("no Unicode block is named \"" + r.unicodeBlock + "\" (font blocks lists them)", 2);
    if (r.subblock > 0 && !panel.selection.ShowSubblockNumber(r.subblock))
      return JobOutcome::Failed("the block " + job.UnicodeBlockName + " has " + std::to_string(job.SubblockCount) +
                                    " subblocks, not " + std::to_string(r.subblock),
                                2);
    const int high = job.SubblockHigh << 8;
    for (int low = 0; low < 256; ++low)
      if (high + low >= job.UnicodeBlockFirst && high + low <= job.UnicodeBlockLast) codes.insert(high + low);
    unicode = true;
    listed = "List";
  } else {
    // The job's own selection, as a Font Script gave it.
    const std::string& sel = job.SelectedChars;
    int first = 0, last = 0;
    if (sel.rfind("RANGE=", 0) == 0 && std::sscanf(sel.c_str() + 6, "%x %x", &first, &last) == 2) {
      for (int c = first; c <= last; ++c) codes.insert(c);
      unicode = last > 0xFF;
      listed = sel.substr(6);
    } else {
      unicode = job.Source == FontSource::Unicode || job.Source == FontSource::ExcelList;
      for (int c : app.asciiChild.selection.Codes()) codes.insert(unicode ? (job.SubblockHigh << 8) + c : c);
      listed = unicode ? "List" : sel;
    }
  }
  for (int code : codes) chars.push_back({code, unicode ? static_cast<char32_t>(code) : ansiChar(code)});
  if (unicode) job.Source = FontSource::Unicode;
  return {};
}

// The request's options over the job and the session.
JobOutcome ApplyFontOptions(Application& app, const FontDataRequest& r) {
  FontJob& job = app.asciiChild.job;
  ConversionSession& s = app.session;
  if (!r.font.empty()) job.FontName = r.font;
  if (r.size) {
    if (*r.size < 1 || *r.size > 300) return JobOutcome::Failed("--size takes 1 to 300 points", 2);
    job.FontSize = *r.size;
  }
  job.FontStyleBold |= r.bold;
  job.FontStyleItalic |= r.italic;
  job.FontStyleUnderline |= r.underline;
  job.FontStyleStrikeOut |= r.strikeOut;
  job.FontStyleOutline |= r.outline;
  job.Antialiased |= r.antialias;
  if (!r.codePage.empty()) job.CodePage = r.codePage;
  if (!r.structure.empty()) {
    static const std::map<std::string, FontStructure> kinds = {{"raw", FontStructure::RawData},
                                                               {"bloc", FontStructure::FontBloc},
                                                               {"struct", FontStructure::Structured},
                                                               {"dmd", FontStructure::DmdStruct}};
    const auto k = kinds.find(r.structure);
    if (k == kinds.end()) return JobOutcome::Failed("--structure takes raw, bloc, struct or dmd", 2);
    SetStructure(job, k->second);
    TakeStructureVariants(app, job, k->second);
  }
  if (r.fixed) job.FixedChars = true;
  if (r.maxWidth) job.MaxCharWidth = *r.maxWidth;
  if (r.maxHeight) job.MaxCharHeight = *r.maxHeight;
  std::vector<double> v;
  if (!r.shift.empty()) {
    if (!ParseNumbers(r.shift, v, 2, 2)) return JobOutcome::Failed("--shift takes X,Y in pixels", 2);
    job.ShiftX = static_cast<int>(v[0]);
    job.ShiftY = static_cast<int>(v[1]);
  }
  if (!r.stretch.empty()) {
    if (!ParseNumbers(r.stretch, v, 2, 3) || v[0] <= 0 || v[1] <= 0)
      return JobOutcome::Failed("--stretch takes W,H[,SHIFT]: two positive factors and a row shift", 2);
    app.asciiChild.placement.SetStretch(true, v[0], v[1], v.size() > 2 ? static_cast<int>(v[2]) : 0);
  }
  if (!r.mode.empty()) {
    const ColourModeInfo* info = FindColourModeByCliName(r.mode);
    if (!info) return JobOutcome::Failed("unknown mode: " + r.mode, 2);
    app.mainForm.SetColourMode(info->modeNumber, true);
  }
  if (!r.direction.empty()) {
    const auto d = Directions().find(r.direction);
    if (d == Directions().end()) return JobOutcome::Failed("unknown direction: " + r.direction, 2);
    // A font is no canvas: its direction is taken without the canvas's size rules, with the
    // corner the direction starts from.
    s.Direction = d->second;
    s.Horizontal = IsHorizontal(d->second);
    switch (d->second) {
      case PagingDirection::ToLeftAll: s.Origin = OriginCorner::TR; break;
      case PagingDirection::UpAll: s.Origin = OriginCorner::BL; break;
      default: s.Origin = OriginCorner::TL; break;
    }
  }
  if (r.msbFirst) app.mainForm.MsbFirst();
  if (r.msbLast) app.mainForm.MsbLast();
  if (r.outputKind == "bin") s.Output = OutputKind::BinaryFile;
  if (r.outputKind == "text" && (s.Output == OutputKind::BinaryFile || s.Output == OutputKind::IntelHex))
    s.Output = OutputKind::Bits8;
  return {};
}

}  // namespace

JobOutcome MakeFontData(Application& app, const FontEngine& engine, const FontDataRequest& r) {
  std::string error;
  if (!OpenProject(app, r.project, error)) return JobOutcome::Failed(error);
  TasciiChild& panel = app.asciiChild;
  panel.SetFontEngine(&engine);
  if (!r.script.empty()) {
    TextLines lines;
    if (!lines.LoadFromFile(r.script)) return JobOutcome::Failed(r.script + ": the font script cannot be read");
    if (!panel.OpenFontScript(lines.Lines(), app.globals.AnimationMode)) return JobOutcome::Failed("");
  }
  if (JobOutcome set = ApplySettingOverrides(app, r.settings); !set.Done()) return set;
  if (JobOutcome options = ApplyFontOptions(app, r); !options.Done()) return options;
  FontJob& job = panel.job;
  ConversionSession& s = app.session;

  FontDataInput in;
  in.structure = StructureOf(job);
  if (JobOutcome collected = CollectChars(app, engine, r, in.chars, in.unicode, in.charactersText); !collected.Done())
    return collected;

  FontRequest fr;
  if (std::filesystem::is_regular_file(job.FontName))
    fr.file = job.FontName;
  else
    fr.family = job.FontName;
  fr.pointSize = job.FontSize;
  fr.bold = job.FontStyleBold;
  fr.italic = job.FontStyleItalic;
  fr.underline = job.FontStyleUnderline;
  fr.strikeOut = job.FontStyleStrikeOut;
  fr.outline = job.FontStyleOutline;
  fr.antialiased = job.Antialiased && !s.Monochrome;
  const std::unique_ptr<Font> font = engine.Open(fr, error);
  if (!font) return JobOutcome::Failed(job.FontName + ": " + error);
  if (font->Identity().substituted)
    app.ui.Notice("the font " + job.FontName + " is not installed: " + font->Identity().family + " stands in for it");

  in.grayHorizontalScheme = job.Gray16ColumnScheme;
  FontDataMaker maker(*font, job, s, app.ui);
  const OutputKind outputBefore = s.Output;
  if (!maker.Check(in)) return JobOutcome::Failed("");
  if (JobOutcome t = TemplateLines(app, in.structure, in.templateLines); !t.Done()) return t;

  const std::string scriptName = !r.script.empty() ? panel.scriptName : panel.DefaultScriptName();
  in.name = DataName(scriptName, job.NoDescriptorCodepage && !in.unicode ? s.Underscore + job.CodePage : "");
  in.version = ProgramVersion();
  in.dateText = FormatDateTime(app.clock.Now());
  in.codePage = job.CodePage;
  int filler = 0;
  in.filler = ParseHex(app.globals.FillerText, filler) ? filler : 0;
  if (job.FontEolComma)
    in.fontEol = EndOfLine::Comma;
  else if (job.FontEolSemicolon)
    in.fontEol = EndOfLine::Semicolon;
  else if (job.FontEolString)
    in.fontEol = EndOfLine::Custom;
  else
    in.fontEol = EndOfLine::None;
  in.fontEolString = job.DataSeparator;

  TextLines text;
  std::vector<std::uint8_t> bytes;
  const EndOfLine eol = s.WorkEol;
  const std::string eolString = s.WorkEolString;
  const bool made = maker.Make(in, text, bytes);
  // The canvas's end of line and word width come back after the job.
  s.WorkEol = eol;
  s.WorkEolString = eolString;
  s.Output = outputBefore;
  if (!made) return JobOutcome::Failed("the font data were not made: nothing was written");

  JobOutcome done;
  done.output = s.Output == OutputKind::BinaryFile ? std::string(bytes.begin(), bytes.end()) : text.Text();
  if (!r.outputFile.empty() && r.outputFile != "-") {
    if (!WriteFileAtomically(r.outputFile, done.output, &error)) return JobOutcome::Failed(r.outputFile + ": " + error);
    done.filesWritten.push_back(r.outputFile);
  }
  app.ui.Status("Font data made: " + std::to_string(maker.Sizes().count) + " characters, " +
                std::to_string(maker.Sizes().Total()) + " bytes");
  return done;
}

}  // namespace rm
