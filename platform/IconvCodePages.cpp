#include <iconv.h>

#include <array>
#include <cstring>

#include "platform/FreeTypeFontEngine.h"

namespace rm {

namespace {

struct CodePageName {
  int number;
  const char* iconvName;
  const char* title;
};

// The single-byte code pages of the desktop's list, by the names iconv knows them by.
constexpr std::array<CodePageName, 38> kCodePages{{
    {437, "CP437", "OEM - United States"},
    {737, "CP737", "OEM - Greek 437G"},
    {775, "CP775", "OEM - Baltic"},
    {850, "CP850", "OEM - Multilingual Latin I"},
    {852, "CP852", "OEM - Latin II"},
    {855, "CP855", "OEM - Cyrillic"},
    {857, "CP857", "OEM - Turkish"},
    {858, "CP858", "OEM - Multilingual Latin I + Euro"},
    {860, "CP860", "OEM - Portuguese"},
    {861, "CP861", "OEM - Icelandic"},
    {862, "CP862", "OEM - Hebrew"},
    {863, "CP863", "OEM - Canadian French"},
    {864, "CP864", "OEM - Arabic"},
    {865, "CP865", "OEM - Nordic"},
    {866, "CP866", "OEM - Russian"},
    {869, "CP869", "OEM - Modern Greek"},
    {874, "WINDOWS-874", "ANSI/OEM - Thai"},
    {1250, "WINDOWS-1250", "ANSI - Central Europe"},
    {1251, "WINDOWS-1251", "ANSI - Cyrillic"},
    {1252, "WINDOWS-1252", "ANSI - Latin I"},
    {1253, "WINDOWS-1253", "ANSI - Greek"},
    {1254, "WINDOWS-1254", "ANSI - Turkish"},
    {1255, "WINDOWS-1255", "ANSI - Hebrew"},
    {1256, "WINDOWS-1256", "ANSI - Arabic"},
    {1257, "WINDOWS-1257", "ANSI - Baltic"},
    {1258, "WINDOWS-1258", "ANSI/OEM - Viet Nam"},
    {10000, "MACINTOSH", "MAC - Roman"},
    {20866, "KOI8-R", "Russian - KOI8"},
    {21866, "KOI8-U", "Ukrainian - KOI8-U"},
    {28591, "ISO-8859-1", "ISO 8859-1 Latin I"},
    {28592, "ISO-8859-2", "ISO 8859-2 Central Europe"},
    {28593, "ISO-8859-3", "ISO 8859-3 Latin 3"},
    {28594, "ISO-8859-4", "ISO 8859-4 Baltic"},
    {28595, "ISO-8859-5", "ISO 8859-5 Cyrillic"},
    {28596, "ISO-8859-6", "ISO 8859-6 Arabic"},
    {28597, "ISO-8859-7", "ISO 8859-7 Greek"},
    {28598, "ISO-8859-8", "ISO 8859-8 Hebrew"},
    {28605, "ISO-8859-15", "ISO 8859-15 Latin 9"},
}};

const CodePageName* Find(int number) {
  for (const CodePageName& page : kCodePages)
    if (page.number == number) return &page;
  return nullptr;
}

}  // namespace

std::vector<CodePageInfo> FreeTypeFontEngine::CodePages() const {
  std::vector<CodePageInfo> pages;
  for (const CodePageName& page : kCodePages) {
    const iconv_t cd = iconv_open("UTF-32LE", page.iconvName);
    if (cd == reinterpret_cast<iconv_t>(-1)) continue;
    iconv_close(cd);
    pages.push_back({page.number, std::to_string(page.number) + "  (" + page.title + ")"});
  }
  return pages;
}

std::optional<char32_t> FreeTypeFontEngine::ToUnicode(int codePage, std::uint8_t byte) const {
  const CodePageName* page = Find(codePage);
  if (page == nullptr) return std::nullopt;
  const iconv_t cd = iconv_open("UTF-32LE", page->iconvName);
  if (cd == reinterpret_cast<iconv_t>(-1)) return std::nullopt;
  char in[1] = {static_cast<char>(byte)};
  unsigned char out[16] = {};
  char* inPtr = in;
  char* outPtr = reinterpret_cast<char*>(out);
  std::size_t inLeft = 1, outLeft = sizeof out;
  const bool converted = iconv(cd, &inPtr, &inLeft, &outPtr, &outLeft) != static_cast<std::size_t>(-1) && inLeft == 0;
  // Vietnamese holds a base letter back, waiting for a combining mark: let it go.
  if (converted) iconv(cd, nullptr, nullptr, &outPtr, &outLeft);
  iconv_close(cd);
  if (!converted || sizeof out - outLeft != 4) return std::nullopt;
  return static_cast<char32_t>(out[0] | (out[1] << 8) | (out[2] << 16) | (static_cast<char32_t>(out[3]) << 24));
}

}  // namespace rm
