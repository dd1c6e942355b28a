#include "shell/SettingsTable.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <memory>
#include <stdexcept>
#include <type_traits>
#include <unordered_map>
#include <utility>

#include "engine/ColourModes.h"
#include "shell/Application.h"
#include "shell/SettingsTableKeys.h"

namespace rm {

namespace {

std::string B(bool v) { return v ? "1" : "0"; }
bool ToBool(const std::string& v) { return std::stol(v) != 0; }
int ToInt(const std::string& v) { return std::stoi(v); }

// The radio groups' names; a group's row in the catalogue stands for all its choices' keys.
constexpr const char* kCommentForm = "the comment form";
constexpr const char* kEndOfLineForm = "the end of line form";
constexpr const char* kPagingScheme = "the Paging Scheme";
constexpr const char* kOriginCorner = "the origin corner";
constexpr const char* kOutputKind = "the output kind";

// Every key of the project file in reading order, one row each: section, key, type ('s' text,
// 'b' boolean, 'i' whole number, '?' text whose default is the value in force before reading,
// 'r' a radio group named in place of the key, whose choices' switches stand here), factory
// default and the variable it fills.
struct CatalogueKey {
  SettingKey at;
  char type;
  const char* def;
  SettingField field = {};  // the variable it fills; none: the value is held
  // What it takes and how the file treats it, blank-separated: "range:MIN:MAX" (a number),
  // "len:N" (a text field's length), "words:A,B" (the only words it takes), "unwritten" (read,
  // never written), "writeas:KEY" (written under another name), "writes:N" (written N times),
  // "places:N" (one key read into N places, the last written wins), "unread" (written for the
  // record, never read), "canvas:w|h" (the work canvas's side), "is:A,B" (a switch on when
  // its number field is one of these), "heldread" (read into the held values, written from the
  // field), "monoinverts" (on in monochrome only, where it is the inverted mode).
  const char* takes = nullptr;
  SettingField also = {};  // a second variable that takes the same value
};

void ApplyTakes(SettingDef& d, std::string_view takes, int& places) {
  while (!takes.empty()) {
    const std::size_t blank = takes.find(' ');
    const std::string_view token = takes.substr(0, blank);
    takes = blank == std::string_view::npos ? std::string_view() : takes.substr(blank + 1);
    const std::size_t colon = token.find(':');
    const std::string_view name = token.substr(0, colon);
    const std::string arg = colon == std::string_view::npos ? std::string() : std::string(token.substr(colon + 1));
    if (name == "range") {
      d.min = std::stoi(arg);
      d.max = std::stoi(arg.substr(arg.find(':', 1) + 1));
    } else if (name == "len") {
      d.maxLength = static_cast<std::size_t>(std::stoul(arg));
    } else if (name == "words") {
      std::string_view rest = token.substr(colon + 1);
      while (!rest.empty()) {
        const std::size_t comma = rest.find(',');
        d.words.push_back(rest.substr(0, comma));
        rest = comma == std::string_view::npos ? std::string_view() : rest.substr(comma + 1);
      }
    } else if (name == "unwritten") {
      d.writeKey = {};
    } else if (name == "writeas") {
      d.writeKey = token.substr(colon + 1);
    } else if (name == "writes") {
      d.writes = std::stoi(arg);
    } else if (name == "places") {
      places = std::stoi(arg);
    } else if (name == "is") {
      for (std::size_t at = 0; at < arg.size(); at = arg.find(',', at) + 1) {
        d.onFor.push_back(std::stoi(arg.substr(at)));
        if (arg.find(',', at) == std::string::npos) break;
      }
    } else if (name == "unread") {
      d.read = false;
    } else if (name == "canvas") {
      d.canvasSide = arg[0];
    } else if (name == "heldread") {
      d.heldOnRead = true;
    } else if (name == "monoinverts") {
      d.monoInverts = true;
    }
  }
}

// clang-format off
constexpr CatalogueKey kCatalogue[] = {
    // [S] general strings and file-type switches
    {"S", "CARK", 's', "1", &FontJob::CharAddressRank}, {"S", "CWBRK", 's', "2", &FontJob::CharWidthRank}, {"S", "CHBRK", 's', "8", &FontJob::CharHeightRank}, {"S", "XOFSRK", 's', "6", &FontJob::XOffsetRank},
    {"S", "YOFSRK", 's', "7", &FontJob::YOffsetRank}, {"S", "SARK", 's', "3", &FontJob::StartAddressRank}, {"S", "CHARSBRK", 's', "5", &FontJob::CharSizeBytesRank}, {"S", "CSBRK", 's', "4", &FontJob::CharSizeBitsRank},
    {"S", "CSPBRK", 's', "9", &FontJob::CharSpacingRank}, {"S", "DPR", 's', "Microsoft Print To PDF"},
    {keys::PFP, '?', "", &Globals::DocumentsRole}, {keys::BFP, '?', "", &Globals::GraphicsRole},
    {keys::OFP, '?', "", &ConversionSession::OutputFolder, nullptr, &Globals::OutputRole},
    {"S", "EODS", 's', ";", &ConversionSession::DescriptorsEol}, {"S", "PHP", 's', "$"},
    {keys::CPRE, '?', "", &DataSyntax::LinePrefix, "len:15"}, {"S", "RELOI", '?', "", &Globals::LastArtworkPath},
    {"S", "FHE1", 's', "", &FontJob::FontHeader1}, {"S", "FHE2", 's', "Font Size (2)", &FontJob::FontHeader2}, {"S", "FHE3", 's', "Chars Width", &FontJob::FontHeader3},
    {"S", "FHE4", 's', "Chars Height", &FontJob::FontHeader4}, {"S", "FHE5", 's', "First Char", &FontJob::FontHeader5}, {"S", "FHE6", 's', "n Chars", &FontJob::FontHeader6},
    {"S", "PAOE", '?', ""}, {keys::FXHB, 's', "X", &DataSyntax::DataFormatKind, "words:X,H,B,0B,+H+,+B+,+D+"},
    {"S", "COMAS", 'b', "0", &DataSyntax::SeparatorCustom}, {"S", "COMAh", 'b', "1", &DataSyntax::SeparatorOn},
    {"S", "COMAv", 'b', "1", &DataSyntax::SeparatorComma}, {"S", kCommentForm, 'r', ""},
    {"S", kEndOfLineForm, 'r', ""}, {"S", "FEoln", 'b', "0", &FontJob::FontEolNone},
    {"S", "FEolcom", 'b', "0", &FontJob::FontEolComma}, {"S", "FEolStr", 'b', "1", &FontJob::FontEolString}, {"S", "FEolSem", 'b', "0", &FontJob::FontEolSemicolon},
    {"S", "Asmf", 'b', "0", &ConversionSession::AsmFile}, {"S", "libf", 'b', "0", &ConversionSession::LibraryFile},
    {"S", "basf", 'b', "0", &ConversionSession::BasicFile}, {"S", "cfil", 'b', "0", &ConversionSession::CFile},
    {"S", "CHBRK_r", 's', "4"}, {"S", "CHBRK_s", 's', "4"}, {"S", "CHBRK_b", 's', "4"}, {"S", "CHBRK_d", 's', "4"},
    {"S", "CWBRK_r", 's', "3"}, {"S", "CWBRK_s", 's', "3"}, {"S", "CWBRK_b", 's', "3"}, {"S", "CWBRK_d", 's', "3"},
    {"S", "CARK_r", 's', "1"}, {"S", "CARK_s", 's', "1"}, {"S", "CARK_b", 's', "1"}, {"S", "CARK_d", 's', "1"},
    {"S", "XOFSRK_r", 's', "7"}, {"S", "XOFSRK_s", 's', "7"}, {"S", "XOFSRK_b", 's', "7"}, {"S", "XOFSRK_d", 's', "7"},
    {"S", "YOFSRK_r", 's', "8"}, {"S", "YOFSRK_s", 's', "8"}, {"S", "YOFSRK_b", 's', "8"}, {"S", "YOFSRK_d", 's', "8"},
    {"S", "SARK_r", 's', "2"}, {"S", "SARK_s", 's', "2"}, {"S", "SARK_b", 's', "2"}, {"S", "SARK_d", 's', "2"},
    {"S", "CHARSBRK_r", 's', "5"}, {"S", "CHARSBRK_s", 's', "5"}, {"S", "CHARSBRK_b", 's', "5"},
    {"S", "CHARSBRK_d", 's', "5"}, {"S", "CSBRK_r", 's', "6"}, {"S", "CSBRK_s", 's', "6"}, {"S", "CSBRK_b", 's', "6"},
    {"S", "CSBRK_d", 's', "6"}, {"S", "CSPBRK_r", 's', "9"}, {"S", "CSPBRK_s", 's', "9"}, {"S", "CSPBRK_b", 's', "9"},
    {"S", "CSPBRK_d", 's', "9"},
    // [B17] output switches
    {keys::CU8, 'b', "1", &DataSyntax::ConvertUint8}, {"B17", "ASW", 'b', "1"}, {"B17", "AFF", 'b', "0"},
    {"B17", "BCD", 'b', "0", &ConversionSession::CoordinatesDescriptors},
    {"B17", "BSD", 'b', "1", &ConversionSession::SizeDescriptors},
    // [B7] output and export switches, with the per-font-kind variants `_r`, `_s`, `_b`, `_d`
    {"B7", "fbo", 'b', "1"}, {keys::rgb2, 'b', "0", &ConversionSession::SwapFirstLast}, {"B7", "limf", 'b', "0"},
    {"B7", "nde", 'b', "0", &FontJob::NoDescriptorBloc}, {"B7", "ndcp", 'b', "1", &FontJob::NoDescriptorCodepage}, {"B7", "vxma", 'b', "0"}, {"B7", "exm2", 'b', "0"},
    {"B7", "exm3", 'b', "0"}, {"B7", "exm22", 'b', "0"}, {"B7", "exm32", 'b', "0"}, {"B7", "ncodehc", 'b', "0", &FontJob::NoCodeHeaderComment},
    {"B7", "ncodeh", 'b', "0", &FontJob::NoCodeHeader}, {"B7", "nodesch", 'b', "0", &FontJob::NoDescriptionHeaders}, {"B7", "wxof", 'b', "1", &FontJob::XOffset}, {"B7", "wyof", 'b', "1", &FontJob::YOffset},
    {"B7", "uoffs", 'b', "1", &FontJob::UseOffsets}, {"B7", "wfhe", 'b', "1", &FontJob::WithFontHeader}, {"B7", "slc", 'b', "0"}, {"B7", "rdcc", 'b', "1", &FontJob::WithCharComment},
    {"B7", "cbu", 'b', "1"}, {"B7", "wcsp_r", 'b', "1"}, {"B7", "wcsp_s", 'b', "1"}, {"B7", "wcsp_b", 'b', "1"},
    {"B7", "wcsp_d", 'b', "0"}, {"B7", "wxof_r", 'b', "1"}, {"B7", "wxof_s", 'b', "1"}, {"B7", "wxof_b", 'b', "1"},
    {"B7", "wxof_d", 'b', "0"}, {"B7", "wyof_r", 'b', "1"}, {"B7", "wyof_s", 'b', "1"}, {"B7", "wyof_b", 'b', "1"},
    {"B7", "wyof_d", 'b', "0"}, {"B7", "wsta_r", 'b', "1"}, {"B7", "wsta_s", 'b', "1"}, {"B7", "wsta_b", 'b', "1"},
    {"B7", "wsta_d", 'b', "0"}, {"B7", "wsta2_r", 'b', "1"}, {"B7", "wsta2_s", 'b', "1"}, {"B7", "wsta2_b", 'b', "1"},
    {"B7", "wsta2_d", 'b', "0"}, {"B7", "descsz_r", 'b', "1"}, {"B7", "descsz_s", 'b', "1"},
    {"B7", "descsz_b", 'b', "1"}, {"B7", "descsz_d", 'b', "0"}, {"B7", "descsz2_r", 'b', "1"},
    {"B7", "descsz2_s", 'b', "1"}, {"B7", "descsz2_b", 'b', "1"}, {"B7", "descsz2_d", 'b', "0"},
    {"B7", "csbits_r", 'b', "1"}, {"B7", "csbits_s", 'b', "1"}, {"B7", "csbits_b", 'b', "1"},
    {"B7", "csbits_d", 'b', "0"}, {"B7", "csbits2_r", 'b', "1"}, {"B7", "csbits2_s", 'b', "1"},
    {"B7", "csbits2_b", 'b', "1"}, {"B7", "csbits2_d", 'b', "0"}, {"B7", "wua_r", 'b', "1"}, {"B7", "wua_s", 'b', "1"},
    {"B7", "wua_b", 'b', "1"}, {"B7", "wua_d", 'b', "0"}, {"B7", "wiw_r", 'b', "1"}, {"B7", "wiw_s", 'b', "1"},
    {"B7", "wiw_b", 'b', "1"}, {"B7", "wiw_d", 'b', "1"}, {"B7", "wih_r", 'b', "1"}, {"B7", "wih_s", 'b', "1"},
    {"B7", "wih_b", 'b', "1"}, {"B7", "wih_d", 'b', "0"}, {"B7", "wsta", 'b', "1", &FontJob::StartAddress}, {"B7", "wsta2b", 'b', "0", &FontJob::StartAddress2Bytes},
    {"B7", "wua", 'b', "1", &FontJob::CharAddress}, {"B7", "wiw", 'b', "1", &FontJob::CharWidthBits}, {"B7", "wih", 'b', "1", &FontJob::CharHeightBits}, {"B7", "wcsp", 'b', "1", &FontJob::CharSpacing},
    {"B7", "wve", 'b', "0", {}, "unread"},
    // [B13] stay-on-top switches and serial switches
    {"B13", "exsot", 'b', "0"}, {"B13", "ex2sot", 'b', "0"}, {"B13", "imsot", 'b', "0"}, {"B13", "lcdsot", 'b', "0"},
    {"B13", "brsot", 'b', "0"}, {"B13", "assot", 'b', "0"}, {"B13", "cosot", 'b', "0"}, {"B13", "adjsot", 'b', "0"},
    {"B13", "pixsot", 'b', "0"}, {"B13", "ESOT", 'b', "0"}, {"B13", "E2SOT", 'b', "0"}, {"B13", "ASOT", 'b', "0"},
    {"B13", "ISOT", 'b', "0"}, {"B13", "PSOT", 'b', "0"}, {"B13", "crlf", 'b', "1"},
    {keys::rs48, 'b', "0", {}, "unwritten"},
    // [B3] paging scheme switches
    {"B3", kPagingScheme, 'r', ""},
    // [B2] canvas, matrix and header switches
    {"B2", "MSBF", 'b', "1", &ConversionSession::BigEndian}, {keys::NOMAT, 'b', "0", &Globals::NoMatrixMode},
    {"B2", "CCBM", 'b', "0"}, {keys::UMATB, 'b', "0", &Globals::UserMatrix}, {"B2", "FSM", 'b', "1", {}, "writes:2"},
    {"B2", "RSHAP", 'b', "1", {}, "writes:2"}, {"B2", "EX2H", 'b', "0"}, {"B2", "EXH", 'b', "0"},
    {"B2", "SWRG", 'b', "0"},
    {"B2", "HCO", 'b', "0", &FontJob::HorizontalCharsData}, {"B2", kOriginCorner, 'r', ""}, {"B2", "DESC", 'b', "0"}, {"B2", "USELS", 'b', "0"},
    {"B2", "USmat", 'b', "0", &Globals::UserMatrix}, {"B2", "GWI", 'i', "128", &Globals::MatrixWidth, "range:1:1024"},
    {"B2", "GHI", 'i', "64", &Globals::MatrixHeight, "range:1:768"}, {"B2", "BTODOC", 'b', "1"},
    {"B2", "RTLFO", 'b', "0"},
    {"B2", "OUTLF", 'b', "0", &FontJob::FontStyleOutline}, {"B2", "LOOP", 'b', "1"},
    {keys::WORIG, 'b', "0", &ConversionSession::GraphicPositionInData},
    {keys::WSIZE, 'b', "0", &ConversionSession::GraphicSizeInData},
    {keys::LCDSI, 'b', "1", &ClipSyntax::withPositionAndSize}, {"B2", "FISC", 'b', "0"}, {"B2", "LCDDEL", 'b', "0"},
    {keys::DELAY, 'b', "0", &ClipSyntax::withDelay}, {keys::DElas, 'b', "0", &ClipSyntax::delayAfterLastFrame},
    {keys::Ecli, 'b', "1", &ClipSyntax::enabled}, {"B2", "PLAYMS", 'b', "0"}, {"B2", "ccomp", 'b', "0"},
    {"B2", "asrg", 'b', "0"}, {"B2", "SHBLU", 'b', "1"}, {"B2", "SHTUT", 'b', "1"}, {"B2", "SHSER", 'b', "0"},
    {"B2", "SHANI", 'b', "0"}, {"B2", "SHBAT", 'b', "0"}, {"B2", "SHTOU", 'b', "0"}, {"B2", "SHVECT", 'b', "0"},
    {"B2", "SHCPAL", 'b', "0"},
    // [B10] tool and panel numbers
    {"B10", "DEA", 'i', "0", &FontJob::AddressFormat, "range:0:3"}, {"B10", "SCOL", 'i', "-1", {}, "range:-1:16777215"}, {"B10", "HCO", 'i', "0"},
    {"B10", "A1X", 'i', "0"},
    {"B10", "A1Y", 'i', "0"}, {"B10", "TMA", 'i', "99"}, {"B10", "TMI", 'i', "0"}, {"B10", "AOF", 'i', "0", &FontJob::AsciiOffset},
    {"B10", "TBI", 'i', "3"}, {"B10", "COPDN", 'i', "0"}, {"B10", "IMD", 'i', "0"}, {"B10", "ASD", 'i', "0"},
    {"B10", "ADD", 'i', "0"}, {"B10", "PFD", 'i', "0"}, {"B10", "EFD", 'i', "0"}, {"B10", "E2D", 'i', "0"},
    {"B10", "LFD", 'i', "0"}, {"B10", "EXLE", 'i', "120"}, {"B10", "EXTO", 'i', "60"}, {"B10", "WBITS", 'i', "0"},
    // [SX] serial link
    {"SX", "COMP", '?', ""}, {keys::COMB, 's', "9600"}, {"SX", "COMS", 's', "1"}, {"SX", "COMPA", 's', ""},
    {"SX", "COMD", 's', "8"}, {"SX", "FCTR", 's', ""}, {"SX", "TERMI", '?', ""},
    // [I11] canvas numbers
    {"I11", "OINT", 'i', "16"}, {keys::ORGC, 'i', "16", &DataSyntax::DataPerLine, "range:1:150"},
    // [S13] output syntax and window placement strings
    {"S13", "feolst", 's', ",", &FontJob::DataSeparator}, {"S13", "prpopr", 's', "ConvertMultipleGraphicFiles.SPP"},
    {keys::cstrt, '?', "", &DataSyntax::CustomComment, "len:5"},
    {keys::eolst, '?', "", &DataSyntax::EolString, "len:5"},
    {keys::eofbl, '?', "", &FontJob::CharsSeparator}, {keys::sepst, 's', ",", &DataSyntax::SeparatorString}, {"S13", "ppfpf", '?', ""},
    {keys::cpfr, '?', "", &DataSyntax::LinePrefix2, "len:8"}, {"S13", "dperl", '?', ""}, {keys::et2, 's', "600"},
    {keys::etl2, 's', "60"}, {keys::ew2, 's', "1000"}, {keys::ew1, 's', "1100"},
    {"S13", "vew1", 's', "900", {}, "writeas:wew1"},
    {keys::eh2, 's', "759"}, {keys::eta2, 's', "1"},
    // [S2] value and kerning syntax
    {"S2", "LCDW", 's', "100"}, {"S2", "SFONT", 's', "Arial", &FontJob::FontName}, {"S2", "SFSTY", '?', ""}, {"S2", "KERLEND", 's', "},", &FontJob::KerningLineEnd},
    {"S2", "KERLBEG", 's', "{", &FontJob::KerningLineBegin}, {"S2", "KERTBEG", 's', "{", &FontJob::KerningTableBegin}, {"S2", "KERTEND", 's', "};", &FontJob::KerningTableEnd},
    {"S2", "KERSUF", 's', "[120][3]= ", &FontJob::KerningSuffix}, {"S2", "KERPREF", 's', "int ", &FontJob::KerningPrefix},
    {keys::VALSUF, '?', "", &DataSyntax::DataSuffix, "len:10"},
    {keys::VALpref, '?', "", &DataSyntax::DataPrefix, "len:10"},
    // [I2] colours and sizes
    {"I2", "BGCO", 'i', "16777215", {}, "range:0:16777215"}, {"I2", "DOCOL", 'i', "0", {}, "range:0:16777215"},
    {"I2", "FSELH", 'i', "0"}, {"I2", "FSELW", 'i', "0"},
    {"I2", "MATH", 'i', "0"}, {"I2", "MATW", 'i', "0"}, {"I2", "PSHCOL", 'i', "255", {}, "range:0:16777215"},
    {"I2", "CRHCOL", 'i', "8421376", {}, "range:0:16777215"},
    {"I2", "SFONS", 'i', "10", &FontJob::FontSize, "range:1:300"}, {"I2", "ASPEE", 'i', "150"},
    // [B11] pixels per byte
    {"B11", "PPB", 'i', "8", &ConversionSession::PixelsPerByteSetting, "range:1:8"},
    // [S3] include, function and delay syntax
    {keys::INCSYN, 's', "#include ", &ClipSyntax::include}, {keys::INCSSYN, 's', "<", &ClipSyntax::includeStart},
    {keys::INCESYN, 's', ">", &ClipSyntax::includeEnd}, {keys::FPREF, 's', "void", &ClipSyntax::functionPrefix},
    {keys::FSUFF, 's', "(void)", &ClipSyntax::functionSuffix}, {keys::LCDBS, 's', "{", &ClipSyntax::begin},
    {keys::ENDSYN, 's', "};", &ClipSyntax::end}, {keys::SEPASY, '?', "", &ClipSyntax::separator},
    {keys::DELSYN, 's', "delay", &ClipSyntax::delay}, {keys::DELSTA, 's', "(", &ClipSyntax::delayStart},
    {keys::DELEND, 's', ")", &ClipSyntax::delayEnd},
    {keys::LCOMPS, 's', "GLCD_xBitmap", &ClipSyntax::compressedCall},
    {keys::LSTAS, 's', "(", &ClipSyntax::callStart}, {"S3", "LSTOEFF", '?', ""}, {"S3", "LSTOAN", '?', ""},
    {"S3", "LSTOB2", '?', ""}, {"S3", "LSTNB2", '?', ""}, {keys::LENDS, 's', ")", &ClipSyntax::callEnd},
    // [I1] corner and colour choices
    {"I1", "MCORN", 'i', "1"}, {"I1", "HSPE", 'i', "1"}, {"I1", "TRCOLOR", 'i', "1"},
    // [B1] main group of switches
    {"B1", "Trans16", 'b', "0"}, {"B1", "Trans256", 'b', "0"}, {"B1", "Chfren", 'b', "0"},
    {"B1", "bw8", 'b', "1", &ConversionSession::Not6bit}, {"B1", "lgon", 'b', "0"}, {"B1", "ckol", 'b', "1"},
    {"B1", "wwrap", 'b', "0"}, {"B1", "Lnumb", 'b', "0"},
    {keys::Neg, 'b', "0", &ConversionSession::NegativeOutput, "monoinverts"}, {"B1", "Wrack", 'b', "1", &FontJob::WithBraces},
    {"B1", kOutputKind, 'r', ""}, {"B1", "Autf", 'b', "0"}, {"B1", "Antia", 'b', "0", &FontJob::Antialiased}, {"B1", "SaAf", 's', ".BMP"},
    {"B1", "Usit", 'b', "1"}, {"B1", "Fomask", 'b', "0"}, {"B1", "Impfn", 'b', "1"},
    {keys::Addof, 'b', "0", &DataSyntax::LeadingZero}, {keys::snib, 'b', "0", &ConversionSession::SwapNibble},
    {"B1", "Pamovc", 'b', "1"}, {"B1", "Rawd", 'b', "0", &FontJob::RawData}, {"B1", "Rawd2", 'b', "1", &FontJob::FontBloc}, {"B1", "DMDs", 'b', "0", &FontJob::DmdStruct},
    {"B1", "gsch", 'b', "0", &FontJob::Gray16ColumnScheme}, {keys::ST7, 'b', "0", &ConversionSession::Gray16Slices, "heldread"},
    {keys::Logws, 'b', "0"},
    {"B1", "WelcomeWs", 'b', "0"},
    {"B1", "Adjws", 'b', "0"}, {"B1", "LcdWs", 'b', "0"}, {"B1", "AsciiWs", 'b', "1"}, {keys::MainWs, 'b', "0"},
    {keys::ConfWs, 'b', "0"}, {keys::PixelWs, 'b', "0"}, {keys::ImageWs, 'b', "1"}, {keys::ExploWs, 'b', "1"},
    {"B1", "VectoWs", 'b', "1"}, {"B1", "HidD", 'b', "0"}, {"B1", "BarVi", 'b', "0"},
    {keys::ColRx, 'b', "0", &DataSyntax::Groups}, {keys::Noonts, 'b', "0", &DataSyntax::NoComments},
    {keys::Noh, 'b', "0", &DataSyntax::NoHeader}, {keys::Nodcom, 'b', "0", &DataSyntax::NoDataComments},
    {"B1", "Autop", 'b', "0"}, {keys::dellas, 'b', "1", &DataSyntax::DeleteVeryLastOne},
    {keys::delallas, 'b', "0", &DataSyntax::DeleteAllLastOnes}, {"B1", "descsz", 'b', "1", &FontJob::CharSizeBytes},
    {"B1", "descsz2b", 'b', "0", &FontJob::CharSizeBytes2Bytes}, {"B1", "csbits", 'b', "1", &FontJob::CharSizeBits}, {"B1", "csbits2b", 'b', "0", &FontJob::CharSizeBits2Bytes}, {"B1", "Autpf", 'b', "0"},
    {keys::LineN, 'b', "0", &DataSyntax::LineNumbers}, {keys::WithSp, 'b', "1", &DataSyntax::SpaceBetweenData},
    {"B1", "MDApp", 'b', "0"}, {"B1", "ExMD", 'b', "0"}, {"B1", "Wap", 'b', "0"}, {"B1", "Wap1", 'b', "0"},
    {"B1", "Dnask", 'b', "1", &Globals::AlwaysOverwrite}, {"B1", "Dnapo", 'b', "1"}, {"B1", "Ediins", 'b', "0"},
    {"B1", "TRPNG", 'b', "0"}, {"B1", "Sile", 'b', "0"}, {"B1", "Touih", 'b', "0"}, {"B1", "BrOff", 'b', "1"},
    {keys::Expws2, 'b', "1"}, {"B1", "VecBarO", 'b', "0"}, {"B1", "VecBl", 'b', "0"}, {"B1", "VecLiOn", 'b', "1"},
    {"B1", "VecCiOn", 'b', "1"}, {"B1", "VecReOn", 'b', "1"}, {"B1", "VecRodOn", 'b', "1"}, {"B1", "VecPon", 'b', "0"},
    {"B1", "VecTOn", 'b', "0"}, {"B1", "VecaOn", 'b', "0"}, {"B1", "VecVOn", 'b', "0"}, {"B1", "VecHli", 'b', "0"},
    {"B1", "VecFi", 'b', "0"}, {"B1", "ecRleWOn", 'b', "0"}, {"B1", "VedReleWn", 'b', "0"},
    {"B1", "VesweWed", 'b', "0"}, {"B1", "VesFRwe", 'b', "0"}, {"B1", "VesFRRwe", 'b', "0"},
    {"B1", "VesFFCwe", 'b', "0"}, {"B1", "VecFn", 'b', "0"}, {"B1", "VecFRn", 'b', "1"}, {"B1", "VecFRRn", 'b', "1"},
    {"B1", "VecFCn", 'b', "1"}, {"B1", "VecGotoXYOn", 'b', "0"}, {"B1", "VecCSn", 'b', "0"},
    {"B1", "VecIFFC", 'b', "0"}, {"B1", "VecIFC", 'b', "0"}, {"B1", "VecIFFR", 'b', "0"}, {"B1", "VecIFR", 'b', "0"},
    {"B1", "VecIFRR", 'b', "0"}, {"B1", "VecIFFRR", 'b', "0"}, {"B1", "VecColn", 'b', "0"}, {"B1", "explom2", 'b', "0"},
    {"B1", "GSile", 'b', "0"}, {"B1", "Capp", 'b', "0", &Globals::ConsoleMode}, {"B1", "Cendes", 'b', "0"},
    {"B1", "CendeM", 'b', "0"},
    {"B1", "Invcp", 'b', "0"}, {"B1", "ShwAdre", 'b', "1"}, {"B1", "ShwT", 'b', "1"}, {"B1", "ShowSe", 'b', "1"},
    {keys::dore, 'b', "0", &ConversionSession::ReorderOn}, {"B1", "HexRo", 'b', "1"},
    // [S4] colour mode switches
    {keys::lcdUncomp, 's', "GLCD_Bitmap", &ClipSyntax::call}, {keys::FontFP, '?', "", &Globals::FontsRole},
    {keys::Moni, 'b', "0", &ConversionSession::ModeNumber, "is:2 heldread"},
    {keys::Monc, 'b', "1", &ConversionSession::ModeNumber, "is:1 heldread"},
    {keys::C256, 'b', "0", &ConversionSession::Colours256, "heldread"},
    {keys::G256, 'b', "0", &ConversionSession::Gray256, "heldread"},
    {"S4", "G256F", 'b', "1"}, {"S4", "G256NG", 'b', "1"}, {"S4", "ANTALQ", 'b', "1", &FontJob::AntialiasHighQuality},
    {keys::C256NP, 'b', "0", &ConversionSession::Colours256NoPalette, "heldread"},
    {keys::C16, 'b', "0", &ConversionSession::Colours16, "heldread"},
    {keys::C8, 'b', "0", &ConversionSession::Colours8, "heldread"},
    {keys::C4096, 'b', "0", &ConversionSession::Colours4096, "heldread"},
    {keys::C65535, 'b', "0", &ConversionSession::Colours65536, "heldread"},
    {keys::C18, 'b', "0", &ConversionSession::Colours262kPacked, "heldread"},
    {keys::C18u, 'b', "0", &ConversionSession::Colours262kUnpacked, "heldread"},
    {keys::G16, 'b', "0", &ConversionSession::Gray16, "heldread"},
    {keys::G4, 'b', "0", &ConversionSession::Gray4, "heldread"},
    {keys::G42, 'b', "0", &ConversionSession::Gray4TwoPages, "heldread"},
    {keys::G32, 'b', "0", &ConversionSession::ModeNumber, "is:29,30 heldread"},
    {keys::RGRA, 'b', "0", &ConversionSession::Gray16Horizontal, "heldread"},
    {keys::GRL32, 'b', "0", &ConversionSession::Gray32Left, "heldread"},
    {keys::C16M, 'b', "0", &ConversionSession::Colours16M, "heldread"},
    {keys::PM, 'b', "0", &ConversionSession::Packed, "heldread"}, {keys::RGBA, 'b', "0", &ConversionSession::Rgba},
    // [S5] touch panel script syntax
    {keys::tfp1, '?', "", &Globals::TouchRole}, {"S5", "tfp4", 's', "SetRegionX1"},
    {"S5", "tfp5", 's', "SetRegionX2"}, {"S5", "tfp6", 's', "SetRegionY1"}, {"S5", "tfp7", 's', "SetRegionY2"},
    {keys::tfp8, 's', "int "}, {keys::tfp9, 's', "(void)"}, {keys::tfp10, 's', "{"}, {keys::tfp11, 's', "};"},
    {"S5", "tfp12", 's', "return "}, {keys::tfp14, 's', "0AA", &Globals::FillerText},
    {"S5", "tfp13", 's', "vsReport"},
    // [I5] touch numbers
    {"I5", "tfp2", 'i', "0"}, {"I5", "tfp3", 'i', "8"}, {"I5", "splex", 'i', "270", {}, "writes:2"},
    {"I5", "trco", 'i', "8388736", {}, "range:0:16777215"},
    // [S6] panel sizes
    {"S6", "mfw", 'i', "900"}, {"S6", "mfh", 'i', "50"}, {"S6", "mft", 'i', "0"}, {"S6", "mfl", 'i', "0"},
    // [S7] batch names and window placement
    {keys::pprof, 's', "< No batch file selected >", &Globals::ActiveBatch}, {"S7", "fonpr", '?', "", &FontJob::FontPrefix},
    {"S7", "fonsu", '?', "", &FontJob::FontSuffix}, {"S7", "vformp1", '?', ""}, {"S7", "vformp2", '?', ""}, {keys::formp1, '?', ""},
    {keys::formp2, '?', ""}, {keys::formp3, '?', ""}, {keys::formp4, '?', ""}, {keys::formW3, 's', "920"},
    {keys::formW4, 's', "570"}, {keys::formp5, '?', ""}, {keys::formp6, '?', ""},
    {"S7", "formp7", '?', "", {}, "places:4"},
    // [S8] names and end strings
    {"S8", "nbmfn", 's', "NewBitmap.bmp", &ConversionSession::LastBitmapName},
    {keys::Endst, 's', "};", &DataSyntax::EndOfData, "len:3"}, {"S8", "EndstF", 's', "};", &FontJob::EndOfData, "writeas:Endst"},
    {keys::begds, '?', "", &DataSyntax::BeginOfData, "len:3"},
    // [I8] colours of overlays
    {"I8", "col1", 'i', "32768", {}, "range:0:16777215"}, {"I8", "col2", 'i', "32896", {}, "range:0:16777215"},
    {"I8", "scol2", 'i', "8421376", {}, "range:0:16777215"},
    {"I8", "col3", 'i', "8388608", {}, "range:0:16777215"}, {"I8", "col4", 'i', "8388736", {}, "range:0:16777215"},
    {"I8", "col5", 'i', "16711935", {}, "range:0:16777215"},
    {"I8", "col6", 'i', "128", {}, "range:0:16777215"}, {"I8", "bsiz", 'i', "0"},
    {"I8", "saco", 'i', "16711680", {}, "range:0:16777215"}, {"I8", "itsec", 'i', "255", {}, "range:0:16777215"},
    {"I8", "ghco", 'i', "12639424", {}, "range:0:16777215"}, {"I8", "zfac", 'i', "0"}, {"I8", "engi", 'i', "0"},
    {keys::Hpixels, 'i', "0", {}, "unread canvas:h"}, {keys::Wpixels, 'i', "0", {}, "unread canvas:w"},
    // [S12] font parameter strings
    {keys::usco, 's', "_", &ConversionSession::Underscore}, {"S12", "fpar1", '?', ""}, {"S12", "fpar2", '?', ""},
    {"S12", "fpar3", '?', ""}, {"S12", "fpar3L", '?', ""}, {"S12", "fpar4", '?', ""}, {"S12", "fpar5", '?', ""},
    {"S12", "fpar6", '?', ""}, {"S12", "fpar7", '?', ""}, {"S12", "fpar8", 's', "400"}, {"S12", "fpar9", '?', ""},
    {"S12", "fpar10", '?', ""}, {keys::fpar11, '?', "", &DataSyntax::ColRowPrefix, "len:5"},
    {keys::fpar12, '?', "", &DataSyntax::ColRowSuffix, "len:5"},
    {keys::fpar13, '?', "", &DataSyntax::ArrayPrefix, "len:5"},
    {keys::fpar14, '?', "", &DataSyntax::ArraySuffix, "len:5"},
    {"S12", "fexts", 's', "lib", &ConversionSession::LibraryExtension},
    // [I13] filter numbers and panel sizes
    {"I13", "ifpa", 'i', "0"}, {"I13", "asfp", 'i', "0"}, {"I13", "adfp", 'i', "0"}, {"I13", "mfw", 'i', "0"},
    {"I13", "mfh", 'i', "0"}, {"I13", "mfc", 'i', "0"},
    // [B9] folder view switches
    {"B9", "adfd", 'b', "0"}, {"B9", "imfd", 'b', "0"}, {"B9", "asfd", 'b', "0"}, {"B9", "ffp1", 'b', "0"},
    {"B9", "ffp2", 'b', "0"}, {"B9", "ffp3", 'b', "0"}, {"B9", "dowi", 'b', "0"},
    // [S14] vector library syntax
    {"S14", "mpfo", '?', ""}, {keys::mext, 's', ".txt"}, {"S14", "grxt", 's', ".BMP"},
    {keys::cprx, '?', "", &DataSyntax::PointerPrefix, "len:6"}, {"S14", "ippfn", '?', ""},
    {"S14", "vecp1", 's', "GCLD.Bar"},
    {"S14", "vecp2", 's', "GCLD.Line"}, {"S14", "vecp3", 's', "GCLD.Circle"}, {"S14", "vecbmp", 's', "GCLD.DrawBitmap"},
    {"S14", "vecir", 's', "GCLD.InvertRect"}, {"S14", "vecn", 's', "GCLD.PrintNumber"},
    {"S14", "vecc", 's', "GCLD.PutChar"}, {"S14", "vecfu", 's', "GCLD.Function"},
    {"S14", "vecfo", 's', "GCLD.SelectFont"}, {"S14", "vecin", 's', "GCLD.Init", {}, "writeas:vecini"},
    {"S14", "vecp4", 's', "GCLD.Rect"},
    {"S14", "vecp5", 's', "GCLD.RoundRect"}, {"S14", "vecp3f", 's', "GCLD.FillCircle"},
    {"S14", "vecp4f", 's', "GCLD.FillRect"}, {"S14", "vecp5f", 's', "GCLD.FillRoundRect"},
    {"S14", "vecp6", 's', "GCLD.Dot"}, {"S14", "vecp7", 's', "GCLD.Puts"}, {"S14", "vecp8", 's', ","},
    {"S14", "vecp8T", 's', "\""}, {"S14", "vecp9", 's', "("}, {"S14", "vecp10", 's', ");"},
    {"S14", "vecp11", 's', "GLCD.Arc"}, {"S14", "vecp11f", 's', "GLCD.Pie"}, {"S14", "vecp12", 's', "GLCD.Vline"},
    {"S14", "vecp13", 's', "GLCD.Hline"}, {"S14", "vecp14", 's', "GLCD.FillScr"},
    {"S14", "vecp14p", 's', "GLCD.ClearScr"}, {"S14", "vecgop", 's', "GLCD.GotoXY"},
    {"S15", "chk", 's', "check", {}, "unread"},
    // [S16] batch and prefix strings
    {"S16", "mgpf", 's', "- define your batch source folder here-"}, {keys::mgex, 's', ".bmp"},
    {"S16", "gpfn", 's', "< No batch file selected >"}, {"S16", "pgppf", '?', ""},
    {keys::bfpa, '?', "", &Globals::BatchRole}, {"S16", "impr", 's', "0x"}, {"S16", "adpr", 's', "0x"},
    // [I16] graphic batch and list column numbers
    {"I16", "grpi", 'i', "1"}, {"I16", "lv1", 'i', "180"}, {"I16", "lv2", 'i', "120"}, {"I16", "lv3", 'i', "80"},
    {"I16", "lv4", 'i', "160"},
    // [CB] combo box indexes
    {"CB", "CB0", 'i', "0"}, {"CB", "CB1", 'i', "0"}, {"CB", "CB2", 'i', "0"}, {"CB", "CB3", 'i', "0"},
    {"CB", "CB4", 'i', "12"}, {"CB", "CB5", 'i', "0"}, {"CB", "CB6", 'i', "3"}, {"CB", "CB7", 'i', "0"},
    {"CB", "CB8", 'i', "0"}, {"CB", "CB9", 'i', "1"}, {"CB", "CB10", 'i', "0"}, {"CB", "CB11", 'i', "0"},
    {"CB", "CB12", 'i', "0"}, {"CB", "CB13", 'i', "1"},
    // [B18] last switch
    {"B18", "achb", 'b', "1"},
    // [I18] last number
    {"I18", "icv", 'i', "0"},
};
// clang-format on

template <typename E>
std::pair<std::string_view, int> C(std::string_view key, E value) {
  return {key, static_cast<int>(value)};
}

const std::vector<RadioGroup>& RadioGroups() {
  using A = Application;
  using CA = const Application;
  using CF = CommentForm;
  using EL = EndOfLine;
  using PD = PagingDirection;
  using OC = OriginCorner;
  using OK = OutputKind;
  static const std::vector<RadioGroup> groups = {
      {kCommentForm,
       "S",
       [](CA& a) { return static_cast<int>(a.session.Syntax.Comment); },
       [](A& a, int v) { a.session.Syntax.Comment = static_cast<CF>(v); },
       static_cast<int>(CF::C),
       static_cast<int>(CF::C),
       {C("CCOM", CF::C), C("STCOM", CF::Custom), C("VBACOM", CF::Quote), C("PSCOM", CF::Slashes),
        C("BSCOM", CF::Semicolon)}},
      {kEndOfLineForm,
       "S",
       [](CA& a) { return static_cast<int>(a.session.Syntax.Eol); },
       [](A& a, int v) { a.session.Syntax.Eol = static_cast<EL>(v); },
       static_cast<int>(EL::Comma),
       static_cast<int>(EL::Comma),
       {C("Eoln", EL::None), C("Eolcom", EL::Comma), C("EolStr", EL::Custom), C("EolSem", EL::Semicolon)}},
      {kPagingScheme,
       "B3",
       [](CA& a) { return static_cast<int>(a.session.Direction); },
       [](A& a, int v) {
         a.session.Direction = static_cast<PD>(v);
         a.session.Horizontal = IsHorizontal(a.session.Direction);
       },
       -1,
       static_cast<int>(PD::ToRightAll),
       {C("tla", PD::ToLeft), C("tra", PD::ToRight), C("tl", PD::ToLeftAll), C("tr", PD::ToRightAll), C("td", PD::Down),
        C("tu", PD::Up), C("tua", PD::UpAll), C("tda", PD::DownAll)}},
      {kOriginCorner,
       "B2",
       [](CA& a) { return static_cast<int>(a.session.Origin); },
       [](A& a, int v) { a.session.Origin = static_cast<OC>(v); },
       static_cast<int>(OC::TL),
       static_cast<int>(OC::TL),
       {C("CORN1", OC::TL), C("CORN2", OC::TR), C("CORN3", OC::BR), C("CORN4", OC::BL)}},
      {kOutputKind,
       "B1",
       [](CA& a) { return static_cast<int>(a.session.Output); },
       [](A& a, int v) { a.session.Output = static_cast<OK>(v); },
       static_cast<int>(OK::Bits8),
       static_cast<int>(OK::Bits8),
       {C("D8bc", OK::Bits8), C("D16bc", OK::Bits16), C("D32bc", OK::Bits32), C("DHec", OK::BinaryFile),
        C("DIHec", OK::IntelHex)}},
  };
  return groups;
}

bool EqualNoCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
           return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
         });
}

