#pragma once
#include <string>
#include <string_view>

#include "canvas/TPixelForm.h"

namespace rm {

// ---- Canvas model: size rules ----
// The size a colour mode packs by: a width (horizontal scheme) or height (vertical scheme) that
// is not a multiple of it cannot be packed into whole data units. 1 when any size packs.
int PagingMultiple(int modeNumber);
// The panel lines telling the size rule: the scheme's name and the rule, e.g. "Vertical paging
// scheme" and "( Height = multiple of 8 , Width = free )".
struct PagingPanel {
  std::string scheme;
  std::string rule;
};
PagingPanel PagingPanelText(int multiple, bool horizontal);
// The depth and colour tags of a colour mode in the caption; empty for an unknown mode.
std::string_view DepthTag(int modeNumber);
std::string_view ColoursTag(int modeNumber);

// One keystroke in a custom size field. `typed` is the field's new text, `pending` the value it
// held. Text that is no number puts the pending value back; a value above `limit` becomes the
// limit with a beep, and with `message` when the paging multiple holds for this side and the
// typed value is no multiple of it.
struct SizeKeyResult {
  int value = 0;
  std::string fieldText;
  bool beep = false;
  std::string message;  // empty: none; shown with the title "Error"
};
// `multiple` is the paging multiple in force for this side (1 when the side is free).
SizeKeyResult CustomSizeKey(const std::string& typed, int pending, bool isWidth, int multiple);
constexpr int kMaxCustomWidth = 1024;
constexpr int kMaxCustomHeight = 768;
// ---- end of the size rules ----

}  // namespace rm
