#include "shell/SettingsTable.h"

#include <algorithm>
#include <cctype>
#include <charconv>

#include "shell/Application.h"

namespace rm {

namespace {

std::string B(bool v) { return v ? "1" : "0"; }
bool ToBool(const std::string& v) { return std::stol(v) != 0; }
int ToInt(const std::string& v) { return std::stoi(v); }

// Radio groups stored as one boolean per choice: true selects the choice; false on the selected
// one falls back to the factory choice.
template <typename E>
void Radio(E& field, E choice, E factory, const std::string& v) {
  if (ToBool(v))
    field = choice;
  else if (field == choice)
    field = factory;
}

#define S_ (a.session)
#define SYN (a.session.Syntax)

constexpr auto kStr = SettingType::String;
constexpr auto kInt = SettingType::Integer;
constexpr auto kBool = SettingType::Boolean;

void SetDirectionKey(Application& a, PagingDirection d, const std::string& v) {
  if (ToBool(v)) {
    a.session.Direction = d;
    a.session.Horizontal = IsHorizontal(d);
  }
}

std::vector<SettingDef> BuildTable() {
  using A = Application;
  using CA = const Application;
  return {
      {"S", "OFP", kStr, "", [](CA& a) { return a.session.OutputFolder; },
       [](A& a, const std::string& v) { S_.OutputFolder = v; }},
      {"S", "EODS", kStr, ";", [](CA& a) { return a.session.DescriptorsEol; },
       [](A& a, const std::string& v) { a.session.DescriptorsEol = v; }},
      {"B2", "WORIG", kBool, "0", [](CA& a) { return B(a.session.GraphicPositionInData); },
       [](A& a, const std::string& v) { a.session.GraphicPositionInData = ToBool(v); }},
      {"B2", "WSIZE", kBool, "0", [](CA& a) { return B(a.session.GraphicSizeInData); },
       [](A& a, const std::string& v) { a.session.GraphicSizeInData = ToBool(v); }},
      {"B17", "BSD", kBool, "1", [](CA& a) { return B(a.session.SizeDescriptors); },
       [](A& a, const std::string& v) { a.session.SizeDescriptors = ToBool(v); }},
      {"B17", "BCD", kBool, "0", [](CA& a) { return B(a.session.CoordinatesDescriptors); },
       [](A& a, const std::string& v) { a.session.CoordinatesDescriptors = ToBool(v); }},
      {"S3", "INCSYN", kStr, "#include ", [](CA& a) { return a.globals.Clip.include; },
       [](A& a, const std::string& v) { a.globals.Clip.include = v; }},
      {"S3", "INCSSYN", kStr, "<", [](CA& a) { return a.globals.Clip.includeStart; },
       [](A& a, const std::string& v) { a.globals.Clip.includeStart = v; }},
      {"S3", "INCESYN", kStr, ">", [](CA& a) { return a.globals.Clip.includeEnd; },
       [](A& a, const std::string& v) { a.globals.Clip.includeEnd = v; }},
      {"S3", "FPREF", kStr, "void", [](CA& a) { return a.globals.Clip.functionPrefix; },
       [](A& a, const std::string& v) { a.globals.Clip.functionPrefix = v; }},
      {"S3", "FSUFF", kStr, "(void)", [](CA& a) { return a.globals.Clip.functionSuffix; },
       [](A& a, const std::string& v) { a.globals.Clip.functionSuffix = v; }},
      {"S3", "LCDBS", kStr, "{", [](CA& a) { return a.globals.Clip.begin; },
       [](A& a, const std::string& v) { a.globals.Clip.begin = v; }},
      {"S3", "ENDSYN", kStr, "};", [](CA& a) { return a.globals.Clip.end; },
       [](A& a, const std::string& v) { a.globals.Clip.end = v; }},
      {"S3", "SEPASY", kStr, ",", [](CA& a) { return a.globals.Clip.separator; },
       [](A& a, const std::string& v) { a.globals.Clip.separator = v; }},
      {"S3", "DELSYN", kStr, "delay", [](CA& a) { return a.globals.Clip.delay; },
       [](A& a, const std::string& v) { a.globals.Clip.delay = v; }},
      {"S3", "DELSTA", kStr, "(", [](CA& a) { return a.globals.Clip.delayStart; },
       [](A& a, const std::string& v) { a.globals.Clip.delayStart = v; }},
      {"S3", "DELEND", kStr, ")", [](CA& a) { return a.globals.Clip.delayEnd; },
       [](A& a, const std::string& v) { a.globals.Clip.delayEnd = v; }},
      {"S3", "LCOMPS", kStr, "GLCD_xBitmap", [](CA& a) { return a.globals.Clip.compressedCall; },
       [](A& a, const std::string& v) { a.globals.Clip.compressedCall = v; }},
      {"S4", "lcdUncomp", kStr, "GLCD_Bitmap", [](CA& a) { return a.globals.Clip.call; },
       [](A& a, const std::string& v) { a.globals.Clip.call = v; }},
      {"S3", "LSTAS", kStr, "(", [](CA& a) { return a.globals.Clip.callStart; },
       [](A& a, const std::string& v) { a.globals.Clip.callStart = v; }},
      {"S3", "LENDS", kStr, ")", [](CA& a) { return a.globals.Clip.callEnd; },
       [](A& a, const std::string& v) { a.globals.Clip.callEnd = v; }},
      {"B2", "Ecli", kBool, "1", [](CA& a) { return B(a.globals.Clip.enabled); },
       [](A& a, const std::string& v) { a.globals.Clip.enabled = ToBool(v); }},
      {"B2", "LCDSI", kBool, "1", [](CA& a) { return B(a.globals.Clip.withPositionAndSize); },
       [](A& a, const std::string& v) { a.globals.Clip.withPositionAndSize = ToBool(v); }},
      {"B2", "DELAY", kBool, "0", [](CA& a) { return B(a.globals.Clip.withDelay); },
       [](A& a, const std::string& v) { a.globals.Clip.withDelay = ToBool(v); }},
      {"B2", "DElas", kBool, "0", [](CA& a) { return B(a.globals.Clip.delayAfterLastFrame); },
       [](A& a, const std::string& v) { a.globals.Clip.delayAfterLastFrame = ToBool(v); }},
      {"S12", "usco", kStr, "_", [](CA& a) { return a.session.Underscore; },
       [](A& a, const std::string& v) { a.session.Underscore = v; }},
      {"S", "CPRE", kStr, "", [](CA& a) { return a.session.Syntax.LinePrefix; },
       [](A& a, const std::string& v) { SYN.LinePrefix = v.substr(0, 15); }},
      {"S", "FXHB", kStr, "X", [](CA& a) { return a.session.Syntax.DataFormatKind; },
       [](A& a, const std::string& v) { SYN.DataFormatKind = v; }},
      {"S", "COMAS", kBool, "0", [](CA& a) { return B(a.session.Syntax.SeparatorCustom); },
       [](A& a, const std::string& v) { SYN.SeparatorCustom = ToBool(v); }},
      {"S", "COMAh", kBool, "1", [](CA& a) { return B(a.session.Syntax.SeparatorOn); },
       [](A& a, const std::string& v) { SYN.SeparatorOn = ToBool(v); }},
      {"S", "COMAv", kBool, "1", [](CA& a) { return B(a.session.Syntax.SeparatorComma); },
       [](A& a, const std::string& v) { SYN.SeparatorComma = ToBool(v); }},
      {"S", "CCOM", kBool, "1", [](CA& a) { return B(a.session.Syntax.Comment == CommentForm::C); },
       [](A& a, const std::string& v) { Radio(SYN.Comment, CommentForm::C, CommentForm::C, v); }},
      {"S", "STCOM", kBool, "0", [](CA& a) { return B(a.session.Syntax.Comment == CommentForm::Custom); },
       [](A& a, const std::string& v) { Radio(SYN.Comment, CommentForm::Custom, CommentForm::C, v); }},
      {"S", "VBACOM", kBool, "0", [](CA& a) { return B(a.session.Syntax.Comment == CommentForm::Quote); },
       [](A& a, const std::string& v) { Radio(SYN.Comment, CommentForm::Quote, CommentForm::C, v); }},
      {"S", "PSCOM", kBool, "0", [](CA& a) { return B(a.session.Syntax.Comment == CommentForm::Slashes); },
       [](A& a, const std::string& v) { Radio(SYN.Comment, CommentForm::Slashes, CommentForm::C, v); }},
      {"S", "BSCOM", kBool, "0", [](CA& a) { return B(a.session.Syntax.Comment == CommentForm::Semicolon); },
       [](A& a, const std::string& v) { Radio(SYN.Comment, CommentForm::Semicolon, CommentForm::C, v); }},
      {"S", "Eoln", kBool, "0", [](CA& a) { return B(a.session.Syntax.Eol == EndOfLine::None); },
       [](A& a, const std::string& v) { Radio(SYN.Eol, EndOfLine::None, EndOfLine::Comma, v); }},
      {"S", "Eolcom", kBool, "1", [](CA& a) { return B(a.session.Syntax.Eol == EndOfLine::Comma); },
       [](A& a, const std::string& v) { Radio(SYN.Eol, EndOfLine::Comma, EndOfLine::Comma, v); }},
      {"S", "EolStr", kBool, "0", [](CA& a) { return B(a.session.Syntax.Eol == EndOfLine::Custom); },
       [](A& a, const std::string& v) { Radio(SYN.Eol, EndOfLine::Custom, EndOfLine::Comma, v); }},
      {"S", "EolSem", kBool, "0", [](CA& a) { return B(a.session.Syntax.Eol == EndOfLine::Semicolon); },
       [](A& a, const std::string& v) { Radio(SYN.Eol, EndOfLine::Semicolon, EndOfLine::Comma, v); }},
      {"S", "Asmf", kBool, "0", [](CA& a) { return B(a.session.AsmFile); },
       [](A& a, const std::string& v) { S_.AsmFile = ToBool(v); }},
      {"S", "libf", kBool, "0", [](CA& a) { return B(a.session.LibraryFile); },
       [](A& a, const std::string& v) { S_.LibraryFile = ToBool(v); }},
      {"S", "basf", kBool, "0", [](CA& a) { return B(a.session.BasicFile); },
       [](A& a, const std::string& v) { S_.BasicFile = ToBool(v); }},
      {"S", "cfil", kBool, "0", [](CA& a) { return B(a.session.CFile); },
       [](A& a, const std::string& v) { S_.CFile = ToBool(v); }},
      {"B17", "CU8", kBool, "1", [](CA& a) { return B(a.session.Syntax.ConvertUint8); },
       [](A& a, const std::string& v) { SYN.ConvertUint8 = ToBool(v); }},
      {"B7", "rgb2", kBool, "0", [](CA& a) { return B(a.session.SwapFirstLast); },
       [](A& a, const std::string& v) { S_.SwapFirstLast = ToBool(v); }},
      {"B3", "tla", kBool, "0", [](CA& a) { return B(a.session.Direction == PagingDirection::ToLeft); },
       [](A& a, const std::string& v) { SetDirectionKey(a, PagingDirection::ToLeft, v); }},
      {"B3", "tra", kBool, "0", [](CA& a) { return B(a.session.Direction == PagingDirection::ToRight); },
       [](A& a, const std::string& v) { SetDirectionKey(a, PagingDirection::ToRight, v); }},
      {"B3", "tl", kBool, "0", [](CA& a) { return B(a.session.Direction == PagingDirection::ToLeftAll); },
       [](A& a, const std::string& v) { SetDirectionKey(a, PagingDirection::ToLeftAll, v); }},
      {"B3", "tr", kBool, "1", [](CA& a) { return B(a.session.Direction == PagingDirection::ToRightAll); },
       [](A& a, const std::string& v) { SetDirectionKey(a, PagingDirection::ToRightAll, v); }},
      {"B3", "td", kBool, "0", [](CA& a) { return B(a.session.Direction == PagingDirection::Down); },
       [](A& a, const std::string& v) { SetDirectionKey(a, PagingDirection::Down, v); }},
      {"B3", "tu", kBool, "0", [](CA& a) { return B(a.session.Direction == PagingDirection::Up); },
       [](A& a, const std::string& v) { SetDirectionKey(a, PagingDirection::Up, v); }},
      {"B3", "tua", kBool, "0", [](CA& a) { return B(a.session.Direction == PagingDirection::UpAll); },
       [](A& a, const std::string& v) { SetDirectionKey(a, PagingDirection::UpAll, v); }},
      {"B3", "tda", kBool, "0", [](CA& a) { return B(a.session.Direction == PagingDirection::DownAll); },
       [](A& a, const std::string& v) { SetDirectionKey(a, PagingDirection::DownAll, v); }},
      {"B2", "MSBF", kBool, "1", [](CA& a) { return B(a.session.BigEndian); },
       [](A& a, const std::string& v) { S_.BigEndian = ToBool(v); }},
      {"B2", "CORN1", kBool, "1", [](CA& a) { return B(a.session.Origin == OriginCorner::TL); },
       [](A& a, const std::string& v) { Radio(S_.Origin, OriginCorner::TL, OriginCorner::TL, v); }},
      {"B2", "CORN2", kBool, "0", [](CA& a) { return B(a.session.Origin == OriginCorner::TR); },
       [](A& a, const std::string& v) { Radio(S_.Origin, OriginCorner::TR, OriginCorner::TL, v); }},
      {"B2", "CORN3", kBool, "0", [](CA& a) { return B(a.session.Origin == OriginCorner::BR); },
       [](A& a, const std::string& v) { Radio(S_.Origin, OriginCorner::BR, OriginCorner::TL, v); }},
      {"B2", "CORN4", kBool, "0", [](CA& a) { return B(a.session.Origin == OriginCorner::BL); },
       [](A& a, const std::string& v) { Radio(S_.Origin, OriginCorner::BL, OriginCorner::TL, v); }},
      {"I11", "ORGC", kInt, "16", [](CA& a) { return std::to_string(a.session.Syntax.DataPerLine); },
       [](A& a, const std::string& v) { SYN.DataPerLine = ToInt(v); }},
      {"S13", "cstrt", kStr, " #", [](CA& a) { return a.session.Syntax.CustomComment; },
       [](A& a, const std::string& v) { SYN.CustomComment = v.substr(0, 5); }},
      {"S13", "eolst", kStr, ",", [](CA& a) { return a.session.Syntax.EolString; },
       [](A& a, const std::string& v) { SYN.EolString = v.substr(0, 5); }},
      {"S13", "sepst", kStr, ",", [](CA& a) { return a.session.Syntax.SeparatorString; },
       [](A& a, const std::string& v) { SYN.SeparatorString = v; }},
      {"S13", "cpfr", kStr, "", [](CA& a) { return a.session.Syntax.LinePrefix2; },
       [](A& a, const std::string& v) { SYN.LinePrefix2 = v.substr(0, 8); }},
      {"S2", "VALSUF", kStr, "", [](CA& a) { return a.session.Syntax.DataSuffix; },
       [](A& a, const std::string& v) { SYN.DataSuffix = v.substr(0, 10); }},
      {"S2", "VALpref", kStr, "0x", [](CA& a) { return a.session.Syntax.DataPrefix; },
       [](A& a, const std::string& v) { SYN.DataPrefix = v.substr(0, 10); }},
      {"B11", "PPB", kInt, "8", [](CA& a) { return std::to_string(a.session.PixelsPerByteSetting); },
       [](A& a, const std::string& v) { S_.PixelsPerByteSetting = ToInt(v); }},
      {"B1", "bw8", kBool, "1", [](CA& a) { return B(a.session.Not6bit); },
       [](A& a, const std::string& v) { S_.Not6bit = ToBool(v); }},
      {"B1", "Neg", kBool, "0", [](CA& a) { return B(a.session.NegativeOutput); },
       [](A& a, const std::string& v) { S_.NegativeOutput = ToBool(v) && a.session.Monochrome; }},
      {"B1", "D8bc", kBool, "1", [](CA& a) { return B(a.session.Output == OutputKind::Bits8); },
       [](A& a, const std::string& v) { Radio(S_.Output, OutputKind::Bits8, OutputKind::Bits8, v); }},
      {"B1", "D16bc", kBool, "0", [](CA& a) { return B(a.session.Output == OutputKind::Bits16); },
       [](A& a, const std::string& v) { Radio(S_.Output, OutputKind::Bits16, OutputKind::Bits8, v); }},
      {"B1", "D32bc", kBool, "0", [](CA& a) { return B(a.session.Output == OutputKind::Bits32); },
       [](A& a, const std::string& v) { Radio(S_.Output, OutputKind::Bits32, OutputKind::Bits8, v); }},
      {"B1", "DHec", kBool, "0", [](CA& a) { return B(a.session.Output == OutputKind::BinaryFile); },
       [](A& a, const std::string& v) { Radio(S_.Output, OutputKind::BinaryFile, OutputKind::Bits8, v); }},
      {"B1", "DIHec", kBool, "0", [](CA& a) { return B(a.session.Output == OutputKind::IntelHex); },
       [](A& a, const std::string& v) { Radio(S_.Output, OutputKind::IntelHex, OutputKind::Bits8, v); }},
      {"B1", "Addof", kBool, "0", [](CA& a) { return B(a.session.Syntax.LeadingZero); },
       [](A& a, const std::string& v) { SYN.LeadingZero = ToBool(v); }},
      {"B1", "snib", kBool, "0", [](CA& a) { return B(a.session.SwapNibble); },
       [](A& a, const std::string& v) { S_.SwapNibble = ToBool(v); }},
      {"B1", "ColRx", kBool, "0", [](CA& a) { return B(a.session.Syntax.Groups); },
       [](A& a, const std::string& v) { SYN.Groups = ToBool(v); }},
      {"B1", "Noonts", kBool, "0", [](CA& a) { return B(a.session.Syntax.NoComments); },
       [](A& a, const std::string& v) { SYN.NoComments = ToBool(v); }},
      {"B1", "Noh", kBool, "0", [](CA& a) { return B(a.session.Syntax.NoHeader); },
       [](A& a, const std::string& v) { SYN.NoHeader = ToBool(v); }},
      {"B1", "Nodcom", kBool, "0", [](CA& a) { return B(a.session.Syntax.NoDataComments); },
       [](A& a, const std::string& v) { SYN.NoDataComments = ToBool(v); }},
      {"B1", "dellas", kBool, "1", [](CA& a) { return B(a.session.Syntax.DeleteVeryLastOne); },
       [](A& a, const std::string& v) { SYN.DeleteVeryLastOne = ToBool(v); }},
      {"B1", "delallas", kBool, "0", [](CA& a) { return B(a.session.Syntax.DeleteAllLastOnes); },
       [](A& a, const std::string& v) { SYN.DeleteAllLastOnes = ToBool(v); }},
      {"B1", "LineN", kBool, "0", [](CA& a) { return B(a.session.Syntax.LineNumbers); },
       [](A& a, const std::string& v) { SYN.LineNumbers = ToBool(v); }},
      {"B1", "WithSp", kBool, "1", [](CA& a) { return B(a.session.Syntax.SpaceBetweenData); },
       [](A& a, const std::string& v) { SYN.SpaceBetweenData = ToBool(v); }},
      {"B1", "Dnask", kBool, "1", [](CA& a) { return B(a.globals.AlwaysOverwrite); },
       [](A& a, const std::string& v) { a.globals.AlwaysOverwrite = ToBool(v); }},
      {"B1", "dore", kBool, "0", [](CA& a) { return B(a.session.ReorderOn); },
       [](A& a, const std::string& v) { S_.ReorderOn = ToBool(v); }},
      {"S4", "RGBA", kBool, "0", [](CA& a) { return B(a.session.Rgba); },
       [](A& a, const std::string& v) { S_.Rgba = ToBool(v); }},
      {"S8", "nbmfn", kStr, "NewBitmap.bmp", [](CA& a) { return a.session.LastBitmapName; },
       [](A& a, const std::string& v) { S_.LastBitmapName = v; }},
      {"S8", "Endst", kStr, "};", [](CA& a) { return a.session.Syntax.EndOfData; },
       [](A& a, const std::string& v) { SYN.EndOfData = v.substr(0, 3); }},
      {"S8", "begds", kStr, "{", [](CA& a) { return a.session.Syntax.BeginOfData; },
       [](A& a, const std::string& v) { SYN.BeginOfData = v.substr(0, 3); }},
      {"S12", "fpar11", kStr, "{", [](CA& a) { return a.session.Syntax.ColRowPrefix; },
       [](A& a, const std::string& v) { SYN.ColRowPrefix = v.substr(0, 5); }},
      {"S12", "fpar12", kStr, "},", [](CA& a) { return a.session.Syntax.ColRowSuffix; },
       [](A& a, const std::string& v) { SYN.ColRowSuffix = v.substr(0, 5); }},
      {"S12", "fpar13", kStr, "{", [](CA& a) { return a.session.Syntax.ArrayPrefix; },
       [](A& a, const std::string& v) { SYN.ArrayPrefix = v.substr(0, 5); }},
      {"S12", "fpar14", kStr, "};", [](CA& a) { return a.session.Syntax.ArraySuffix; },
       [](A& a, const std::string& v) { SYN.ArraySuffix = v.substr(0, 5); }},
      {"S12", "fexts", kStr, "lib", [](CA& a) { return a.session.LibraryExtension; },
       [](A& a, const std::string& v) { S_.LibraryExtension = v; }},
      {"S14", "cprx", kStr, "", [](CA& a) { return a.session.Syntax.PointerPrefix; },
       [](A& a, const std::string& v) { SYN.PointerPrefix = v.substr(0, 6); }},
  };
}

#undef S_
#undef SYN

bool EqualNoCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
           return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
         });
}

bool IsWholeNumber(const std::string& v) {
  long long n = 0;
  const char* b = v.data();
  const char* e = v.data() + v.size();
  auto r = std::from_chars(b, e, n);
  return r.ec == std::errc() && r.ptr == e && n >= -2147483648LL && n <= 2147483647LL;
}

}  // namespace

const std::vector<SettingDef>& SettingsTable() {
  static const std::vector<SettingDef> table = BuildTable();
  return table;
}

const SettingDef* FindSetting(std::string_view key) {
  for (const auto& d : SettingsTable())
    if (EqualNoCase(d.key, key)) return &d;
  return nullptr;
}

bool ApplySetting(Application& app, std::string_view key, const std::string& value, std::string& error) {
  const SettingDef* def = FindSetting(key);
  if (!def) {
    error = "unknown setting key: " + std::string(key);
    return false;
  }
  if (def->type != SettingType::String && !IsWholeNumber(value)) {
    error = "setting " + std::string(def->key) + " takes a whole number, not \"" + value + "\"";
    return false;
  }
  def->set(app, value);
  return true;
}

std::string GetSetting(const Application& app, const SettingDef& def) { return def.get(app); }

}  // namespace rm
