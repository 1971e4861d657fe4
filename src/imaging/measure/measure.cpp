// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/measure/measure.h"

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string_view>
#include <unordered_map>

#include "base/path_text.h"
#include "host/files/file_stamp.h"
#include "imaging/limits.h"
#include "imaging/measure/measure_probe.h"

namespace quillon::imaging {
namespace {

using host::FileFacts;
using host::FileKind;
using host::Problem;

constexpr int kNotRead = -1;

struct Answer {
  host::FileStamp stamp;
  int width = 0;
  int height = 0;
  int dpi = kNotRead;
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

// Lets threads through one at a time, in the order in which they came.
class Turnstile {
 public:
  void lock() {
    std::unique_lock lock(mutex_);
    const std::uint64_t mine = next_++;
    changed_.wait(lock, [&] { return mine == served_; });
  }
  void unlock() {
    {
      const std::lock_guard lock(mutex_);
      ++served_;
    }
    changed_.notify_all();
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::uint64_t next_ = 0;
  std::uint64_t served_ = 0;
};

// MediaInfo does not report their resolution.
bool IsPsd(const std::string& path) { return base::ToLowerAscii(path).find(".psd") != std::string::npos; }

}  // namespace

struct Measurer::Parts {
  host::Files& files;
  Loader loader;
  Memory memory;
  // MediaInfo locks mutexes of its own thousands of times for one file: two measurements at once are slower than one
  // after the other. A plain mutex would let the prefetching thread lock it again and again before the caller. Files
  // are opened before it is locked, so that one on an unresponsive disk does not hold up the others.
  Turnstile turnstile;
  std::optional<MeasureProbe> probe;  // from the first measurement on

  Parts(host::Files& f, Loader byOpening) : files(f), loader(std::move(byOpening)) {}

  Status MeasureFile(const std::string& path, Answer& answer) {
    if (IsPsd(path)) return MeasureByLoading(path, answer);
    base::Size size;
    MeasureProbe::Source source;
    Status status = source.Open(path);
    if (status) {
      const std::lock_guard lock(turnstile);
      if (!probe) probe.emplace();
      status = probe->Measure(source, size);
    }
    // MediaInfo reports no size for pictures of a few pixels, nor for every kind of file that is read here.
    if (status.GetProblem() == Problem::Unsupported) return MeasureByLoading(path, answer);
    answer.width = size.width;
    answer.height = size.height;
    return status;
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

Measurer::Measurer(host::Files& files, Loader loader) : parts_(std::make_unique<Parts>(files, std::move(loader))) {}

Measurer::~Measurer() = default;

Status Measurer::Measure(const std::string& path, ImageFacts& facts, Want want) {
  const std::optional<FileFacts> file = parts_->files.Stat(path);
  if (!file) return {Problem::Missing, "找不到图片文件"};
  if (file->kind != FileKind::File) return {Problem::Unsupported, "不是图片文件"};

  const std::optional<Answer> known = parts_->memory.Find(path, *file);
  Answer answer = known.value_or(Answer{.stamp = StampOf(*file)});
  if (!known) {
    if (Status status = parts_->MeasureFile(path, answer); !status) return status;
  }
  const bool withDpi = want == Want::SizeAndDpi;
  const bool readsDpi = withDpi && answer.dpi == kNotRead;
  if (readsDpi) answer.dpi = ReadDpi(path);
  if (!known || readsDpi) {
    const std::optional<FileFacts> after = parts_->files.Stat(path);
    if (after && Unchanged(*file, *after)) parts_->memory.Keep(path, *file, answer);
  }
  facts = {answer.width, answer.height, withDpi || IsPsd(path) ? answer.dpi : 0};
  return Status::Ok();
}

void Measurer::Remember(std::size_t count) { parts_->memory.Limit(count); }

bool Measurer::Knows(const std::string& path) const {
  const std::optional<FileFacts> file = parts_->files.Stat(path);
  return file && parts_->memory.Find(path, *file).has_value();
}

}  // namespace quillon::imaging
