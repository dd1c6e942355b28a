// Writes the default palette files into the folder given as the only argument.
//
// One "$00BBGGRR" line per colour (red in the low byte, 8 upper case hex digits), in ascending
// numeric order, which is the order the program sorts them into anyway.
//
// The lattices: 256 colours are 3 bits of red, 3 of green and 2 of blue; 4096 are 4-4-4; 65536
// are 5-6-5 (red 5, green 6, blue 5); 262144 are 6-6-6. A component of k bits is widened to 8 bits
// by bit replication: its bits are repeated from the top until 8 bits are filled, e.g. 5 bits v
// give (v << 3) | (v >> 2), so 0 stays 0 and the largest value becomes 255. The grayscale file
// holds the 256 grays, and the 8 and 16 colour files hold the built-in tables in their own order,
// because those two tables are used in file order.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

namespace {

unsigned Widen(unsigned v, int bits) {
  unsigned out = 0;
  int filled = 0;
  while (filled < 8) {
    int shift = 8 - filled - bits;
    out |= shift >= 0 ? v << shift : v >> -shift;
    filled += bits;
  }
  return out & 0xFFu;
}

std::vector<unsigned> Lattice(int redBits, int greenBits, int blueBits) {
  std::vector<unsigned> colours;
  for (unsigned b = 0; b < (1u << blueBits); ++b)
    for (unsigned g = 0; g < (1u << greenBits); ++g)
      for (unsigned r = 0; r < (1u << redBits); ++r)
        colours.push_back(Widen(b, blueBits) << 16 | Widen(g, greenBits) << 8 | Widen(r, redBits));
  return colours;
}

bool Write(const std::filesystem::path& folder, const std::string& name, const std::vector<unsigned>& colours) {
  std::string text;
  text.reserve(colours.size() * 10);
  char line[16];
  for (unsigned c : colours) {
    std::snprintf(line, sizeof line, "$%08X\n", c);
    text += line;
  }
  // Written beside and renamed, so that a parallel reader never sees half a file.
  std::filesystem::path target = folder / name;
  std::filesystem::path tmp = folder / (name + ".tmp");
  {
    std::ofstream out(tmp, std::ios::binary | std::ios::trunc);
    out << text;
    if (!out.flush()) {
      std::cerr << "gen-palettes: cannot write " << tmp << "\n";
      return false;
    }
  }
  std::error_code ec;
  std::filesystem::rename(tmp, target, ec);
  if (ec) {
    std::cerr << "gen-palettes: cannot rename to " << target << ": " << ec.message() << "\n";
    return false;
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: gen-palettes <output folder>\n";
    return 2;
  }
  const std::filesystem::path folder = argv[1];
  std::error_code ec;
  std::filesystem::create_directories(folder, ec);
  if (ec) {
    std::cerr << "gen-palettes: cannot create " << folder << ": " << ec.message() << "\n";
    return 1;
  }

  const std::vector<unsigned> colours8 = {0xFFFFFF, 0xFFFF00, 0xFF00FF, 0xFF0000,
                                          0x00FFFF, 0x00FF00, 0x0000FF, 0x000000};
  const std::vector<unsigned> colours16 = {0xFFFFFF, 0xFFFF00, 0xFF00FF, 0xFF0000, 0xC0C0C0, 0x808080,
                                           0x808000, 0x800080, 0x800000, 0x00FFFF, 0x00FF00, 0x008080,
                                           0x008000, 0x0000FF, 0x000080, 0x000000};
  std::vector<unsigned> grays;
  for (unsigned i = 0; i < 256; ++i) grays.push_back(i * 0x010101u);

  bool ok = Write(folder, "default_8_Colors_palette.pal", colours8) &&
            Write(folder, "default_16_Colors_palette.pal", colours16) &&
            Write(folder, "default_256_Colors_palette.pal", Lattice(3, 3, 2)) &&
            Write(folder, "default_grayscale_256_Colors_palette.pal", grays) &&
            Write(folder, "default_4096_Colors_palette.pal", Lattice(4, 4, 4)) &&
            Write(folder, "default_65536_Colors_palette.pal", Lattice(5, 6, 5)) &&
            Write(folder, "default_262144_Colors_palette.pal", Lattice(6, 6, 6));
  return ok ? 0 : 1;
}
