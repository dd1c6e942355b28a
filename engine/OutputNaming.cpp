#include "engine/OutputNaming.h"

#include "engine/HeaderTemplate.h"

namespace rm {

std::string FileNamePart(const std::string& path) {
  const std::size_t slash = path.find_last_of('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

std::string FolderPart(const std::string& path) {
  const std::size_t slash = path.find_last_of('/');
  if (slash == std::string::npos) return "";
  return slash == 0 ? "/" : path.substr(0, slash);
}

std::string StripExtension(const std::string& name) {
  const std::string file = FileNamePart(name);
  const std::size_t dot = file.find_last_of('.');
  // A leading point names a hidden file, not an extension.
  if (dot == std::string::npos || dot == 0) return name;
  return name.substr(0, name.size() - (file.size() - dot));
}

std::string OutputExtension(const ConversionSession& s) {
  if (s.Output == OutputKind::IntelHex) return ".hex";
  if (s.Output == OutputKind::BinaryFile) return ".bin";
  if (s.AsmFile) return ".asm";
  if (s.LibraryFile) return "." + s.LibraryExtension;
  if (s.BasicFile) return ".bas";
  if (s.CFile) return ".c";
  return ".h";
}

std::string DefineOutputFileName(ConversionSession& s) {
  s.OutputFileName = StripExtension(FileNamePart(s.LastBitmapName)) + OutputExtension(s);
  return s.OutputFileName;
}

std::string OutputTableName(const ConversionSession& s, int frame) {
  const std::string name = TableNameFromFile(s.OutputFileName);
  if (frame >= 1) return name + s.Underscore + std::to_string(frame);
  if (s.HalfExport) return name + (s.LowerHalf ? "_L" : "_U");
  return name;
}

namespace {

std::string InFolder(const std::string& folder, const std::string& name) {
  if (folder.empty()) return name;
  return folder.back() == '/' ? folder + name : folder + "/" + name;
}

}  // namespace

std::string OutputPath(const ConversionSession& s) { return InFolder(s.OutputFolder, s.OutputFileName); }

std::string InfoFileName(const ConversionSession& s) {
  return InFolder(s.OutputFolder, StripExtension(FileNamePart(s.OutputFileName)) + ".rtf");
}

std::string InfoFileNameFor(const std::string& outputPath) {
  return InFolder(FolderPart(outputPath), StripExtension(FileNamePart(outputPath)) + ".rtf");
}

AreaCorners ReportedArea(const ConversionSession& s) {
  AreaCorners a{s.ExportAreaX1, s.ExportAreaY1, s.ExportAreaX2 - 1, s.ExportAreaY2 - 1};
  if (!s.TrueOrigin) return a;
  const bool bottom = s.Origin == OriginCorner::BL || s.Origin == OriginCorner::BR;
  const bool right = s.Origin == OriginCorner::TR || s.Origin == OriginCorner::BR;
  if (bottom) {
    a.y = s.CanvasHeight - s.ExportAreaY2;
    a.y2 = s.CanvasHeight - s.ExportAreaY1 - 1;
  }
  if (right) {
    a.x = s.CanvasWidth - s.ExportAreaX2;
    a.x2 = s.CanvasWidth - s.ExportAreaX1 - 1;
  }
  return a;
}

}  // namespace rm
