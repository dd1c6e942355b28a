#pragma once
#include <string>
#include <vector>

#include "engine/ConversionSession.h"

namespace rm {

// One frame of an animation conversion, as the parameter file lists it.
struct InfoFrameRecord {
  int frame = 0;
  std::string file;
  long long bytes = 0;
  std::string compressionRatio;
};

// What the parameter file reports beyond the session: the moment it is written and the state of
// the animation and the post-processing, which the shell keeps.
struct InfoFileFacts {
  std::string dateText;
  bool animation = false;
  std::vector<InfoFrameRecord> frames;
  long long animationBytes = 0;
  std::string clipUnitFile;  // empty when no clip unit was written
  bool postProcessing = false;
  std::string postProcessingFile;
  int postProcessingCount = 0;
  // A compressed table: the size of its data and pointer tables, and the compressor's
  // statistics without comment marks.
  bool compressed = false;
  long long compressedBytes = 0;
  std::vector<std::string> compressionStatistics;
};

// The lines of the parameter file: a readable account of the settings behind the last table.
std::vector<std::string> InfoFileLines(const ConversionSession& s, const InfoFileFacts& facts);

// The report texts of the Paging Scheme and the colour mode; the log uses the first too.
const char* DirectionInfoText(PagingDirection d);
const char* ModeInfoText(int modeNumber);

}  // namespace rm
