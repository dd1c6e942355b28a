// Graphics import: a picture file becomes a floating selection over the Work Canvas. An import
// never writes WorkBitmap itself; the user places and pastes the selection.
#include <algorithm>
#include <cctype>
#include <cstdint>
#include <filesystem>
#include <fstream>

#include "engine/ImportGeometry.h"
#include "shell/Application.h"
#include "shell/Folders.h"

namespace rm {

namespace {

constexpr int kRotationLimit = 3000;          // larger pictures would need a work square of gigabytes
constexpr std::size_t kRecentFilesKept = 21;  // the project stores mru0 to mru20

std::string UpperExtension(const std::string& path) {
  std::string ext = std::filesystem::path(path).extension().string();
  std::transform(ext.begin(), ext.end(), ext.begin(), [](unsigned char c) { return std::toupper(c); });
  return ext;
}

// The kinds the import reads, in the order they are compared.
bool IsGraphicKind(const std::string& ext) {
  for (const char* kind : {".BMP", ".JPG", ".JPEG", ".PNG", ".GIF", ".ICO", ".TIF", ".TIFF", ".EMF", ".SVG"})
    if (ext == kind) return true;
  return false;
}

std::string ReadHead(const std::string& path, std::size_t count) {
  std::ifstream in(path, std::ios::binary);
  std::string head(count, '\0');
  in.read(head.data(), static_cast<std::streamsize>(count));
  head.resize(static_cast<std::size_t>(in.gcount()));
  return head;
}

std::uint32_t Le32(const std::string& bytes, std::size_t at) {
  return static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at])) |
         static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at + 1])) << 8 |
         static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at + 2])) << 16 |
         static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at + 3])) << 24;
}

std::string Num(int v) { return std::to_string(v); }

}  // namespace

bool PictureImport::IsJpegFile(const std::string& path) {
  const std::string head = ReadHead(path, 3);
  return head == std::string("\xFF\xD8\xFF", 3);
}

bool PictureImport::IsBitmapFile(const std::string& path) {
  const std::string head = ReadHead(path, 18);
  if (head.size() < 18 || head[0] != 'B' || head[1] != 'M') return false;
  // The info header sizes of the core, version 3 (with its two extensions), 4 and 5 headers,
  // and the OS/2 2.x header.
  const std::uint32_t infoSize = Le32(head, 14);
  for (std::uint32_t known : {12u, 16u, 40u, 52u, 56u, 64u, 108u, 124u})
    if (infoSize == known) return Le32(head, 10) >= 14 + infoSize;
  return false;
}

bool PictureImport::OpenPic(const std::string& fileName) {
  Globals& g = app_.globals;
  g.ImportKeepsOffsets = false;
  g.ImportOffsetX = g.ImportOffsetY = 0;
  app_.session.Abort = false;
  g.LastAction = "Open picture";
  const std::string ext = UpperExtension(fileName);
  std::error_code ec;
  if (!std::filesystem::is_regular_file(fileName, ec)) {
    app_.mainForm.MessageDlgA("File " + fileName + " not found !" + "\r" + "File not found", "Error", 0, 4, 1);
    return false;
  }
  if (ext == ".JPG" && !IsJpegFile(fileName)) {
    app_.mainForm.MessageDlgA("This is not a valid Jpeg file !\r" + fileName + "\r" + "JPG file format check failed",
                              "Error", 0, 4, 1);
    return false;
  }
  if (ext == ".BMP" && !IsBitmapFile(fileName)) {
    app_.mainForm.MessageDlgA(
        "This is not a valid bitmap file !\r" + fileName + "\r" + "Bitmap file format check failed", "Error", 0, 4, 1);
    return false;
  }
  g.ImportFileName = fileName;
  return ImportPic();
}

