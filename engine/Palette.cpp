#include "engine/Palette.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <functional>

#include "engine/ColourModes.h"
#include "engine/TextLines.h"

namespace rm {

namespace {

constexpr std::string_view kPaletteErrorTitle = "Color Palette Error";

Colour Gray(int level) { return MakeColour(level, level, level); }

bool IsBlank(char ch) { return ch == ' ' || ch == '\t' || ch == '\r' || ch == '\n' || ch == '\f' || ch == '\v'; }

std::string_view Trim(std::string_view s) {
  while (!s.empty() && IsBlank(s.front())) s.remove_prefix(1);
  while (!s.empty() && IsBlank(s.back())) s.remove_suffix(1);
  return s;
}

std::string Upper(std::string s) {
  for (char& ch : s)
    if (ch >= 'a' && ch <= 'z') ch = static_cast<char>(ch - 'a' + 'A');
  return s;
}

constexpr int DigitValue(char ch, int base) {
  int v = -1;
  if (ch >= '0' && ch <= '9')
    v = ch - '0';
  else if (ch >= 'a' && ch <= 'f')
    v = ch - 'a' + 10;
  else if (ch >= 'A' && ch <= 'F')
    v = ch - 'A' + 10;
  return v < base ? v : -1;
}

std::string_view DefaultPaletteName(int colours, bool gray256) {
  switch (colours) {
    case 8: return "default_8_Colors_palette.pal";
    case 16: return "default_16_Colors_palette.pal";
    case 256: return gray256 ? "default_grayscale_256_Colors_palette.pal" : "default_256_Colors_palette.pal";
    case 4096: return "default_4096_Colors_palette.pal";
    case 65536: return "default_65536_Colors_palette.pal";
    case 262144: return "default_262144_Colors_palette.pal";
    default: return {};
  }
}

// A hexadecimal digit's value; 0x10 for any other character.
constexpr std::array<std::uint8_t, 256> kHexValue = [] {
  std::array<std::uint8_t, 256> t{};
  for (int ch = 0; ch < 256; ++ch) {
    const int d = DigitValue(static_cast<char>(ch), 16);
    t[static_cast<std::size_t>(ch)] = static_cast<std::uint8_t>(d < 0 ? 0x10 : d);
  }
  return t;
}();

bool ReadWholeFile(const std::string& path, std::string& text) {
  std::FILE* f = std::fopen(path.c_str(), "rb");
  if (f == nullptr) return false;
  char buffer[65536];
  std::size_t n = 0;
  while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0) text.append(buffer, n);
  const bool ok = std::ferror(f) == 0;
  std::fclose(f);
  return ok;
}

bool IsFile(const std::string& path) {
  std::error_code ec;
  return std::filesystem::is_regular_file(path, ec);
}

// The shared body of the 8, 12, 16 and 18 bit loaders of `PaletteTable`.
PaletteLoadResult LoadPaletteTable(ConversionSession& session, int colours, int bits, bool gray256,
                                   const PaletteFolders& folders, UiPort& ui) {
  PaletteLoadResult result;
  bool custom = false;
  std::optional<std::string> path = FindPaletteFile(colours, gray256, folders, &custom);
  if (!path) {
    ui.MessageDlg(" " + std::to_string(bits) + " bit/pixel color Palette not found ! ", std::string(kPaletteErrorTitle),
                  DlgType::Error, {"OK"});
    return result;
  }
  result.Path = *path;
  std::optional<std::vector<Colour>> table = ReadPaletteFile(*path);
  if (!table || table->size() != static_cast<std::size_t>(colours)) {
    ui.MessageDlg(" " + std::to_string(bits) + " bit palette file seem to be corrupted ! ",
                  std::string(kPaletteErrorTitle), DlgType::Error, {"OK"});
    return result;
  }
  session.PaletteTable = std::move(*table);
  SortPalettes(session);
  result.Loaded = true;
  result.Origin = custom ? PaletteOrigin::Custom : PaletteOrigin::Default;
  if (custom) {
    result.LoadedLabel = kLabelCustomLoaded;
    result.CurrentLabel = kLabelCurrentCustom;
  } else {
    result.LoadedLabel = gray256 ? kLabelDefaultGrayLoaded : kLabelDefaultLoaded;
    result.CurrentLabel = kLabelCurrentDefault;
  }
  ui.Status(result.LoadedLabel);
  return result;
}

// The 8 and 16 colour tables: the default file in its own order, else the built-ins. A file that
// cannot serve (missing, unreadable, wrong count) is passed over without a word.
template <std::size_t N>
PaletteLoadResult LoadModeColoursFile(ConversionSession& session, const Colour (&builtIn)[N],
                                      const PaletteFolders& folders, UiPort& ui) {
  PaletteLoadResult result;
  result.CurrentLabel = kLabelCurrentDefault;
  std::optional<std::string> path = FindPaletteFile(static_cast<int>(N), false, folders);
  if (path) {
    result.Path = *path;
    std::optional<std::vector<Colour>> table = ReadPaletteFile(*path);
    if (table && table->size() == N) {
      session.ModeColours = std::move(*table);
      result.Loaded = true;
      result.Origin = PaletteOrigin::Default;
      result.LoadedLabel = kLabelDefaultLoaded;
      ui.Status(result.LoadedLabel);
      return result;
    }
  }
  session.ModeColours.assign(std::begin(builtIn), std::end(builtIn));
  result.Origin = PaletteOrigin::BuiltIn;
  return result;
}

// Round half to even, independent of the floating point environment.
long double RoundHalfEven(long double v) {
  long double f = std::floor(v);
  long double diff = v - f;
  if (diff > 0.5L) return f + 1;
  if (diff < 0.5L) return f;
  return std::fmod(f, 2.0L) == 0 ? f : f + 1;
}

}  // namespace