std::string Fold(std::string_view s) {
  std::string f(s);
  for (char& c : f) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return f;
}

bool IsWholeNumber(const std::string& v) {
  long long n = 0;
  const char* b = v.data();
  const char* e = v.data() + v.size();
  auto r = std::from_chars(b, e, n);
  return r.ec == std::errc() && r.ptr == e && n >= -2147483648LL && n <= 2147483647LL;
}

SettingType TypeOf(char c) {
  return c == 'b' ? SettingType::Boolean : c == 'i' ? SettingType::Integer : SettingType::String;
}

// Names of the keys built by counting ("mru0" ... "mru20"); they live as long as the program.
const char* CountedName(const std::string& name) {
  static std::vector<std::unique_ptr<std::string>> names;
  names.push_back(std::make_unique<std::string>(name));
  return names.back()->c_str();
}

SettingDef Entry(std::string_view section, std::string_view key, SettingType type, std::string_view def) {
  SettingDef d;
  d.section = section;
  d.key = key;
  d.type = type;
  d.defaultValue = def;
  d.writeKey = key;
  return d;
}

void AddCounted(std::vector<SettingDef>& t, const char* section, const std::string& prefix, int last,
                const char* suffix, SettingType type, const char* def) {
  for (int i = 0; i <= last; ++i)
    t.push_back(Entry(section, CountedName(prefix + std::to_string(i) + suffix), type, def));
}

