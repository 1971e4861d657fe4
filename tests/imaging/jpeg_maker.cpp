// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/jpeg_maker.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

#include <jpeglib.h>

namespace quillon::imaging::testing {
namespace {

[[noreturn]] void Throw(j_common_ptr info) {
  char text[JMSG_LENGTH_MAX];
  info->err->format_message(info, text);
  throw std::runtime_error(text);
}

J_COLOR_SPACE SpaceOf(Colours colours) {
  switch (colours) {
    case Colours::Grey:
      return JCS_GRAYSCALE;
    case Colours::YCbCr:
      return JCS_YCbCr;
    case Colours::Rgb:
      return JCS_RGB;
    case Colours::Cmyk:
    case Colours::AdobeCmyk:
      return JCS_CMYK;
    case Colours::Ycck:
      return JCS_YCCK;
  }
  return JCS_UNKNOWN;
}

// One scan a component, as some scanners write.
std::vector<jpeg_scan_info> ScanPerComponent(int components) {
  std::vector<jpeg_scan_info> script;
  for (int i = 0; i < components; ++i) script.push_back({1, {i}, 0, 63, 0, 0});
  return script;
}

// All but the last bit of each coefficient, then that bit; first of the mean values of all components together.
std::vector<jpeg_scan_info> ScanPerCoefficient(int components) {
  jpeg_scan_info means{components, {0, 1, 2, 3}, 0, 0, 0, 1};
  std::vector<jpeg_scan_info> script = {means};
  means.Ah = 1;
  means.Al = 0;
  script.push_back(means);
  for (int i = 0; i < components; ++i) {
    for (int k = 1; k < DCTSIZE2; ++k) {
      script.push_back({1, {i}, k, k, 0, 1});
      script.push_back({1, {i}, k, k, 1, 0});
    }
  }
  return script;
}

// script has to live as long as encoder.
void SetScans(jpeg_compress_struct& encoder, Scans scans, std::vector<jpeg_scan_info>& script) {
  if (scans == Scans::PerComponent) script = ScanPerComponent(encoder.num_components);
  if (scans == Scans::Hundreds) script = ScanPerCoefficient(encoder.num_components);
  if (script.empty()) return;
  encoder.scan_info = script.data();
  encoder.num_scans = static_cast<int>(script.size());
}

void SetUp(jpeg_compress_struct& encoder, const Pixels& pixels, const MakeOptions& options) {
  encoder.image_width = static_cast<JDIMENSION>(pixels.size.width);
  encoder.image_height = static_cast<JDIMENSION>(pixels.size.height);
  encoder.input_components = pixels.components;
  encoder.in_color_space = SpaceOf(options.colours);
  jpeg_set_defaults(&encoder);
  jpeg_set_colorspace(&encoder, SpaceOf(options.colours));
  if (options.colours == Colours::Cmyk) encoder.write_Adobe_marker = FALSE;
  jpeg_set_quality(&encoder, options.quality, TRUE);
  const bool chroma = options.colours == Colours::YCbCr || options.colours == Colours::Ycck;
  for (int i = 0; i < encoder.num_components; ++i) {
    const bool full = chroma && (i == 0 || i == 3);
    encoder.comp_info[i].h_samp_factor = full ? options.luma.first : 1;
    encoder.comp_info[i].v_samp_factor = full ? options.luma.second : 1;
  }
  if (!options.jfif) encoder.write_JFIF_header = FALSE;
  encoder.density_unit = static_cast<UINT8>(options.densityUnit);
  encoder.X_density = encoder.Y_density = static_cast<UINT16>(options.density);
  encoder.arith_code = options.arithmetic ? TRUE : FALSE;
  encoder.restart_in_rows = options.restartRows;
  if (options.scans == Scans::Progressive) jpeg_simple_progression(&encoder);
}

}  // namespace

int ComponentsOf(Colours colours) {
  switch (colours) {
    case Colours::Grey:
      return 1;
    case Colours::YCbCr:
    case Colours::Rgb:
      return 3;
    default:
      return 4;
  }
}

Pixels TestPicture(base::Size size, Colours colours) {
  Pixels out{size, ComponentsOf(colours), {}};
  for (int y = 0; y < size.height; ++y) {
    for (int x = 0; x < size.width; ++x) {
      for (int c = 0; c < out.components; ++c) {
        const double wave = std::sin(x * (0.31 + 0.11 * c)) * std::cos(y * (0.23 + 0.07 * c));
        const int edge = x > size.width / 2 && y > size.height / 3 ? 40 : 0;
        out.samples.push_back(static_cast<unsigned char>(100 + std::lround(90 * wave) + edge));
      }
    }
  }
  return out;
}

std::string MakeJpeg(const Pixels& pixels, const MakeOptions& options) {
  jpeg_error_mgr errors;
  jpeg_compress_struct encoder{};
  encoder.err = jpeg_std_error(&errors);
  errors.error_exit = Throw;
  jpeg_create_compress(&encoder);
  unsigned char* data = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&encoder, &data, &size);
  SetUp(encoder, pixels, options);
  std::vector<jpeg_scan_info> script;
  SetScans(encoder, options.scans, script);
  jpeg_start_compress(&encoder, TRUE);
  for (const auto& [marker, payload] : options.segments) {
    jpeg_write_marker(&encoder, marker, reinterpret_cast<const JOCTET*>(payload.data()),
                      static_cast<unsigned>(payload.size()));
  }
  std::vector<unsigned char> samples = pixels.samples;
  const std::size_t stride = static_cast<std::size_t>(pixels.size.width) * static_cast<std::size_t>(pixels.components);
  for (std::size_t y = 0; y < static_cast<std::size_t>(pixels.size.height); ++y) {
    JSAMPROW row = samples.data() + y * stride;
    jpeg_write_scanlines(&encoder, &row, 1);
  }
  jpeg_finish_compress(&encoder);
  jpeg_destroy_compress(&encoder);
  std::string bytes(reinterpret_cast<const char*>(data), size);
  std::free(data);
  return bytes;
}

