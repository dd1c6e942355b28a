// Writes the seed pictures of tests/fuzz-corpus/picture: a few tiny valid files of every kind
// the import reads. Most have sides that are multiples of 8, so that the command line tests can
// convert them as they are. Run once by a maintainer; the files are committed.
//   g++ -std=c++20 scripts/make-fuzz-seeds.cpp -o /tmp/make-fuzz-seeds
//     $(pkg-config --cflags --libs libjpeg libgif libtiff-4 libpng)
//   /tmp/make-fuzz-seeds tests/fuzz-corpus/picture
#include <gif_lib.h>
#include <png.h>
#include <tiffio.h>
#include <unistd.h>

#include <cstdio>
#include <jpeglib.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

using Bytes = std::vector<std::uint8_t>;

// Files are written into the current folder, which main() makes the one given.
void Save(const std::string& name, const Bytes& bytes) {
  std::ofstream(name, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

int Sample(int x, int y, int c) { return (x * 53 + y * 31 + c * 97) & 0xFF; }

Bytes Jpeg(int width, int height, J_COLOR_SPACE space, int components, bool progressive) {
  jpeg_compress_struct info{};
  jpeg_error_mgr errors{};
  info.err = jpeg_std_error(&errors);
  jpeg_create_compress(&info);
  unsigned char* buffer = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&info, &buffer, &size);
  info.image_width = width;
  info.image_height = height;
  info.input_components = components;
  info.in_color_space = space;
  jpeg_set_defaults(&info);
  jpeg_set_quality(&info, 50, TRUE);
  if (progressive) jpeg_simple_progression(&info);
  jpeg_start_compress(&info, TRUE);
  std::vector<JSAMPLE> row(width * components);
  for (int y = 0; y < height; ++y) {
    for (int i = 0; i < width * components; ++i)
      row[i] = static_cast<JSAMPLE>(Sample(i / components, y, i % components));
    JSAMPROW rows[] = {row.data()};
    jpeg_write_scanlines(&info, rows, 1);
  }
  jpeg_finish_compress(&info);
  Bytes bytes(buffer, buffer + size);
  jpeg_destroy_compress(&info);
  std::free(buffer);
  return bytes;
}

int GifWrite(GifFileType* gif, const GifByteType* data, int length) {
  auto* out = static_cast<Bytes*>(gif->UserData);
  out->insert(out->end(), data, data + length);
  return length;
}

Bytes Gif(int width, int height, bool interlaced, int transparent) {
  Bytes bytes;
  int error = 0;
  GifFileType* gif = EGifOpen(&bytes, GifWrite, &error);
  const GifColorType colours[4] = {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {20, 20, 20}};
  ColorMapObject* map = GifMakeMapObject(4, colours);
  EGifSetGifVersion(gif, true);
  EGifPutScreenDesc(gif, width + 1, height + 1, 2, 0, map);
  if (transparent >= 0) {
    GraphicsControlBlock control{};
    control.TransparentColor = transparent;
    GifByteType extension[4];
    EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, static_cast<int>(EGifGCBToExtension(&control, extension)), extension);
  }
  EGifPutImageDesc(gif, 1, 1, width, height, interlaced, nullptr);
  std::vector<GifPixelType> line(width);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) line[x] = static_cast<GifPixelType>((x + y) % 4);
    EGifPutLine(gif, line.data(), width);
  }
  EGifCloseFile(gif, &error);
  GifFreeMapObject(map);
  return bytes;
}

Bytes ReadBack(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  Bytes bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  std::remove(path.c_str());
  return bytes;
}

Bytes Tiff(int width, int height, int samples, int compression) {
  const std::string path = ".tmp.tif";
  TIFF* tiff = TIFFOpen(path.c_str(), "w");
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, width);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, height);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, samples);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, samples == 1 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, compression);
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 2);
  if (samples == 4) {
    const std::uint16_t extra[] = {EXTRASAMPLE_UNASSALPHA};
    TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, extra);
  }
  std::vector<std::uint8_t> row(width * samples);
  for (int y = 0; y < height; ++y) {
    for (int i = 0; i < width * samples; ++i) row[i] = static_cast<std::uint8_t>(Sample(i / samples, y, i % samples));
    TIFFWriteScanline(tiff, row.data(), y, 0);
  }
  TIFFClose(tiff);
  return ReadBack(path);
}