const RadioGroup& GroupNamed(std::string_view name) {
  for (const RadioGroup& g : RadioGroups())
    if (g.name == name) return g;
  throw std::logic_error("no radio group " + std::string(name));
}

std::vector<SettingDef> BuildTable() {
  std::vector<SettingDef> t;
  for (const CatalogueKey& k : kCatalogue) {
    const std::string_view section = k.at.section, key = k.at.key;
    if (section == "B18") {
      // The lists, counted, come before the last two keys.
      AddCounted(t, "FS0", "ext", 20, "", SettingType::String, "");
      AddCounted(t, "S18", "mru", 20, "", SettingType::String, "_");
      AddCounted(t, "S19", "fmru", 10, "", SettingType::String, "");
      // The sixteen custom display sizes: 0 for a size not yet given.
      for (int i = 0; i <= 15; ++i) {
        SettingDef w = Entry("I2", CountedName("cs" + std::to_string(i) + "w"), SettingType::Integer, "0");
        SettingDef h = Entry("I2", CountedName("cs" + std::to_string(i) + "h"), SettingType::Integer, "0");
        w.min = h.min = 0;
        w.max = kMaxCustomWidth;
        h.max = kMaxCustomHeight;
        w.field = &Globals::CustomWidths;
        h.field = &Globals::CustomHeights;
        w.index = h.index = i;
        t.push_back(w);
        t.push_back(h);
      }
    }
    if (k.type == 'r') {
      // One switch per choice, "1" on the choice a new project has.
      const RadioGroup& g = GroupNamed(key);
      for (const auto& [choiceKey, value] : g.choices) {
        SettingDef d = Entry(section, choiceKey, SettingType::Boolean, value == g.defaultChoice ? "1" : "0");
        d.radio = &g;
        d.choice = value;
        d.radioGroup = g.name;
        t.push_back(d);
      }
      continue;
    }
    SettingDef d = Entry(section, key, TypeOf(k.type), k.def);
    d.field = k.field;
    d.mirror = k.also;
    d.computed = k.type == '?';
    // Where the written file does not read back as the program had it (the "takes" flags). These
    // are kept on purpose: projects written by this program and by earlier ones must read the
    // same. The RS-485 option falls back to off at each start; the vector window's width and the
    // vector library's initialise call never come back; the font's end string is written over
    // the graphic one. formp7 is one key for four places: the adjustments window's top and left,
    // then the main window's top and left; each is written in turn, so the last wins, and all
    // four read it back.
    int places = 1;
    if (k.takes) ApplyTakes(d, k.takes, places);
    for (int i = 1; i < places; ++i) t.push_back(d);
    t.push_back(d);
  }
  for (std::size_t i = 0; i < t.size(); ++i) t[i].held = i;
  AddSettingRules(t);
  return t;
}