bool PictureImport::ImportPic() {
  Globals& g = app_.globals;
  // A picture still floating is pasted or dropped first, by the user's choice.
  if (app_.mainForm.IsSelectionActive()) return false;
  AddMRUF(g.ImportFileName);
  app_.pixelForm.ColourPickerActive = false;
  return ImportImageMDIChild(g.ImportFileName);
}

void PictureImport::AddMRUF(const std::string& path) {
  std::vector<std::string>& list = app_.globals.RecentFiles;
  for (const char* own : {"/resized_image", "/original_image", "temp1298621.bmp"})
    if (path.find(own) != std::string::npos) return;
  if (path.empty()) return;
  // The picture "Reload Last Work Canvas Bitmap" offers again.
  app_.globals.LastArtworkPath = path;
  if (std::find(list.begin(), list.end(), path) != list.end()) return;
  list.insert(list.begin(), path);
  if (list.size() > kRecentFilesKept) list.resize(kRecentFilesKept);
}

bool PictureImport::SVGPaint(const std::string& fileName, Bitmap& target, std::string& error) {
  const Globals& g = app_.globals;
  LoadOptions options;
  options.svgWidth = g.ImportWidth;
  options.svgHeight = g.ImportHeight;
  // A display that follows the picture gives a drawing no size: it renders at its own.
  if ((options.svgWidth == 0 || options.svgHeight == 0) && !g.CanvasTakesPictureSize) {
    options.svgWidth = app_.pixelForm.MatrixWidth();
    options.svgHeight = app_.pixelForm.MatrixHeight();
  }
  Bitmap drawing;
  if (!app_.codecs->Load(fileName, options, drawing, error)) return false;
  double angle = 0;
  if (g.ImportAngle != "0" && ParseAngle(g.ImportAngle, angle)) {
    drawing = RotateBitmap(drawing, angle, kDefaultBackground, false);
    PictureRect used;
    if (CalcCloseCrop(drawing, kWhite, g.ImportAngle, used)) drawing = CropBitmap(drawing, used);
  }
  target = std::move(drawing);
  return true;
}

bool PictureImport::ImportImageMDIChild(const std::string& fileName) {
  Globals& g = app_.globals;
  if (fileName.empty()) {
    app_.mainForm.MessageDlgA(" Please select file to import in the File List ! ", "Graphic loading Error", 0, 4, 1);
    return false;
  }
  const std::string ext = UpperExtension(fileName);
  const std::string name = std::filesystem::path(fileName).filename().string();
  if (!IsGraphicKind(ext)) {
    app_.mainForm.MessageDlgA(name + " is is not a valid graphic file ! ", "Loading a Graphic Error", 0, 4, 1);
    return false;
  }
  if (app_.codecs == nullptr) {
    app_.mainForm.MessageDlgA(name + ": this program has no picture decoders, the file cannot be imported.",
                              "Loading a Graphic Error", 0, 4, 1);
    return false;
  }
  g.ImportFileName = fileName;
  app_.mainForm.StatusBarAndLog("Import graphic file : " + fileName);

  const auto decode = [&](Bitmap& out) {
    std::string error;
    const bool ok = ext == ".SVG" ? SVGPaint(fileName, out, error) : app_.codecs->Load(fileName, out, error);
    // Nothing of a picture that failed is kept: the import ends and the canvas stays as it was.
    if (!ok) app_.mainForm.MessageDlgA(error, "Loading a Graphic Error", 0, 4, 1);
    return ok;
  };
  Bitmap picture;
  if (!decode(picture)) return false;
  if (g.NoMatrixMode) {
    // Picture mode: the canvas takes the picture's size, then the file is read again (a drawing
    // renders at the canvas size, which has just changed).
    app_.mainForm.FitCanvasToPicture(picture.Width(), picture.Height());
    if (!decode(picture)) return false;
  }
  if (g.UseFileNameAsArtworkName) app_.session.SourceFileName = name;
  return ImportBitmap(std::move(picture));
}

