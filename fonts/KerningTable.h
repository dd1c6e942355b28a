#pragma once
#include <string>
#include <vector>

#include "engine/ConversionSession.h"
#include "fonts/FontEngine.h"

namespace rm {

// The texts of a kerning table, with their project defaults (KERPREF, KERSUF, KERTBEG, KERTEND,
// KERLBEG, KERLEND).
struct KerningSyntax {
  std::string prefix = "int ";
  std::string suffix = "[120][3]= ";
  std::string tableBegin = "{";
  std::string tableEnd = "};";
  std::string lineBegin = "{";
  std::string lineEnd = "},";
};

// A system font's kerning pairs as a table in the data syntax of the job (ExportKerningPairs):
// the header, the font's description, the declaration and one line per pair with the pair's
// characters in a comment.
std::vector<std::string> KerningTable(const std::vector<KerningPair>& pairs, const std::string& tableName,
                                      const std::string& fontDescription, const KerningSyntax& k,
                                      const ConversionSettings& s, const std::string& version,
                                      const std::string& dateText);

}  // namespace rm
