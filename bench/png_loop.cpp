// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The PNG cut alone, without listing, job or safe writing: what it costs beside programs that cut one file for each
// call.
//
// usage: png_loop PERCENT OUTFOLDER FILE...
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "imaging/io/bytes.h"
#include "imaging/png/png_cut.h"
#include "imaging/png/png_reader.h"

namespace {

using namespace quillon;
using host::Status;

// A file that is only written in order.
class FileDraft final : public host::Draft {
 public:
  explicit FileDraft(const std::string& path) : file_(std::fopen(path.c_str(), "wb")) {
    if (!file_) std::exit(2);
  }
  ~FileDraft() override { std::fclose(file_); }
  FileDraft(const FileDraft&) = delete;
  FileDraft& operator=(const FileDraft&) = delete;

  Status Write(const void* data, std::size_t size) override {
    size_ += size;
    return std::fwrite(data, 1, size, file_) == size ? Status::Ok() : Status(host::Problem::Other, "write");
  }
  Status Seek(std::uint64_t) override { return {host::Problem::Other, "seek"}; }
  std::int64_t Read(void*, std::size_t) override { return -1; }
  std::uint64_t Size() const override { return size_; }

 private:
  std::FILE* file_;
  std::uint64_t size_ = 0;
};

Status Cut(const std::string& source, const std::string& destination, int percent) {
  std::shared_ptr<imaging::FileBytes> bytes;
  if (Status opened = imaging::FileBytes::Open(source, bytes); !opened) return opened;
  base::Size size;
  {
    imaging::PngReader reader(bytes, {});
    if (Status opened = reader.Open(); !opened) return opened;
    size = reader.Facts().size;
  }
  const int left = size.width * percent / 100;
  const int top = size.height * percent / 100;
  FileDraft draft(destination);
  return imaging::CutPng(bytes, {left, top, size.width - 2 * left, size.height - 2 * top}, {}, draft);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) {
    std::fprintf(stderr, "usage: png_loop PERCENT OUTFOLDER FILE...\n");
    return 2;
  }
  int failed = 0;
  for (int i = 3; i < argc; ++i) {
    const std::string source = argv[i];
    const std::string destination = std::string(argv[2]) + "/" + source.substr(source.rfind('/') + 1);
    const Status cut = Cut(source, destination, std::atoi(argv[1]));
    if (cut) continue;
    std::fprintf(stderr, "%s: %s\n", source.c_str(), cut.Why().c_str());
    ++failed;
  }
  return failed > 0 ? 1 : 0;
}