bool PictureImport::ImportBitmap(Bitmap picture) {
  Globals& g = app_.globals;
  app_.pixelForm.StoreOriginalImage(picture);
  g.ImportedBitmap = std::move(picture);
  app_.exploForm2.DitherBitmap(g.ImportedBitmap);
  RotateImport();
  if (g.CanvasTakesPictureSize && !g.ImportedBitmap.Empty()) {
    // The display follows the picture, but no display is larger than 1024 x 768: a larger picture
    // that may be resized gets the largest display of its proportions, and one that may not is
    // refused by the fitting below, as for any display too small for it.
    const int w = g.ImportedBitmap.Width(), h = g.ImportedBitmap.Height();
    g.MatrixWidth = std::min(w, kMaxCustomWidth);
    g.MatrixHeight = std::min(h, kMaxCustomHeight);
    if ((w > kMaxCustomWidth || h > kMaxCustomHeight) && g.AlwaysResizeToFit) {
      const double scale =
          std::min(static_cast<double>(kMaxCustomWidth) / w, static_cast<double>(kMaxCustomHeight) / h);
      g.MatrixWidth = std::clamp(static_cast<int>(w * scale), 1, kMaxCustomWidth);
      g.MatrixHeight = std::clamp(static_cast<int>(h * scale), 1, kMaxCustomHeight);
    }
    app_.mainForm.CanvasRedraw();
  }
  return AssignInPutBitmap();
}

void PictureImport::RotateImport() {
  Globals& g = app_.globals;
  const std::string ext = UpperExtension(g.ImportFileName);
  if (ext == ".GIF" || ext == ".SVG" || g.ImportAngle == "0") return;
  Bitmap& picture = g.ImportedBitmap;
  if (picture.Width() > kRotationLimit || picture.Height() > kRotationLimit) {
    app_.mainForm.MessageDlgA(" Picture too large for rotation \r ", "Warning", 0, 4, 0);
    return;
  }
  double angle = 0;
  // An angle that is no number leaves the picture as it is, like "0".
  if (!ParseAngle(g.ImportAngle, angle)) return;
  picture = RotateOnSquare(picture, angle);
  app_.mainForm.StatusBarAndLog("Picture rotated by " + g.ImportAngle);
}

bool PictureImport::AssignInPutBitmap() {
  Globals& g = app_.globals;
  ConversionSession& s = app_.session;
  TPixelForm& canvas = app_.pixelForm;
  const Bitmap& picture = g.ImportedBitmap;
  g.ImageAdjustmentsEnabled = true;

  const bool inSelection = g.AllowImportInsideSelection && s.SelectionActive;
  int targetWidth = canvas.MatrixWidth(), targetHeight = canvas.MatrixHeight();
  int left = g.ImportKeepsOffsets ? g.ImportOffsetX : 0;
  int top = g.ImportKeepsOffsets ? g.ImportOffsetY : 0;
  if (inSelection) {
    targetWidth = s.ExportAreaX2 - s.ExportAreaX1;
    targetHeight = s.ExportAreaY2 - s.ExportAreaY1;
    // A picture fitted into the chosen area lands on it.
    if (!g.ImportKeepsOffsets) left = s.ExportAreaX1, top = s.ExportAreaY1;
  }

  Bitmap resized;
  bool wasResized = false;  // a resize to a width of 0 floats an empty picture
  if (picture.Width() > targetWidth || picture.Height() > targetHeight) {
    g.ImportTargetSizeText = (inSelection ? " Selection Frame Size = H : " : " Work Canvas Size = H : ") +
                             Num(targetHeight) + " W : " + Num(targetWidth);
    int answer = 6;  // yes
    if (!g.AlwaysResizeToFit && !g.DirectLoad && !g.ConsoleMode) {
      const std::string question = std::string(" Image size larger than Work Canvas   ") + "\r" +
                                   g.ImportTargetSizeText + "\r" + " Image Size = H : " + Num(picture.Height()) +
                                   " W : " + Num(picture.Width()) + "\r" + " Resize graphic to fit Work Canvas ? ";
      answer = app_.mainForm.MessageDlgA(question, "Image size larger than Work Canvas Dialog", 0, 1 | 2 | 8, 3);
    }
    if (answer == 6) {
      const PictureSize size =
          inSelection ? PropotionalResizeToSelectionSize(picture.Width(), picture.Height(), targetWidth, targetHeight,
                                                         canvas.MatrixWidth())
                      : PropotionalResizeSize(picture.Width(), picture.Height(), targetWidth, targetHeight);
      resized = StretchBitmap(picture, size.width, size.height);
      wasResized = true;
      app_.mainForm.StatusBarAndLog("Picture resized to W : " + Num(size.width) + " H : " + Num(size.height));
    } else if (answer == 7) {
      // Kept as it is: the selection is larger than the canvas and the user drags it to choose
      // the part that shows. Adjustments would work on the whole hidden picture, so they rest.
      g.ImageAdjustmentsEnabled = false;
    } else {
      canvas.ThresholdPending = false;
      app_.mainForm.StatusBarAndLog("Import cancelled");
      return false;
    }
  }
  if (wasResized)
    canvas.FloatSelection(std::move(resized), left, top);
  else
    canvas.FloatSelection(picture, left, top);
  canvas.CopyBitmapToCanvas();
  canvas.CheckColorsSelection(true);
  app_.mainForm.StatusBarAndLog("Picture imported : W : " + Num(canvas.SelectionBitmap.Width()) +
                                " H : " + Num(canvas.SelectionBitmap.Height()));
  return true;
}

