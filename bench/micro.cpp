// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Small pieces of the path of one file.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "host/files/files.h"
#include "host/posix/posix_disk.h"
#include "imaging/jpeg/jpeg_cut.h"
#include "imaging/measure/measure.h"
#include "imaging/metadata/exif_block.h"

namespace {

namespace imaging = quillon::imaging;

// Returns the JPEG file that the caller has named, "" if there is none.
std::string PictureFromEnvironment() {
  const char* path = std::getenv("QUILLON_BENCH_PICTURE");
  return path ? path : "";
}

void CutJpeg(benchmark::State& state) {
  const std::string path = PictureFromEnvironment();
  if (path.empty()) {
    state.SkipWithError("QUILLON_BENCH_PICTURE names no JPEG file");
    return;
  }
  for (auto _ : state) {
    std::size_t bytes = 0;
    const imaging::Status status = imaging::CutJpeg(path, {30, 20, 240, 160}, 80, 0, imaging::Exif::Drop, {},
                                                    [&bytes](const void*, std::size_t size) {
                                                      bytes += size;
                                                      return imaging::Status::Ok();
                                                    });
    if (!status) state.SkipWithError(status.Why().c_str());
    benchmark::DoNotOptimize(bytes);
  }
}
BENCHMARK(CutJpeg);

void Measure(benchmark::State& state) {
  const std::string path = PictureFromEnvironment();
  for (auto _ : state) {
    std::shared_ptr<imaging::FileBytes> bytes;
    imaging::HeaderFacts facts;
    if (imaging::FileBytes::Open(path, bytes)) imaging::ReadHeader(*bytes, facts);
    if (facts.size.Empty()) state.SkipWithError("QUILLON_BENCH_PICTURE names no picture");
    benchmark::DoNotOptimize(facts);
  }
}
BENCHMARK(Measure);

void MeasureRemembered(benchmark::State& state) {
  const std::string path = PictureFromEnvironment();
  quillon::host::posix::PosixDisk disk;
  quillon::host::Files files(disk);
  imaging::Measurer measurer(files, {});
  for (auto _ : state) {
    imaging::ImageFacts facts;
    if (!measurer.Measure(path, facts)) state.SkipWithError("QUILLON_BENCH_PICTURE names no picture");
    benchmark::DoNotOptimize(facts);
  }
}
BENCHMARK(MeasureRemembered);

void CutExif(benchmark::State& state) {
  const std::string block = imaging::MinimalExif(6, 300) + std::string(static_cast<std::size_t>(state.range(0)), 'n');
  for (auto _ : state) benchmark::DoNotOptimize(imaging::CutExif(block, {640, 480}, 300));
}
BENCHMARK(CutExif)->Arg(100)->Arg(60000);

}  // namespace

BENCHMARK_MAIN();
