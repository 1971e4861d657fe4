// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Makes the pictures that the benchmark does not fetch.
//
// usage: make_pictures small OUTFOLDER COUNT PHOTO...   pieces of 300 x 200 cut out of photos
//        make_pictures bmp FILE WIDTH HEIGHT            24 bit, row by row
//        make_pictures jpeg FILE WIDTH HEIGHT           4:2:0, quality 90, row by row
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include <jpeglib.h>

namespace {

constexpr std::size_t kSmallWidth = 300;
constexpr std::size_t kSmallHeight = 200;
constexpr int kSmallQuality = 85;

// A whole picture in memory, 8 bit RGB.
struct Pixels {
  std::size_t width = 0;
  std::size_t height = 0;
  std::vector<unsigned char> rgb;
};

Pixels ReadJpeg(const char* path) {
  Pixels pixels;
  std::FILE* in = std::fopen(path, "rb");
  if (!in) std::exit(2);
  jpeg_error_mgr errors;
  jpeg_decompress_struct decoder{};
  decoder.err = jpeg_std_error(&errors);
  jpeg_create_decompress(&decoder);
  jpeg_stdio_src(&decoder, in);
  jpeg_read_header(&decoder, TRUE);
  decoder.out_color_space = JCS_RGB;
  jpeg_start_decompress(&decoder);
  pixels.width = decoder.output_width;
  pixels.height = decoder.output_height;
  pixels.rgb.resize(pixels.width * pixels.height * 3);
  while (decoder.output_scanline < decoder.output_height) {
    JSAMPROW row = pixels.rgb.data() + decoder.output_scanline * pixels.width * 3;
    jpeg_read_scanlines(&decoder, &row, 1);
  }
  jpeg_finish_decompress(&decoder);
  jpeg_destroy_decompress(&decoder);
  std::fclose(in);
  return pixels;
}

// Writes a JPEG whose rows are returned by next, one after the other.
template <class Next>
bool WriteJpeg(const std::string& path, std::size_t width, std::size_t height, int quality, Next next) {
  std::FILE* out = std::fopen(path.c_str(), "wb");
  if (!out) return false;
  jpeg_error_mgr errors;
  jpeg_compress_struct encoder{};
  encoder.err = jpeg_std_error(&errors);
  jpeg_create_compress(&encoder);
  jpeg_stdio_dest(&encoder, out);
  encoder.image_width = static_cast<JDIMENSION>(width);
  encoder.image_height = static_cast<JDIMENSION>(height);
  encoder.input_components = 3;
  encoder.in_color_space = JCS_RGB;
  jpeg_set_defaults(&encoder);
  jpeg_set_quality(&encoder, quality, TRUE);
  jpeg_start_compress(&encoder, TRUE);
  for (std::size_t y = 0; y < height; ++y) {
    JSAMPROW row = next();
    jpeg_write_scanlines(&encoder, &row, 1);
  }
  jpeg_finish_compress(&encoder);
  jpeg_destroy_compress(&encoder);
  return std::fclose(out) == 0;
}

// Piece after piece of every photo in turn, so that neighbours in the list are unlike.
int MakeSmall(const std::string& folder, std::size_t count, char** photos, std::size_t photoCount) {
  for (std::size_t photo = 0; photo < photoCount; ++photo) {
    Pixels pixels = ReadJpeg(photos[photo]);
    for (std::size_t i = photo; i < count; i += photoCount) {
      char name[32];
      std::snprintf(name, sizeof name, "/s%04zu.jpg", i % 10000);
      const std::size_t piece = i / photoCount;
      const std::size_t left = piece * 97 % (pixels.width - kSmallWidth);
      std::size_t y = piece * 61 % (pixels.height - kSmallHeight);
      const auto next = [&] { return pixels.rgb.data() + (y++ * pixels.width + left) * 3; };
      if (!WriteJpeg(folder + name, kSmallWidth, kSmallHeight, kSmallQuality, next)) return 1;
    }
  }
  return 0;
}

// A gradient with noise, which compresses like a photograph: neither to almost nothing nor hardly at all.
class Rows {
 public:
  explicit Rows(int width) : row_(static_cast<std::size_t>(width) * 3) {}

  unsigned char* Next() {
    for (std::size_t i = 0; i < row_.size(); ++i) {
      state_ = state_ * 1664525 + 1013904223;
      row_[i] = static_cast<unsigned char>((i / 64 + y_ / 32 + (state_ >> 28)) & 0xFF);
    }
    ++y_;
    return row_.data();
  }
  std::size_t Size() const { return row_.size(); }

 private:
  std::vector<unsigned char> row_;
  std::uint32_t state_ = 1;
  std::size_t y_ = 0;
};

int MakeBmp(const std::string& path, std::uint32_t width, std::uint32_t height) {
  std::ofstream out(path, std::ios::binary);
  const auto number = [&out](std::uint32_t value, int size) {
    for (int i = 0; i < size; ++i) out.put(static_cast<char>(value >> (8 * i) & 0xFF));
  };
  const std::uint32_t stride = (width * 3 + 3) / 4 * 4;
  out.write("BM", 2);
  for (const std::uint32_t value : {54 + stride * height, 0U, 54U, 40U, width, height}) number(value, 4);
  number(1, 2);
  number(24, 2);
  for (const std::uint32_t value : {0U, stride * height, 11811U, 11811U, 0U, 0U}) number(value, 4);
  Rows rows(static_cast<int>(width));
  const std::string padding(stride - width * 3, '\0');
  for (std::uint32_t y = 0; y < height; ++y) {
    out.write(reinterpret_cast<const char*>(rows.Next()), static_cast<std::streamsize>(rows.Size()));
    out.write(padding.data(), static_cast<std::streamsize>(padding.size()));
  }
  return out.flush() ? 0 : 1;
}

int MakeJpeg(const std::string& path, int width, int height) {
  Rows rows(width);
  const bool done = WriteJpeg(path, static_cast<std::size_t>(width), static_cast<std::size_t>(height), 90,
                              [&rows] { return rows.Next(); });
  return done ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string what = argc > 1 ? argv[1] : "";
  if (what == "small" && argc > 4) {
    return MakeSmall(argv[2], static_cast<std::size_t>(std::atoi(argv[3])), argv + 4,
                     static_cast<std::size_t>(argc - 4));
  }
  if (what == "bmp" && argc == 5) {
    return MakeBmp(argv[2], static_cast<std::uint32_t>(std::atoi(argv[3])),
                   static_cast<std::uint32_t>(std::atoi(argv[4])));
  }
  if (what == "jpeg" && argc == 5) return MakeJpeg(argv[2], std::atoi(argv[3]), std::atoi(argv[4]));
  std::fprintf(stderr, "usage: make_pictures small|bmp|jpeg ...\n");
  return 2;
}