ReadResult ReadJpeg(const std::string& bytes) {
  jpeg_error_mgr errors;
  jpeg_decompress_struct decoder{};
  decoder.err = jpeg_std_error(&errors);
  errors.error_exit = Throw;
  errors.output_message = [](j_common_ptr) {};
  jpeg_create_decompress(&decoder);
  jpeg_mem_src(&decoder, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
  jpeg_save_markers(&decoder, JPEG_APP0 + 1, 0xFFFF);
  jpeg_save_markers(&decoder, JPEG_APP0 + 2, 0xFFFF);
  jpeg_read_header(&decoder, TRUE);
  decoder.out_color_space = decoder.jpeg_color_space;
  ReadResult out;
  out.colourSpace = decoder.jpeg_color_space;
  for (int i = 0; i < decoder.num_components; ++i) {
    out.sampling.emplace_back(decoder.comp_info[i].h_samp_factor, decoder.comp_info[i].v_samp_factor);
  }
  out.jfif = decoder.saw_JFIF_marker == TRUE;
  out.adobe = decoder.saw_Adobe_marker == TRUE;
  out.densityUnit = decoder.density_unit;
  out.densityX = decoder.X_density;
  out.densityY = decoder.Y_density;
  for (jpeg_saved_marker_ptr saved = decoder.marker_list; saved; saved = saved->next) {
    out.segments.emplace_back(saved->marker,
                              std::string(reinterpret_cast<const char*>(saved->data), saved->data_length));
  }
  jpeg_start_decompress(&decoder);
  out.pixels.size = {static_cast<int>(decoder.output_width), static_cast<int>(decoder.output_height)};
  out.pixels.components = decoder.output_components;
  const std::size_t stride = decoder.output_width * static_cast<std::size_t>(decoder.output_components);
  out.pixels.samples.resize(stride * decoder.output_height);
  while (decoder.output_scanline < decoder.output_height) {
    JSAMPROW row = out.pixels.samples.data() + decoder.output_scanline * stride;
    jpeg_read_scanlines(&decoder, &row, 1);
  }
  jpeg_finish_decompress(&decoder);
  out.warnings = static_cast<int>(errors.num_warnings);
  jpeg_destroy_decompress(&decoder);
  return out;
}

std::vector<Plane> ReadPlanes(const std::string& bytes) {
  jpeg_error_mgr errors;
  jpeg_decompress_struct decoder{};
  decoder.err = jpeg_std_error(&errors);
  errors.error_exit = Throw;
  jpeg_create_decompress(&decoder);
  jpeg_mem_src(&decoder, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
  jpeg_read_header(&decoder, TRUE);
  decoder.raw_data_out = TRUE;
  jpeg_start_decompress(&decoder);
  const std::size_t count = static_cast<std::size_t>(decoder.num_components);
  const int rows = decoder.max_v_samp_factor * DCTSIZE;
  std::vector<Plane> planes(count);
  for (std::size_t c = 0; c < count; ++c) {
    const jpeg_component_info& info = decoder.comp_info[c];
    planes[c].size = {static_cast<int>(info.downsampled_width), static_cast<int>(info.downsampled_height)};
    planes[c].padded = {static_cast<int>(info.width_in_blocks + 4) * DCTSIZE,
                        static_cast<int>(info.height_in_blocks + 4) * DCTSIZE};
    planes[c].samples.resize(static_cast<std::size_t>(planes[c].padded.width * planes[c].padded.height));
  }
  while (decoder.output_scanline < decoder.output_height) {
    std::vector<std::vector<JSAMPROW>> pointers(count);
    std::vector<JSAMPARRAY> image;
    for (std::size_t c = 0; c < count; ++c) {
      const int factor = decoder.comp_info[c].v_samp_factor;
      const int first = static_cast<int>(decoder.output_scanline) / decoder.max_v_samp_factor * factor;
      for (int k = 0; k < factor * DCTSIZE; ++k) {
        pointers[c].push_back(planes[c].samples.data() + (first + k) * planes[c].padded.width);
      }
      image.push_back(pointers[c].data());
    }
    jpeg_read_raw_data(&decoder, image.data(), static_cast<JDIMENSION>(rows));
  }
  jpeg_finish_decompress(&decoder);
  jpeg_destroy_decompress(&decoder);
  return planes;
}

std::string MakeJpegOfPlanes(base::Size size, const std::vector<Plane>& planes, const MakeOptions& options) {
  jpeg_error_mgr errors;
  jpeg_compress_struct encoder{};
  encoder.err = jpeg_std_error(&errors);
  errors.error_exit = Throw;
  jpeg_create_compress(&encoder);
  unsigned char* data = nullptr;
  unsigned long length = 0;
  jpeg_mem_dest(&encoder, &data, &length);
  SetUp(encoder, {size, ComponentsOf(options.colours), {}}, options);
  encoder.raw_data_in = TRUE;
  jpeg_start_compress(&encoder, TRUE);
  const int rows = encoder.max_v_samp_factor * DCTSIZE;
  std::vector<Plane> copies = planes;
  while (encoder.next_scanline < encoder.image_height) {
    std::vector<std::vector<JSAMPROW>> pointers(copies.size());
    std::vector<JSAMPARRAY> image;
    for (std::size_t c = 0; c < copies.size(); ++c) {
      const int factor = encoder.comp_info[c].v_samp_factor;
      const int first = static_cast<int>(encoder.next_scanline) / encoder.max_v_samp_factor * factor;
      for (int k = 0; k < factor * DCTSIZE; ++k) {
        const int row = std::min(first + k, copies[c].padded.height - 1);
        pointers[c].push_back(copies[c].samples.data() + row * copies[c].padded.width);
      }
      image.push_back(pointers[c].data());
    }
    jpeg_write_raw_data(&encoder, image.data(), static_cast<JDIMENSION>(rows));
  }
  jpeg_finish_compress(&encoder);
  jpeg_destroy_compress(&encoder);
  std::string bytes(reinterpret_cast<const char*>(data), length);
  std::free(data);
  return bytes;
}

Pixels CutPixels(const Pixels& whole, base::Rect rect, const std::vector<int>& white) {
  Pixels out{{rect.width, rect.height}, whole.components, {}};
  for (int y = rect.top; y < rect.top + rect.height; ++y) {
    for (int x = rect.left; x < rect.left + rect.width; ++x) {
      const bool inside = x >= 0 && y >= 0 && x < whole.size.width && y < whole.size.height;
      for (int c = 0; c < whole.components; ++c) {
        out.samples.push_back(
            static_cast<unsigned char>(inside ? whole.At(x, y, c) : white[static_cast<std::size_t>(c)]));
      }
    }
  }
  return out;
}

}  // namespace quillon::imaging::testing
