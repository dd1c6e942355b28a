#pragma once
#include <string>
#include <vector>

#include "engine/ConversionSession.h"
#include "fonts/CharDescriptor.h"
#include "fonts/FontDataMaker.h"
#include "fonts/FontGlyph.h"
#include "fonts/FontJob.h"
#include "fonts/FontScan.h"
#include "fonts/FontTemplates.h"

namespace rm {

// The text of font data around the data lines: the Description Header, the Code Header template
// filled in, the font header row, each character's comment, array and descriptor by structure,
// and the end of the font with its sizes.
class FontText {
 public:
  FontText(const FontJob& job, const ConversionSession& session, const FontDataInput& in,
           const CharDescriptor& descriptor);

  // The characters in order, each with its data lines as the formatter wrote them.
  void AddChar(const FontChar& fc, const GlyphMeasure& m, const FontScanResult& r, const DescriptorValues& d,
               long long address, std::vector<std::string> lines);
  // The bytes of the font header row (0 when there is none).
  long long HeaderBytes() const;
  // The whole text (AddEndOfFont with everything before the data).
  std::vector<std::string> Finish(const FontDataSizes& sizes);

 private:
  bool CComments() const { return s_.Syntax.Comment == CommentForm::C; }
  std::string Comment(const std::string& text) const { return commentStart_ + text + commentEnd_; }
  bool DescriptorsOn() const { return !job_.NoDescriptorBloc && !descriptor_.Empty(); }
  bool HeaderRowOn() const;
  std::string Separator() const;
  std::string EndOfLineText() const;
  std::string CharText(char32_t c) const;
  std::string CodeName(int code) const;
  void RemoveLastSeparator(std::vector<std::string>& lines) const;
  std::vector<std::string> DescriptionHeader(const FontDataSizes& sizes) const;
  std::string HeaderRow(const FontDataSizes& sizes) const;
  std::string Declaration(const std::string& line, const FontDataSizes& sizes) const;

  const FontJob& job_;
  const ConversionSession& s_;
  const FontDataInput& in_;
  const CharDescriptor& descriptor_;
  FontTemplate template_;
  std::string commentStart_, commentEnd_;
  std::vector<std::string> body_;
  std::vector<std::string> descriptorLines_;
  std::vector<std::string> imageLines_;  // Structured: the image record of each character
  std::vector<std::string> entries_;     // Structured: the character list
  long long maxBytesPerChar_ = 0;
  long long widestDescriptorValue_ = 0;
  int chars_ = 0;
};

}  // namespace rm
