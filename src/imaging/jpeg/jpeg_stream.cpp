// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/jpeg/jpeg_stream.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>

#include <jerror.h>

namespace quillon::imaging {
namespace {

using host::Problem;

constexpr std::size_t kBlock = std::size_t{64} * 1024;
constexpr std::size_t kFirstBlock = std::size_t{16} * 1024;  // all of a small file, the head of most others
constexpr std::size_t kHeadMax = std::size_t{32} << 20;

constexpr int kEndOfImage = 0xD9;

const char* const kTruncated = "图片文件不完整，末尾的数据缺失";
const char* const kCorrupt = "图片数据已损坏";
const char* const kNotJpeg = "不是JPEG图片";
const char* const kOddJpeg = "不支持这种JPEG图片";
const char* const kNoMemory = "内存不足，无法处理这张图片";

struct Failure {
  Problem problem;
  const char* why;
};

Failure FailureOf(int code) {
  switch (code) {
    case JERR_NO_SOI:
      return {Problem::Unsupported, kNotJpeg};
    case JERR_SOF_UNSUPPORTED:
    case JERR_BAD_PRECISION:
    case JERR_CONVERSION_NOTIMPL:
    case JERR_BAD_J_COLORSPACE:
    case JERR_ARITH_NOTIMPL:
    case JERR_NOT_COMPILED:
    case JERR_CCIR601_NOTIMPL:
    case JERR_FRACT_SAMPLE_NOTIMPL:
    case JERR_COMPONENT_COUNT:
      return {Problem::Unsupported, kOddJpeg};
    case JERR_OUT_OF_MEMORY:
    case JERR_NO_BACKING_STORE:
    case JERR_IMAGE_TOO_BIG:
    case JERR_WIDTH_OVERFLOW:
      return {Problem::TooLarge, kNoMemory};
    case JERR_INPUT_EOF:
      return {Problem::Damaged, kTruncated};
    default:
      return {Problem::Damaged, kCorrupt};
  }
}

// Odd numbers in segments that decoding does not depend on.
bool Harmless(int code) { return code == JWRN_ADOBE_XFORM || code == JWRN_JFIF_MAJOR || code == JWRN_NOT_SEQUENTIAL; }

}  // namespace

JpegErrors::JpegErrors() {
  jpeg_std_error(&manager_.base);
  manager_.owner = this;
  manager_.base.error_exit = &JpegErrors::OnError;
  manager_.base.emit_message = &JpegErrors::OnMessage;
  manager_.base.output_message = [](j_common_ptr) {};
}

// The status is set in a call of its own, so that nothing is left to destroy when the jump is taken.
void JpegErrors::Fail(Problem problem, const char* why) {
  SetResult(Status(problem, why));
  Jump();
}

void JpegErrors::FailErrno(int error) {
  SetResult(Status::FromErrno(error));
  Jump();
}

void JpegErrors::Jump() { std::longjmp(manager_.jump, 1); }

void JpegErrors::OnError(j_common_ptr info) {
  JpegErrors& self = *reinterpret_cast<Manager*>(info->err)->owner;
  const Failure failure = FailureOf(info->err->msg_code);
  self.Fail(failure.problem, failure.why);
}

void JpegErrors::OnMessage(j_common_ptr info, int level) {
  if (level >= 0) return;
  const int code = info->err->msg_code;
  if (Harmless(code)) return;
  JpegErrors& self = *reinterpret_cast<Manager*>(info->err)->owner;
  if (code == JWRN_EXTRANEOUS_DATA && !self.insideData_) return;
  self.Fail(Problem::Damaged, code == JWRN_JPEG_EOF ? kTruncated : kCorrupt);
}

JpegSource::~JpegSource() {
  if (file_) std::fclose(file_);
}

std::size_t JpegSource::ReadBytes(void* data, std::size_t size) {
  errno = 0;
  if (!control_.content) return control_.Reading([&] { return std::fread(data, 1, size, file_); });
  const std::string& content = *control_.content;
  const std::size_t count = std::min(size, content.size() - read_);
  if (count > 0) std::memcpy(data, content.data() + read_, count);
  read_ += count;
  return count;
}

Status JpegSource::Open(const std::string& path, JpegHead& head) {
  if (!control_.content) {
    file_ = control_.Reading([&] { return std::fopen(path.c_str(), "rb"); });
    if (!file_) return Status::FromErrno(errno);
    std::setvbuf(file_, nullptr, _IONBF, 0);
  }
  std::size_t want = kFirstBlock;
  for (;;) {
    const std::size_t before = head_.size();
    head_.resize(want);
    head_.resize(before + ReadBytes(head_.data() + before, want - before));
    if (file_ && std::ferror(file_)) return Status::FromErrno(errno);
    switch (ParseJpegHead(head_, head)) {
      case HeadState::Complete:
        return Status::Ok();
      case HeadState::NotJpeg:
        return {Problem::Unsupported, kNotJpeg};
      case HeadState::Broken:
        return {Problem::Damaged, kCorrupt};
      case HeadState::More:
        break;
    }
    if (head_.size() < want) return {Problem::Damaged, kTruncated};
    if (want >= kHeadMax) return {Problem::Damaged, kCorrupt};
    want *= 4;
  }
}

void JpegSource::Attach(jpeg_decompress_struct& decoder) {
  manager_.owner = this;
  manager_.base.init_source = [](j_decompress_ptr) {};
  manager_.base.fill_input_buffer = &JpegSource::OnFill;
  manager_.base.skip_input_data = &JpegSource::OnSkip;
  manager_.base.resync_to_restart = jpeg_resync_to_restart;
  manager_.base.term_source = [](j_decompress_ptr) {};
  manager_.base.next_input_byte = reinterpret_cast<const JOCTET*>(head_.data());
  manager_.base.bytes_in_buffer = head_.size();
  decoder.src = &manager_.base;
}

std::size_t JpegSource::ReadInto(unsigned char* data, std::size_t size) {
  if (control_.stop.stop_requested()) errors_.Fail(Problem::Stopped, "已停止");
  const std::size_t count = ReadBytes(data, size);
  if (count == 0 && file_ && std::ferror(file_)) errors_.FailErrno(errno);
  if (count == 0) errors_.Fail(Problem::Damaged, kTruncated);
  return count;
}

void JpegSource::Fill() {
  if (block_.empty()) block_.resize(kBlock);
  const std::size_t count = ReadInto(block_.data(), block_.size());
  manager_.base.next_input_byte = block_.data();
  manager_.base.bytes_in_buffer = count;
}

void JpegSource::Skip(std::size_t count) {
  while (count > manager_.base.bytes_in_buffer) {
    count -= manager_.base.bytes_in_buffer;
    Fill();
  }
  manager_.base.next_input_byte += count;
  manager_.base.bytes_in_buffer -= count;
}

boolean JpegSource::OnFill(j_decompress_ptr decoder) {
  reinterpret_cast<Manager*>(decoder->src)->owner->Fill();
  return TRUE;
}

void JpegSource::OnSkip(j_decompress_ptr decoder, long count) {
  if (count > 0) reinterpret_cast<Manager*>(decoder->src)->owner->Skip(static_cast<std::size_t>(count));
}

int JpegSource::NextByte() {
  if (manager_.base.bytes_in_buffer == 0) Fill();
  --manager_.base.bytes_in_buffer;
  return *manager_.base.next_input_byte++;
}

// The next marker in entropy-coded data, stuffed zeros and fill bytes passed over.
int JpegSource::NextMarker(Rest rest) {
  for (;;) {
    const unsigned char* from = manager_.base.next_input_byte;
    const std::size_t size = manager_.base.bytes_in_buffer;
    const auto* found = size ? static_cast<const unsigned char*>(std::memchr(from, 0xFF, size)) : nullptr;
    const std::size_t before = found ? static_cast<std::size_t>(found - from) : size;
    if (rest == Rest::AllDecoded) {
      for (std::size_t i = 0; i < before; ++i) {
        if (from[i] != 0) errors_.Fail(Problem::Damaged, kCorrupt);
      }
    }
    Skip(before);
    if (NextByte() != 0xFF) {
      // The search must read again the byte with which a fresh block began.
      ++manager_.base.bytes_in_buffer;
      --manager_.base.next_input_byte;
      continue;
    }
    int marker = 0xFF;
    while (marker == 0xFF) marker = NextByte();
    if (marker != 0) return marker;
  }
}

void JpegSource::CheckToEnd(int unreadMarker, Rest rest) {
  int marker = unreadMarker;
  for (;;) {
    if (marker == kEndOfImage) return;
    const bool hasBody = marker > 0x01 && (marker < 0xD0 || marker > 0xD7);
    if (hasBody) {
      const int high = NextByte();
      const int length = high << 8 | NextByte();
      if (length < 2) errors_.Fail(Problem::Damaged, kCorrupt);
      Skip(static_cast<std::size_t>(length - 2));
    }
    marker = NextMarker(rest);
  }
}

void JpegTarget::Attach(jpeg_compress_struct& encoder) {
  block_.resize(kBlock);
  manager_.owner = this;
  manager_.base.init_destination = [](j_compress_ptr) {};
  manager_.base.empty_output_buffer = &JpegTarget::OnFull;
  manager_.base.term_destination = &JpegTarget::OnEnd;
  manager_.base.next_output_byte = block_.data();
  manager_.base.free_in_buffer = block_.size();
  encoder.dest = &manager_.base;
}

boolean JpegTarget::OnFull(j_compress_ptr encoder) {
  JpegTarget& self = *reinterpret_cast<Manager*>(encoder->dest)->owner;
  self.Flush(self.block_.size());
  self.manager_.base.next_output_byte = self.block_.data();
  self.manager_.base.free_in_buffer = self.block_.size();
  return TRUE;
}

void JpegTarget::OnEnd(j_compress_ptr encoder) {
  JpegTarget& self = *reinterpret_cast<Manager*>(encoder->dest)->owner;
  self.Flush(self.block_.size() - self.manager_.base.free_in_buffer);
}

void JpegTarget::Flush(std::size_t size) {
  if (size > 0 && !Hand(size)) errors_.Jump();
}

bool JpegTarget::Hand(std::size_t size) {
  Status status;
  try {
    status = sink_(block_.data(), size);
  } catch (const std::bad_alloc&) {
    status = Status(Problem::TooLarge, kNoMemory);
  }
  if (status) return true;
  errors_.SetResult(std::move(status));
  return false;
}

}  // namespace quillon::imaging
