// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/tiff/tiff_handle.h"

#include <algorithm>

namespace quillon::imaging {
namespace {

constexpr tmsize_t kMaxAllocation = tmsize_t{256} << 20;

TiffStream& Of(thandle_t handle) { return *static_cast<TiffStream*>(handle); }

std::uint64_t SizeOf(const TiffStream& stream) { return stream.draft ? stream.draft->Size() : stream.bytes->Size(); }

tmsize_t OnRead(thandle_t handle, void* data, tmsize_t size) {
  TiffStream& stream = Of(handle);
  const std::uint64_t left = SizeOf(stream) - std::min(stream.at, SizeOf(stream));
  const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(left, static_cast<std::uint64_t>(size)));
  if (count == 0) return 0;
  if (stream.draft) {
    if (!stream.draft->Seek(stream.at)) return -1;
    const std::int64_t read = stream.draft->Read(data, count);
    if (read > 0) stream.at += static_cast<std::uint64_t>(read);
    return static_cast<tmsize_t>(read);
  }
  if (!stream.bytes->ReadAt(stream.at, data, count)) return -1;
  stream.at += count;
  return static_cast<tmsize_t>(count);
}

tmsize_t OnWrite(thandle_t handle, void* data, tmsize_t size) {
  TiffStream& stream = Of(handle);
  if (!stream.draft || !stream.failure) return -1;
  stream.failure = stream.draft->Seek(stream.at);
  if (stream.failure) stream.failure = stream.draft->Write(data, static_cast<std::size_t>(size));
  if (!stream.failure) return -1;
  stream.at += static_cast<std::uint64_t>(size);
  return size;
}

toff_t OnSeek(thandle_t handle, toff_t offset, int whence) {
  TiffStream& stream = Of(handle);
  const std::uint64_t base = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? stream.at : SizeOf(stream);
  stream.at = base + offset;
  return stream.at;
}

// The stream belongs to the caller.
int OnClose(thandle_t) { return 0; }

toff_t OnSize(thandle_t handle) { return SizeOf(Of(handle)); }

int Silence(TIFF*, void*, const char*, const char*, va_list) { return 1; }

TiffHandle Open(TiffStream& stream, const char* mode) {
  const std::unique_ptr<TIFFOpenOptions, decltype(&TIFFOpenOptionsFree)> options(TIFFOpenOptionsAlloc(),
                                                                                 TIFFOpenOptionsFree);
  if (!options) return nullptr;
  TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), kMaxAllocation);
  TIFFOpenOptionsSetErrorHandlerExtR(options.get(), Silence, nullptr);
  TIFFOpenOptionsSetWarningHandlerExtR(options.get(), Silence, nullptr);
  return TiffHandle(TIFFClientOpenExt("tiff", mode, &stream, OnRead, OnWrite, OnSeek, OnClose, OnSize, nullptr, nullptr,
                                      options.get()));
}

}  // namespace

// "m" disables memory mapping, for which there are no callbacks.
TiffHandle OpenTiffReading(TiffStream& stream) { return Open(stream, "rm"); }

TiffHandle OpenTiffWriting(TiffStream& stream, bool big) { return Open(stream, big ? "w8m" : "wm"); }

}  // namespace quillon::imaging
