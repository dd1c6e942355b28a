#pragma once
#include "engine/Bitmap.h"
#include "engine/ConversionSession.h"
#include "engine/UiPort.h"

namespace rm {

// The Work Canvas: one 24 bit bitmap at the display's size, in every colour mode, and the
// floating selection that may lie over it.
class TPixelForm {
 public:
  // The canvas asks the user through `ui` and reads the colour mode and palette of `session`.
  TPixelForm(UiPort& ui, ConversionSession& session) : ui_(ui), session_(session), WorkBitmap(128, 64, kWhite) {}

  int MatrixWidth() const { return WorkBitmap.Width(); }
  int MatrixHeight() const { return WorkBitmap.Height(); }

  // Takes a picture as the canvas; the canvas takes the picture's size.
  void SetCanvas(const Bitmap& picture) { WorkBitmap = picture; }
  void ClearCanvas() { WorkBitmap.Fill(BackgroundColour); }

  // True when the canvas holds more than one colour, or one that is not the background.
  bool HasArtwork() const;
  // True when every pixel is exactly black or white.
  bool IsBlackAndWhite() const;

  // Gives the canvas a new size. What fits of the picture stays at its place from the top left
  // corner; new room takes the background colour. Nothing is scaled: a size change is a change
  // of display, and the user decides what becomes of the picture.
  void FormRedraw(int width, int height);

  // The floating selection: a picture lying over the canvas at SelectionLeft, SelectionTop until
  // it is pasted into WorkBitmap or dropped. Parts beyond the canvas edges are clipped at paste.
  void FloatSelection(const Bitmap& picture, int left, int top);
  void PasteSelection();
  void DiscardSelection();

  // ---- Canvas model: view, zoom, history and Image Collection ----

  // ---- end of the canvas model ----

 private:
  UiPort& ui_;
  ConversionSession& session_;

 public:
  Bitmap WorkBitmap;
  Colour BackgroundColour = kWhite;
  bool FloatingSelection = false;
  Bitmap SelectionBitmap;
  int SelectionLeft = 0;
  int SelectionTop = 0;
  bool SelectionReducedToBW = true;
  bool ColourPickerActive = false;
  // The floating selection as it was imported or cut, before any threshold or dither: the
  // threshold slider always starts again from it.
  Bitmap SelectionOriginal;

  // ---- Reduction to the mode's colours: threshold, dither, palette ----
  // Decides what the floating selection needs in the current colour mode: in monochrome it
  // raises ThresholdPending when the selection holds other colours than black and white; in the
  // other modes it reduces the selection to the mode's colours.
  void CheckColorsSelection(bool showMessages);
  bool ThresholdPending = false;
  bool DitherDone = false;
  // ---- end of the reduction ----
};

}  // namespace rm