std::vector<Colour> GrayRamp(int levels) {
  std::vector<Colour> ramp;
  switch (levels) {
    case 4:
      for (int i = 0; i < 16; i += 5) ramp.push_back(Gray(255 - 17 * i));
      break;
    case 16:
      for (int i = 0; i < 16; ++i) ramp.push_back(Gray(255 - 17 * i));
      break;
    case 32:
      // 255 - 8*31 would be 7: the darkest level is pure black instead.
      for (int i = 0; i < 31; ++i) ramp.push_back(Gray(255 - 8 * i));
      ramp.push_back(Gray(0));
      break;
    default: break;
  }
  return ramp;
}

void BuildModeColours(ConversionSession& session) {
  const ColourModeInfo& mode = ModeRow(session.ModeNumber);
  if (mode.palette == PaletteKind::Colours8) {
    session.ModeColours.assign(std::begin(kBuiltInColours8), std::end(kBuiltInColours8));
  } else if (mode.palette == PaletteKind::Colours16) {
    session.ModeColours.assign(std::begin(kBuiltInColours16), std::end(kBuiltInColours16));
  } else if (mode.grayLevels > 0) {
    session.ModeColours = GrayRamp(mode.grayLevels);
    if (session.InvertGrayPalette) std::reverse(session.ModeColours.begin(), session.ModeColours.end());
  } else {
    session.ModeColours.clear();
  }
}

std::optional<Colour> ParsePaletteColour(std::string_view text) {
  std::string_view s = Trim(text);
  int base = 10;
  if (!s.empty() && s.front() == '$') {
    base = 16;
    s.remove_prefix(1);
  } else if (s.size() >= 2 && s[0] == '0' && (s[1] == 'x' || s[1] == 'X')) {
    base = 16;
    s.remove_prefix(2);
  }
  if (s.empty()) return std::nullopt;
  std::uint64_t value = 0;
  for (char ch : s) {
    int d = DigitValue(ch, base);
    if (d < 0) return std::nullopt;
    value = value * static_cast<unsigned>(base) + static_cast<unsigned>(d);
    if (value > 0xFFFFFF) return std::nullopt;
  }
  return static_cast<Colour>(value);
}

std::string FormatPaletteColour(Colour c) {
  char buf[16];
  std::snprintf(buf, sizeof buf, "$%08X", static_cast<unsigned>(c));
  return buf;
}

