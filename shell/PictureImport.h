#pragma once
#include <string>

#include "engine/Bitmap.h"

namespace rm {

class Application;

// Graphics import: picture files checked, decoded, turned and fitted, then floated over the
// Work Canvas; and the recent files list.
class PictureImport {
 public:
  explicit PictureImport(Application& app) : app_(app) {}

  // Checks a picture file and imports it as a floating selection over the Work Canvas. False
  // when the file was refused or the import cancelled; the canvas is then as it was.
  bool OpenPic(const std::string& fileName);
  // The common road of a file import: recent list, tools, decoding and fitting.
  bool ImportPic();
  // Decodes `fileName` by the kind its extension names and fits it (AssignInPutBitmap).
  bool ImportImageMDIChild(const std::string& fileName);
  // The rest of an import for a picture already decoded: turned, the display following it when
  // asked, fitted and floated as the selection.
  bool ImportBitmap(Bitmap picture);
  // Turns the imported picture by ImportAngle (not drawings, not GIF).
  void RotateImport();
  // Renders a drawing at ImportWidth x ImportHeight (the canvas size when either is 0), turned
  // by ImportAngle and closely cropped. False, with `error` set, when it cannot be rendered.
  bool SVGPaint(const std::string& fileName, Bitmap& target, std::string& error);
  // Fits the imported picture to the canvas (or the chosen area) and floats it as the selection.
  // False when the user cancelled.
  bool AssignInPutBitmap();
  // Puts `path` first in the recent files, unless it is one of the program's own temporaries.
  void AddMRUF(const std::string& path);
  // Loads a picture straight into the Work Canvas: resized when too large, pasted at 0,0.
  bool LoadGraphicDirectly(const std::string& fileName);
  // The canvas becomes a floating picture under the threshold tool of the monochrome mode.
  bool ConvertCanvastoBlackandWhite1Click();
  // The first bytes of a JPEG file (FF D8 FF) and of a Windows bitmap ("BM" and a header of a
  // known size).
  static bool IsJpegFile(const std::string& path);
  static bool IsBitmapFile(const std::string& path);

 private:
  Application& app_;
};

}  // namespace rm
