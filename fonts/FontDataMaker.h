#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "engine/ConversionSession.h"
#include "engine/HexBuffer.h"
#include "engine/TextLines.h"
#include "engine/UiPort.h"
#include "fonts/FontEngine.h"
#include "fonts/FontJob.h"
#include "fonts/FontTemplates.h"

namespace rm {

// One character of a job: its code (the code page byte in ANSI mode, the Unicode value
// otherwise) and the character drawn for it.
struct FontChar {
  int code = 0;
  char32_t c = 0;
};

// What a font data run needs besides the job, the font and the session.
struct FontDataInput {
  FontStructure structure = FontStructure::FontBloc;
  std::vector<FontChar> chars;  // sorted by code
  bool unicode = false;
  std::string name;  // the data's name, a C identifier
  std::vector<std::string> templateLines;
  std::string version;
  std::string dateText;
  std::string codePage;
  std::string charactersText;  // the characters as the Description Header lists them
  int filler = 0xAA;           // "Font Filler"
  bool grayHorizontalScheme = false;  // gsch: the 16 gray mode's vertical walk
  // The font's end of line, which stands in for the canvas's during the job.
  EndOfLine fontEol = EndOfLine::Custom;
  std::string fontEolString = ",";
  std::string terminatorCode;  // written after a Font Bloc's data when not empty
};

// The sizes the closing comment reports.
struct FontDataSizes {
  long long glyphBytes = 0;
  long long headerBytes = 0;
  long long descriptorBytes = 0;
  int maxWidthSeen = 0;
  int fontHeight = 0;
  int count = 0;
  long long Total() const { return glyphBytes + headerBytes + descriptorBytes; }
};

// The font job's run (TranslateFontButtonClick): every character drawn and measured, walked by
// the paging scheme through the canvas packers and the data formatter, and the text around the
// data assembled by structure; or, in binary output, a record per character.
class FontDataMaker {
 public:
  FontDataMaker(const Font& font, const FontJob& job, ConversionSession& session, UiPort& ui)
      : font_(font), job_(job), s_(session), ui_(ui) {}

  // The refusals before any output, in order: direction, 32 bit words, empty selection, Intel
  // HEX, modes without a font scan. Each tells the user; false stops the job. Forces 8 bit words.
  bool Check(const FontDataInput& in);
  // Makes the data into `text` (text output) or `bytes` (binary output). False when the run was
  // stopped (Esc, a colour without a value); nothing then is to be kept.
  bool Make(const FontDataInput& in, TextLines& text, std::vector<std::uint8_t>& bytes);
  const FontDataSizes& Sizes() const { return sizes_; }

 private:
  const Font& font_;
  const FontJob& job_;
  ConversionSession& s_;
  UiPort& ui_;
  FontDataSizes sizes_;
};

}  // namespace rm
