// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <csetjmp>
#include <cstdio>
#include <string>
#include <vector>

#include <jpeglib.h>

#include "imaging/io/bytes.h"
#include "imaging/io/read_control.h"
#include "imaging/jpeg/jpeg_head.h"
#include "imaging/types.h"

// The parts that connect libjpeg to files, sinks and Status. libjpeg ends an operation by a jump out of its error
// manager; code that runs under Guard therefore keeps nothing in locals that needs a destructor.
namespace quillon::imaging {

// Error manager of one or more libjpeg objects.
class JpegErrors {
 public:
  JpegErrors();
  JpegErrors(const JpegErrors&) = delete;
  JpegErrors& operator=(const JpegErrors&) = delete;

  jpeg_error_mgr* Handle() { return &manager_.base; }

  // Runs work; false if it ended in a failure, which Result returns.
  template <class Work>
  bool Guard(Work work) {
    if (setjmp(manager_.jump) != 0) return false;
    work();
    return true;
  }

  // Ends the guarded work; only from inside Guard. The sentence is a literal.
  [[noreturn]] void Fail(host::Problem problem, const char* why);
  [[noreturn]] void FailErrno(int error);
  // As Fail, with what was given to SetResult before.
  [[noreturn]] void Jump();
  void SetResult(Status status) { result_ = std::move(status); }
  const Status& Result() const { return result_; }

  // Stray bytes between segments are harmless before the picture data, and a sign of damage inside.
  void DataBegins() { insideData_ = true; }

 private:
  struct Manager {
    jpeg_error_mgr base;
    std::jmp_buf jump;
    JpegErrors* owner;
  };

  static void OnError(j_common_ptr info);
  static void OnMessage(j_common_ptr info, int level);

  Manager manager_;
  Status result_;
  bool insideData_ = false;
};

// Reads a file for libjpeg; everything up to the picture data is kept.
class JpegSource {
 public:
  JpegSource(JpegErrors& errors, ReadControl control) : errors_(errors), control_(std::move(control)) {}
  ~JpegSource();
  JpegSource(const JpegSource&) = delete;
  JpegSource& operator=(const JpegSource&) = delete;

  // Opens path and parses its head, whose views stay valid as long as this object.
  Status Open(const std::string& path, JpegHead& head);
  void Attach(jpeg_decompress_struct& decoder);

  // Reads to the end-of-image marker; fails if it is missing. AllDecoded: the rest of the entropy-coded data must be
  // padding.
  enum class Rest { Undecoded, AllDecoded };
  void CheckToEnd(int unreadMarker, Rest rest);

 private:
  struct Manager {
    jpeg_source_mgr base;
    JpegSource* owner;
  };

  static boolean OnFill(j_decompress_ptr decoder);
  static void OnSkip(j_decompress_ptr decoder, long count);

  // As fread, from the file or from the bytes that stand for it.
  std::size_t ReadBytes(void* data, std::size_t size);
  std::size_t ReadInto(unsigned char* data, std::size_t size);
  void Fill();
  void Skip(std::size_t count);
  int NextByte();
  int NextMarker(Rest rest);

  JpegErrors& errors_;
  ReadControl control_;
  std::FILE* file_ = nullptr;
  std::size_t read_ = 0;  // bytes of the content
  std::string head_;      // from the first byte of the file
  std::vector<unsigned char> block_;
  Manager manager_{};
};

// Passes what libjpeg writes to a sink, block by block.
class JpegTarget {
 public:
  JpegTarget(JpegErrors& errors, const ByteSink& sink) : errors_(errors), sink_(sink) {}
  JpegTarget(const JpegTarget&) = delete;
  JpegTarget& operator=(const JpegTarget&) = delete;

  void Attach(jpeg_compress_struct& encoder);

 private:
  struct Manager {
    jpeg_destination_mgr base;
    JpegTarget* owner;
  };

  static boolean OnFull(j_compress_ptr encoder);
  static void OnEnd(j_compress_ptr encoder);

  void Flush(std::size_t size);
  bool Hand(std::size_t size);

  JpegErrors& errors_;
  const ByteSink& sink_;
  std::vector<unsigned char> block_;
  Manager manager_{};
};

}  // namespace quillon::imaging
