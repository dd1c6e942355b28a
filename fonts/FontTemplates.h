#pragma once
#include <string>
#include <vector>

namespace rm {

// The four structures of font data.
enum class FontStructure { RawData, FontBloc, Structured, DmdStruct };

// The suffix that replaces the extension of the configured header template for a structure:
// "_Raw.txt", "_Bloc.txt", "_Struct.txt", "_DMD.txt".
std::string FontTemplateSuffix(FontStructure structure);

// A Code Header template taken apart by its tags.
struct FontTemplate {
  std::vector<std::string> include;  // [&FONT INCLUDE] ... [&/FONT INCLUDE]
  std::string imageDataPrefix = "static const uint8_t image_data_";
  std::string timagePrefix = "static const timage ";
  std::string tcharPrefix = "static const tImage ";
  std::string tfontPrefix = "const tfont ";
  std::string bitmapsLine;      // [&FONT BITMAPS]
  std::string blocLine;         // [&FONT BLOC]
  std::string descriptorsLine;  // [&FONT DESCRIPTORS]
};

// Lines with "//**" are dropped; "[&NAME]" ends its line. Tags are found without regard to case.
FontTemplate ParseFontTemplate(const std::vector<std::string>& lines);

}  // namespace rm