const std::unordered_map<std::string, std::size_t>& KeyIndex() {
  static const std::unordered_map<std::string, std::size_t> index = [] {
    std::unordered_map<std::string, std::size_t> m;
    const auto& t = SettingsTable();
    for (std::size_t i = 0; i < t.size(); ++i) {
      m.emplace(Fold(t[i].key), i);  // the first in reading order keeps a bare name
      m.emplace(Fold(t[i].section) + "/" + Fold(t[i].key), i);
    }
    return m;
  }();
  return index;
}

bool SwitchOn(const Application& app, const SettingKey& key) {
  // A switch with a variable of its own reads from it; the colour switches, written from the
  // mode in force, read from what the file said.
  const SettingDef* d = FindSetting(key);
  const std::string v = d->Bound() ? GetSetting(app, *d) : app.globals.HeldSettings[d->held];
  return IsWholeNumber(v) && std::stol(v) != 0;
}

}  // namespace

const std::vector<SettingDef>& SettingsTable() {
  static const std::vector<SettingDef> table = BuildTable();
  return table;
}

const std::vector<std::string_view>& SectionWriteOrder() {
  static const std::vector<std::string_view> order = {
      "S",   "B17", "B13", "B7",  "B3", "B2",  "b50", "b50s", "B10", "B11", "SX",  "I11", "S2",  "I2",
      "S3",  "I1",  "B1",  "S4",  "S5", "I5",  "S6",  "S7",   "S8",  "I8",  "S12", "S13", "I13", "B9",
      "S14", "S15", "S16", "I16", "CB", "FS0", "S0",  "BS0",  "S18", "S19", "b18", "I18"};
  return order;
}

