// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/measure/measure.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <string_view>
#include <unordered_map>

#include "base/path_text.h"
#include "host/files/file_stamp.h"
#include "imaging/limits.h"
#include "imaging/measure/header_reader.h"

namespace quillon::imaging {
namespace {

using host::FileFacts;
using host::FileKind;
using host::Problem;

struct Answer {
  host::FileStamp stamp;
  int width = 0;
  int height = 0;
  int dpi = 0;
};

// Remembers answers by path. Of the path only a hash is kept, so the stamp of the file has to agree as well. When the
// younger half is full, the older one is dropped.
class Memory {
 public:
  std::optional<Answer> Find(const std::string& path, const FileFacts& file) {
    const std::uint64_t key = KeyOf(path, file);
    const std::lock_guard lock(mutex_);
    for (Half* half : {&young_, &old_}) {
      const auto found = half->find(key);
      if (found != half->end() && Unchanged(found->second.stamp, StampOf(file))) return found->second;
    }
    return std::nullopt;
  }

  void Keep(const std::string& path, const FileFacts& file, const Answer& answer) {
    const std::uint64_t key = KeyOf(path, file);
    const std::lock_guard lock(mutex_);
    MakeRoom();
    young_[key] = answer;
  }

  void Limit(std::size_t count) {
    const std::lock_guard lock(mutex_);
    half_ = count / 2;
    if (old_.size() > half_) old_ = {};
    MakeRoom();
  }

 private:
  using Half = std::unordered_map<std::uint64_t, Answer>;

  void MakeRoom() {
    if (young_.size() < half_) return;
    old_ = std::move(young_);
    young_ = {};
  }

  static std::uint64_t KeyOf(const std::string& path, const FileFacts& file) {
    constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15;
    return std::hash<std::string_view>{}(path) ^ (file.device * kSpread);
  }

  std::mutex mutex_;
  std::size_t half_ = kSizesRemembered / 2;
  Half young_;
  Half old_;
};

// Their resolution is the loader's too.
bool IsPsd(const std::string& path) { return base::ToLowerAscii(path).find(".psd") != std::string::npos; }

ImageFacts FactsOf(const std::string& path, const Answer& answer, Want want) {
  return {answer.width, answer.height, want == Want::SizeAndDpi || IsPsd(path) ? answer.dpi : 0};
}

// Reads the header of the file at path.
Status ReadHeaderOf(const std::string& path, HeaderKind& kind, HeaderFacts& facts) {
  std::shared_ptr<FileBytes> bytes;
  if (Status status = FileBytes::Open(path, bytes); !status) return status;
  if (bytes->Size() == 0) return {Problem::Damaged, "图片文件是空的"};
  kind = ReadHeader(*bytes, facts);
  return Status::Ok();
}

}  // namespace

struct Measurer::Parts {
  host::Files& files;
  Loader loader;
  OtherKinds otherKinds;
  Memory memory;

  Parts(host::Files& f, Loader byOpening, OtherKinds others)
      : files(f), loader(std::move(byOpening)), otherKinds(std::move(others)) {}

  Status MeasureFile(const std::string& path, const KeepWaiting& keepWaiting, Answer& answer) {
    if (IsPsd(path)) return MeasureByLoading(path, answer);
    HeaderKind kind = HeaderKind::Other;
    HeaderFacts facts;
    if (Status status = ReadHeaderOf(path, kind, facts); !status) return status;
    if (kind == HeaderKind::Other && otherKinds) {
      const Status status = otherKinds(path, keepWaiting, facts.size);
      if (!status && status.GetProblem() != Problem::Unsupported) return status;
    }
    if (facts.size.Empty()) return MeasureByLoading(path, answer);
    answer.width = facts.size.width;
    answer.height = facts.size.height;
    answer.dpi = facts.dpi;
    return Status::Ok();
  }

  Status MeasureByLoading(const std::string& path, Answer& answer) {
    ImageFacts facts;
    const Status status = loader(path, facts);
    answer.width = facts.width;
    answer.height = facts.height;
    answer.dpi = facts.dpi;
    return status;
  }
};

Measurer::Measurer(host::Files& files, Loader loader, OtherKinds otherKinds)
    : parts_(std::make_unique<Parts>(files, std::move(loader), std::move(otherKinds))) {}

Measurer::~Measurer() = default;

Status Measurer::Measure(const std::string& path, ImageFacts& facts, Want want, const KeepWaiting& keepWaiting) {
  const std::optional<FileFacts> file = parts_->files.Stat(path);
  if (!file) return {Problem::Missing, "找不到图片文件"};
  if (file->kind != FileKind::File) return {Problem::Unsupported, "不是图片文件"};

  const std::optional<Answer> known = parts_->memory.Find(path, *file);
  Answer answer = known.value_or(Answer{.stamp = StampOf(*file)});
  if (!known) {
    if (Status status = parts_->MeasureFile(path, keepWaiting, answer); !status) return status;
    const std::optional<FileFacts> after = parts_->files.Stat(path);
    if (after && Unchanged(*file, *after)) parts_->memory.Keep(path, *file, answer);
  }
  facts = FactsOf(path, answer, want);
  return Status::Ok();
}

void Measurer::Remember(std::size_t count) { parts_->memory.Limit(count); }

bool Measurer::Recall(const std::string& path, ImageFacts& facts, Want want) const {
  const std::optional<FileFacts> file = parts_->files.Stat(path);
  if (!file || file->kind != FileKind::File) return false;
  const std::optional<Answer> known = parts_->memory.Find(path, *file);
  if (!known) return false;
  facts = FactsOf(path, *known, want);
  return true;
}

}  // namespace quillon::imaging