std::optional<std::vector<Colour>> ReadPaletteFile(const std::string& path) {
  std::string text;
  if (!ReadWholeFile(path, text)) return std::nullopt;
  std::vector<Colour> colours;
  colours.reserve(text.size() / 10);
  std::size_t start = 0;
  while (start < text.size()) {
    // The form the program writes, "$00BBGGRR" and a line feed, read without the general parse:
    // the default files hold up to 262144 such lines.
    if (start + 10 <= text.size() && text[start] == '$' && text[start + 9] == '\n') {
      std::uint32_t value = 0;
      std::uint32_t bad = 0;
      for (std::size_t i = start + 1; i < start + 9; ++i) {
        const std::uint8_t d = kHexValue[static_cast<unsigned char>(text[i])];
        bad |= d;
        value = value << 4 | (d & 0xFu);
      }
      if (!(bad & 0x10u) && value <= 0xFFFFFF) {
        colours.push_back(static_cast<Colour>(value));
        start += 10;
        continue;
      }
    }
    std::size_t end = text.find_first_of("\r\n", start);
    if (end == std::string::npos) end = text.size();
    std::string_view line = Trim(std::string_view(text).substr(start, end - start));
    if (!line.empty()) {
      std::optional<Colour> c = ParsePaletteColour(line);
      if (!c) return std::nullopt;
      colours.push_back(*c);
    }
    start = end + 1;
  }
  return colours;
}

std::string CustomPaletteName(const std::string& activeProject, int colours) {
  std::string base = activeProject;
  if (base.size() >= 4 && Upper(base.substr(base.size() - 4)) == ".LCD") base.resize(base.size() - 4);
  return base + "_" + std::to_string(colours) + ".pal";
}

std::optional<std::string> FindPaletteFile(int colours, bool gray256, const PaletteFolders& folders, bool* custom) {
  if (custom) *custom = false;
  // The 8 and 16 colour tables have no custom file.
  if (colours > 16 && !folders.ActiveProject.empty()) {
    std::string path = CustomPaletteName(folders.ActiveProject, colours);
    if (IsFile(path)) {
      if (custom) *custom = true;
      return path;
    }
  }
  std::string_view name = DefaultPaletteName(colours, gray256);
  if (name.empty()) return std::nullopt;
  for (const std::string& folder : folders.DefaultFolders) {
    if (folder.empty()) continue;
    std::string path = (std::filesystem::path(folder) / name).string();
    if (IsFile(path)) return path;
  }
  return std::nullopt;
}

void SortPalettes(ConversionSession& session) {
  // The shipped files are in order already, and a check costs far less than a sort.
  if (!std::is_sorted(session.PaletteTable.begin(), session.PaletteTable.end()))
    std::sort(session.PaletteTable.begin(), session.PaletteTable.end());
  if (session.RevertPaletteOnLoading) std::reverse(session.PaletteTable.begin(), session.PaletteTable.end());
}

PaletteLoadResult Load8bitPalette(ConversionSession& session, const PaletteFolders& folders, UiPort& ui) {
  return LoadPaletteTable(session, 256, 8, ModeRow(session.ModeNumber).palette == PaletteKind::Gray256, folders, ui);
}
PaletteLoadResult Load12bitPalette(ConversionSession& session, const PaletteFolders& folders, UiPort& ui) {
  return LoadPaletteTable(session, 4096, 12, false, folders, ui);
}
PaletteLoadResult Load16bitPalette(ConversionSession& session, const PaletteFolders& folders, UiPort& ui) {
  return LoadPaletteTable(session, 65536, 16, false, folders, ui);
}
PaletteLoadResult Load18bitPalette(ConversionSession& session, const PaletteFolders& folders, UiPort& ui) {
  return LoadPaletteTable(session, 262144, 18, false, folders, ui);
}
PaletteLoadResult Load8ColorsPalette(ConversionSession& session, const PaletteFolders& folders, UiPort& ui) {
  return LoadModeColoursFile(session, kBuiltInColours8, folders, ui);
}
PaletteLoadResult Load16ColorsPalette(ConversionSession& session, const PaletteFolders& folders, UiPort& ui) {
  return LoadModeColoursFile(session, kBuiltInColours16, folders, ui);
}