const std::vector<const SettingDef*>& SettingsWriteOrder() {
  static const std::vector<const SettingDef*> order = [] {
    std::vector<const SettingDef*> o;
    for (std::string_view section : SectionWriteOrder())
      for (const SettingDef& d : SettingsTable())
        if (!d.writeKey.empty() && EqualNoCase(d.section, section)) o.push_back(&d);
    return o;
  }();
  return order;
}

std::vector<std::string> FactoryHeldSettings() {
  std::vector<std::string> v;
  v.reserve(SettingsTable().size());
  for (const SettingDef& d : SettingsTable()) v.emplace_back(d.computed ? "" : d.defaultValue);
  return v;
}

const SettingDef* FindSetting(std::string_view key) {
  const auto& index = KeyIndex();
  auto it = index.find(Fold(key));
  return it == index.end() ? nullptr : &SettingsTable()[it->second];
}

const SettingDef* FindSetting(const SettingKey& key) {
  return FindSetting(std::string(key.section) + "/" + std::string(key.key));
}

const RadioGroup& PagingRadioGroup() { return GroupNamed(kPagingScheme); }

namespace {

template <typename>
struct MemberOf;
template <typename C, typename T>
struct MemberOf<T C::*> {
  using Class = C;
};

template <typename C, typename A>
auto& Owner(A& a) {
  if constexpr (std::is_same_v<C, ConversionSettings>)
    return a.session.Settings();
  else if constexpr (std::is_same_v<C, DataSyntax>)
    return a.session.Syntax;
  else if constexpr (std::is_same_v<C, Globals>)
    return a.globals;
  else if constexpr (std::is_same_v<C, FontJob>)
    return a.asciiChild.job;
  else
    return a.globals.Clip;
}

// The variable a member names in `app`; for an array, its entry `index`.
template <typename M, typename A>
auto& Variable(A& app, M member, int index) {
  auto& v = Owner<typename MemberOf<M>::Class>(app).*member;
  if constexpr (std::is_array_v<std::remove_reference_t<decltype(v)>>)
    return v[index];
  else
    return v;
}

std::string FieldValue(const Application& app, const SettingField& field, int index) {
  return std::visit(
      [&app, index](auto m) -> std::string {
        if constexpr (std::is_same_v<decltype(m), std::monostate>) {
          return {};
        } else {
          const auto& v = Variable(app, m, index);
          if constexpr (std::is_same_v<std::decay_t<decltype(v)>, bool>)
            return B(v);
          else if constexpr (std::is_same_v<std::decay_t<decltype(v)>, int>)
            return std::to_string(v);
          else
            return v;
        }
      },
      field);
}

void SetFieldValue(Application& app, const SettingField& field, int index, const std::string& value) {
  std::visit(
      [&app, &value, index](auto m) {
        if constexpr (!std::is_same_v<decltype(m), std::monostate>) {
          auto& v = Variable(app, m, index);
          if constexpr (std::is_same_v<std::decay_t<decltype(v)>, bool>)
            v = ToBool(value);
          else if constexpr (std::is_same_v<std::decay_t<decltype(v)>, int>)
            v = ToInt(value);
          else
            v = value;
        }
      },
      field);
}

}  // namespace

