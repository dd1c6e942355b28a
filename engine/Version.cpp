// Anchors the bundle library; the subsystem libraries carry the code.
namespace rm {
int LibraryAnchor() { return 0; }
}  // namespace rm