Bytes Png(int width, int height) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = width;
  image.height = height;
  image.format = PNG_FORMAT_RGBA;
  std::vector<std::uint8_t> pixels(width * height * 4);
  for (std::size_t i = 0; i < pixels.size(); ++i)
    pixels[i] = static_cast<std::uint8_t>(Sample(int(i / 4) % width, int(i / 4) / width, int(i % 4)));
  png_alloc_size_t size = 0;
  png_image_write_to_memory(&image, nullptr, &size, 0, pixels.data(), 0, nullptr);
  Bytes bytes(size);
  png_image_write_to_memory(&image, bytes.data(), &size, 0, pixels.data(), 0, nullptr);
  bytes.resize(size);
  return bytes;
}

void Put16(Bytes& b, unsigned v) { b.insert(b.end(), {std::uint8_t(v), std::uint8_t(v >> 8)}); }
void Put32(Bytes& b, unsigned v) { Put16(b, v & 0xFFFF), Put16(b, v >> 16); }

// An icon's DIB: height doubled, colour rows, then the AND mask.
Bytes IconDib(int width, int height, int bitCount) {
  Bytes dib;
  Put32(dib, 40), Put32(dib, width), Put32(dib, 2 * height), Put16(dib, 1), Put16(dib, bitCount);
  for (int i = 0; i < 6; ++i) Put32(dib, 0);
  if (bitCount == 4)
    for (int i = 0; i < 16; ++i) Put32(dib, Sample(i, 0, 0) * 0x010101u);
  for (int y = 0; y < height; ++y) {
    Bytes row;
    for (int x = 0; x < width; ++x) {
      if (bitCount == 4) {
        if (x % 2 == 0)
          row.push_back(static_cast<std::uint8_t>((x * 3 + y) % 16 << 4));
        else
          row.back() |= (x + y) % 16;
        continue;
      }
      for (int c = 0; c < bitCount / 8; ++c) row.push_back(static_cast<std::uint8_t>(Sample(x, y, c)));
    }
    row.resize((row.size() + 3) / 4 * 4);
    dib.insert(dib.end(), row.begin(), row.end());
  }
  for (int y = 0; y < height; ++y)
    for (int i = 0; i < (width + 31) / 32 * 4; ++i) dib.push_back(i == 0 ? 0xA0 : 0);
  return dib;
}

Bytes Ico(const std::vector<Bytes>& pictures) {
  Bytes ico;
  Put16(ico, 0), Put16(ico, 1), Put16(ico, static_cast<unsigned>(pictures.size()));
  std::size_t offset = 6 + 16 * pictures.size();
  for (const Bytes& p : pictures) {
    Put32(ico, 0), Put16(ico, 1), Put16(ico, 0), Put32(ico, p.size()), Put32(ico, offset);
    offset += p.size();
  }
  for (const Bytes& p : pictures) ico.insert(ico.end(), p.begin(), p.end());
  return ico;
}

Bytes Text(const std::string& text) { return Bytes(text.begin(), text.end()); }

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: make-fuzz-seeds <folder>\n");
    return 2;
  }
  if (chdir(argv[1]) != 0) {
    std::perror(argv[1]);
    return 1;
  }
  Save("rgb.jpg", Jpeg(16, 8, JCS_RGB, 3, false));
  Save("progressive.jpg", Jpeg(9, 7, JCS_RGB, 3, true));
  Save("grey.jpg", Jpeg(8, 8, JCS_GRAYSCALE, 1, false));
  Save("cmyk.jpg", Jpeg(8, 8, JCS_CMYK, 4, false));
  Save("plain.gif", Gif(5, 4, false, -1));
  Save("interlaced.gif", Gif(15, 7, true, 2));
  Save("lzw.tif", Tiff(8, 8, 3, COMPRESSION_LZW));
  Save("alpha.tif", Tiff(3, 3, 4, COMPRESSION_NONE));
  Save("grey.tif", Tiff(4, 2, 1, COMPRESSION_PACKBITS));
  Save("alpha.png", Png(4, 3));
  Save("mixed.ico", Ico({IconDib(8, 8, 24), IconDib(3, 3, 4), Png(2, 2)}));
  Save("alpha.ico", Ico({IconDib(3, 2, 32)}));
  Save("viewbox.svg",
       Text(R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 16 8">)"
            R"(<rect width="8" height="8" fill="red"/><circle cx="12" cy="4" r="4" fill="#00f"/></svg>)"));
  Save("sized.svg",
       Text("<?xml version=\"1.0\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"6px\" height=\"3mm\">"
            "<path d=\"M0 0 L6 3 Z\" stroke=\"green\"/><text x=\"0\" y=\"3\">A</text></svg>"));
  return 0;
}