std::string GetSetting(const Application& app, const SettingDef& def) {
  if (def.radio) return B(def.radio->get(app) == def.choice);
  if (def.canvasSide == 'w') return std::to_string(app.pixelForm.WorkBitmap.Width());
  if (def.canvasSide == 'h') return std::to_string(app.pixelForm.WorkBitmap.Height());
  if (def.field.index() == 0) return app.globals.HeldSettings[def.held];
  const std::string v = FieldValue(app, def.field, def.index);
  if (def.onFor.empty()) return v;
  return B(std::find(def.onFor.begin(), def.onFor.end(), ToInt(v)) != def.onFor.end());
}

void SetSetting(Application& app, const SettingDef& def, const std::string& value) {
  // A text field holds no more than its length.
  const std::string v = def.maxLength > 0 && value.size() > def.maxLength ? value.substr(0, def.maxLength) : value;
  if (def.radio) {
    if (ToBool(v))
      def.radio->set(app, def.choice);
    else if (def.radio->factory >= 0 && def.radio->get(app) == def.choice)
      def.radio->set(app, def.radio->factory);
  } else if (def.monoInverts) {
    // In monochrome the inverted output is the inverted mode, as the menu's toggle makes it.
    app.session.NegativeOutput = ToBool(v) && app.session.Monochrome;
    if (app.session.Monochrome) app.session.ModeNumber = MonochromeMode(app.session.NegativeOutput);
  } else if (def.Bound()) {
    SetFieldValue(app, def.field, def.index, v);
    SetFieldValue(app, def.mirror, def.index, v);
  } else {
    app.globals.HeldSettings[def.held] = v;
  }
}