bool PictureImport::LoadGraphicDirectly(const std::string& fileName) {
  Globals& g = app_.globals;
  g.DirectLoad = true;
  const bool ok = OpenPic(fileName);
  g.DirectLoad = false;
  if (!ok) return false;
  app_.pixelForm.PasteSelection();
  app_.pixelForm.CopyCanvasToSaveTable();
  g.ArtworkSaved = false;
  return true;
}

bool PictureImport::ConvertCanvastoBlackandWhite1Click() {
  Globals& g = app_.globals;
  TPixelForm& canvas = app_.pixelForm;
  if (canvas.FloatingSelection) {
    app_.mainForm.MessageDlgA(
        " A selection is still active in Work Canvas  \r Please first Paste selection layer or Cancel", "Warning", 0, 4,
        0);
    return false;
  }
  if (app_.codecs == nullptr) {
    app_.mainForm.MessageDlgA("This program has no picture codecs: the canvas cannot be converted.", "Error", 0, 4, 1);
    return false;
  }
  const std::string documents =
      g.MyDocuments.empty() ? UserDirectory(HomeFolder(), "XDG_DOCUMENTS_DIR", "Documents") : g.MyDocuments;
  const std::string temporary = documents + "/temp1298621.bmp";
  std::error_code ec;
  std::filesystem::create_directories(documents, ec);
  std::string error;
  if (!app_.codecs->SaveBmp(canvas.WorkBitmap, temporary, error)) {
    app_.mainForm.MessageDlgA(error, "Error", 0, 4, 1);
    return false;
  }
  // To monochrome without the question that would clear the canvas: its picture is what is
  // about to be converted.
  const bool applying = g.ApplyingSettings;
  g.ApplyingSettings = true;
  const bool refused =
      app_.session.ModeNumber != 1 && !app_.mainForm.SetColourMode(1, true) && app_.session.ModeNumber != 1;
  g.ApplyingSettings = applying;
  bool ok = false;
  if (!refused) ok = OpenPic(temporary);
  std::filesystem::remove(temporary, ec);
  if (!ok) return false;
  // The threshold tool comes up on the floating picture.
  canvas.CheckColorsSelection(true);
  app_.mainForm.StatusBarAndLog("Convert Canvas to Black and White");
  return true;
}

}  // namespace rm
