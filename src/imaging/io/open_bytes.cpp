// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/io/open_bytes.h"

#include <optional>
#include <utility>

#include "imaging/faults.h"

namespace quillon::imaging {
namespace {

using host::Status;

Status OpenFile(const host::Files& files, const std::string& path, std::shared_ptr<FileBytes>& bytes) {
  const std::optional<host::FileFacts> facts = files.Stat(path);
  if (facts && facts->kind != host::FileKind::File) return fault::NotAFile();
  return FileBytes::Open(path, bytes);
}

}  // namespace

Status OpenBytes(const host::Files& files, const std::string& path, const ReadControl& control,
                 std::shared_ptr<Bytes>& bytes) {
  if (control.content) {
    bytes = std::make_shared<MemoryBytes>(control.content);
  } else {
    std::shared_ptr<FileBytes> file;
    if (Status status = control.Reading([&] { return OpenFile(files, path, file); }); !status) return status;
    bytes = file;
    if (control.calls || control.stop.stop_possible())
      bytes = std::make_shared<ControlledBytes>(std::move(file), control);
  }
  return bytes->Size() == 0 ? fault::EmptyFile() : Status::Ok();
}

}  // namespace quillon::imaging