PaletteLoadResult SelectionPalette(ConversionSession& session, const PaletteFolders& folders, UiPort& ui) {
  BuildModeColours(session);
  switch (ModeRow(session.ModeNumber).palette) {
    case PaletteKind::Colours8: return Load8ColorsPalette(session, folders, ui);
    case PaletteKind::Colours16: return Load16ColorsPalette(session, folders, ui);
    case PaletteKind::Gray256:
    case PaletteKind::Lut8: return Load8bitPalette(session, folders, ui);
    case PaletteKind::Lut12: return Load12bitPalette(session, folders, ui);
    case PaletteKind::Lut16: return Load16bitPalette(session, folders, ui);
    case PaletteKind::Lut18: return Load18bitPalette(session, folders, ui);
    case PaletteKind::None: break;
  }
  PaletteLoadResult result;
  if (!session.ModeColours.empty()) result.Origin = PaletteOrigin::BuiltIn;
  result.CurrentLabel = kLabelCurrentDefault;
  return result;
}

int PaletteIndexOf(const std::vector<Colour>& sortedTable, Colour c) {
  if (sortedTable.empty()) return -1;
  auto it = sortedTable.front() <= sortedTable.back()
                ? std::lower_bound(sortedTable.begin(), sortedTable.end(), c)
                : std::lower_bound(sortedTable.begin(), sortedTable.end(), c, std::greater<Colour>());
  if (it == sortedTable.end() || *it != c) return -1;
  return static_cast<int>(it - sortedTable.begin());
}

int ModeColourIndexOf(const std::vector<Colour>& modeColours, Colour c) {
  for (std::size_t i = 0; i < modeColours.size(); ++i)
    if (modeColours[i] == c) return static_cast<int>(i);
  return -1;
}

void ColourIndex::Build(const std::vector<Colour>& table) {
  // Conversions mostly repeat on one palette; comparing is far cheaper than rebuilding.
  if (built_ && table == source_) return;
  source_ = table;
  built_ = true;
  slots_.clear();
  mask_ = 0;
  if (BuildLattice(table) || table.empty()) return;
  std::size_t size = 16;
  int bits = 4;
  while (size < table.size() * 2) {  // at most half full: short probe runs
    size <<= 1;
    ++bits;
  }
  slots_.assign(size, Slot{});
  mask_ = size - 1;
  shift_ = 32 - bits;
  for (std::size_t n = 0; n < table.size(); ++n) {
    const Colour c = table[n];
    for (std::size_t i = Hash(c);; i = (i + 1) & mask_) {
      Slot& s = slots_[i];
      if (s.index < 0) {
        s = {c, static_cast<std::int32_t>(n)};
        break;
      }
      if (s.colour == c) break;  // a colour standing twice keeps its first index
    }
  }
}

bool ColourIndex::BuildLattice(const std::vector<Colour>& table) {
  lattice_ = false;
  // Strictly ascending, so no colour stands twice: a colour's index is its rank.
  if (table.size() < 2 || table.front() < 0 || table.back() > 0xFFFFFF ||
      std::adjacent_find(table.begin(), table.end(), std::greater_equal<Colour>()) != table.end())
    return false;
  bool used[3][256] = {};
  for (Colour c : table)
    for (int a = 0; a < 3; ++a) used[a][(c >> (8 * a)) & 0xFF] = true;
  std::int32_t weight = 1;
  for (int a = 0; a < 3; ++a) {
    std::int32_t level = 0;
    for (int v = 0; v < 256; ++v) levels_[a][v] = used[a][v] ? weight * level++ : kOffLattice;
    weight *= level;
  }
  // As many entries as combinations of levels, none twice: every combination is there once, and
  // ascending as numbers (blue high) the rank of (b, g, r) is (b * greens + g) * reds + r.
  if (static_cast<std::size_t>(weight) != table.size()) return false;
  lattice_ = true;
  return true;
}

