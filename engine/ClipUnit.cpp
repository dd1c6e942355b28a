#include "engine/ClipUnit.h"

namespace rm {

std::vector<std::string> ClipUnitLines(const ClipSyntax& c, const std::string& functionName,
                                       const std::vector<ClipFrame>& frames, const std::string& commentPrefix,
                                       const std::string& infoFile) {
  std::vector<std::string> lines;
  for (const auto& f : frames) lines.push_back(c.include + c.includeStart + f.file + c.includeEnd);
  lines.emplace_back();
  // "void" and the name need a blank between them unless the prefix brings one.
  const bool blank = !c.functionPrefix.empty() && c.functionPrefix.back() != ' ';
  lines.push_back(c.functionPrefix + (blank ? " " : "") + functionName + c.functionSuffix);
  lines.push_back(c.begin);
  for (std::size_t i = 0; i < frames.size(); ++i) {
    const ClipFrame& f = frames[i];
    const bool compressed = !f.pointerTable.empty();
    // A compressed frame is drawn from its data table and its pointer table together.
    std::string args = compressed ? f.table + c.separator + f.pointerTable : f.table;
    if (c.withPositionAndSize)
      for (long long v : {f.x, f.y, f.width, f.height}) args += c.separator + std::to_string(v);
    lines.push_back("  " + (compressed ? c.compressedCall : c.call) + c.callStart + args + c.callEnd + ";");
    if (c.withDelay && (i + 1 < frames.size() || c.delayAfterLastFrame))
      lines.push_back("  " + c.delay + c.delayStart + std::to_string(f.delayMs) + c.delayEnd + ";");
  }
  lines.push_back(c.end);
  lines.emplace_back();
  lines.push_back(commentPrefix + " See info file " + infoFile);
  return lines;
}

}  // namespace rm