int ColourModeFromSwitches(const Application& app) {
  auto on = [&app](const SettingKey& k) { return SwitchOn(app, k); };
  const bool packed = on(keys::PM);
  if (!on(keys::NOMAT)) {
    if (on(keys::Moni)) return 2;
    if (on(keys::Monc)) return 1;
  }
  if (on(keys::G256)) return 32;
  if (on(keys::C256) || on(keys::C256NP)) return 56;
  if (on(keys::C16)) return 55;
  if (on(keys::C8)) return 54;
  if (on(keys::C4096) && packed) return 57;
  if (on(keys::C65535)) return 59;
  if (on(keys::C18u)) return 61;
  if (on(keys::C18)) return 60;
  if (on(keys::G16) && on(keys::ST7)) return 28;
  if (on(keys::G16) && !on(keys::RGRA)) return 26;
  if (on(keys::G16)) return 27;
  if (on(keys::G4)) return 24;
  if (on(keys::G42)) return 25;
  if (on(keys::G32) && packed) return 29;
  if (on(keys::G32)) return 30;
  if (on(keys::GRL32)) return 31;
  if (on(keys::C4096)) return 58;
  if (on(keys::C16M) && !packed) return 63;
  if (on(keys::C16M)) return 62;
  return 0;
}

}  // namespace rm