void ColourIndex::IndexOfRun(const std::uint32_t* pixels, std::int32_t* out, std::size_t n) const {
  constexpr std::size_t kAhead = 8;
  if (lattice_) {
    for (std::size_t i = 0; i < n; ++i) out[i] = IndexOf(static_cast<Colour>(pixels[i] & 0xFFFFFFu));
    return;
  }
  if (slots_.empty()) {
    std::fill(out, out + n, -1);
    return;
  }
  for (std::size_t i = 0; i < n; ++i) {
    if (i + kAhead < n) __builtin_prefetch(&slots_[Hash(static_cast<Colour>(pixels[i + kAhead] & 0xFFFFFFu))]);
    out[i] = IndexOf(static_cast<Colour>(pixels[i] & 0xFFFFFFu));
  }
}

int CountandListColors(const Bitmap& bitmap, std::vector<Colour>* list) {
  if (list) list->clear();
  // One bit per 24 bit colour: 2 MiB, whatever the picture.
  std::vector<std::uint64_t> seen(std::size_t{1} << 18, 0);
  int count = 0;
  for (int y = 0; y < bitmap.Height(); ++y) {
    const std::uint32_t* row = bitmap.Row(y);
    for (int x = 0; x < bitmap.Width(); ++x) {
      std::uint32_t c = row[x] & 0xFFFFFFu;
      std::uint64_t bit = std::uint64_t{1} << (c & 63);
      std::uint64_t& word = seen[c >> 6];
      if (word & bit) continue;
      word |= bit;
      ++count;
      if (list) list->push_back(static_cast<Colour>(c));
    }
  }
  return count;
}

void Get24bitGrayscale(Bitmap& bitmap) {
  for (int y = 0; y < bitmap.Height(); ++y) {
    std::uint32_t* row = bitmap.Row(y);
    for (int x = 0; x < bitmap.Width(); ++x) {
      Colour c = static_cast<Colour>(row[x]);
      long double v = 0.3L * RedOf(c) + 0.59L * GreenOf(c) + 0.11L * BlueOf(c);
      int g = static_cast<int>(RoundHalfEven(v));
      g = std::clamp(g, 0, 255);
      row[x] = static_cast<std::uint32_t>(Gray(g));
    }
  }
}

bool ExportPaletteToText(const std::vector<Colour>& table, const std::string& path, std::string& error) {
  std::string text;
  text.reserve(table.size() * 10);
  for (Colour c : table) {
    text += FormatPaletteColour(c);
    text += '\n';
  }
  return WriteFileAtomically(path, text, &error);
}

std::optional<std::string> LoadColorPalette(const std::string& picturePath, const std::string& activeProject,
                                            ImageCodecs& codecs, UiPort& ui) {
  const std::string projectName = std::filesystem::path(activeProject).filename().string();
  const std::string stem = std::filesystem::path(activeProject).stem().string();
  // Without a project of its own the palette would overwrite the one every project falls back to.
  if (activeProject.empty() || Upper(stem) == "DEFAULT") {
    ui.MessageDlg(" The current project name is default.LCD  \r Custom Palette Load aborted",
                  "Load Custom Color Palette Error", DlgType::Error, {"OK"});
    return std::nullopt;
  }
  Bitmap picture;
  std::string error;
  if (!codecs.Load(picturePath, picture, error)) {
    ui.MessageDlg(error, "Load Custom Color Palette Error", DlgType::Error, {"OK"});
    return std::nullopt;
  }
  std::vector<Colour> colours;
  const int count = CountandListColors(picture, &colours);
  if (count != 256 && count != 4096 && count != 65536 && count != 262144) {
    ui.MessageDlg(
        "Please load a JPG,PNG or BMP Graphic with 256,4096,65536 or 262144 colors to create new a color "
        "palette\r Loaded graphic colors count is " +
            std::to_string(count),
        "Number of Colors", DlgType::Warning, {"OK"});
    return std::nullopt;
  }
  const std::string path = CustomPaletteName(activeProject, count);
  if (!ExportPaletteToText(colours, path, error)) {
    ui.MessageDlg(" Color palette file " + path + " could not be written: " + error, "Load Custom Color Palette Error",
                  DlgType::Error, {"OK"});
    return std::nullopt;
  }
  ui.MessageDlg(" New " + std::to_string(count) + " color palette created for this project " + projectName,
                "New Palette", DlgType::Information, {"OK"});
  return path;
}

}  // namespace rm
