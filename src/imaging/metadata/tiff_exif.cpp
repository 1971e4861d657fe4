// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/tiff_exif.h"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "imaging/faults.h"
#include "imaging/io/bytes.h"
#include "imaging/metadata/tiff_tags.h"

// The directories of a finished TIFF cannot grow in place, since the values that follow them are in the way. So the new
// first directory is appended with copies of the old entries, whose values stay where they are, and the offset in the
// header is written last: until then the file is the valid TIFF that it was.
namespace quillon::imaging {
namespace {

using host::Status;

enum Tag : std::uint32_t {
  kOrientation = 0x0112,
  kXResolution = 0x011A,
  kYResolution = 0x011B,
  kResolutionUnit = 0x0128,
  kExifIfd = 0x8769,
  kGpsIfd = 0x8825,
  kMakerNote = 0x927C,
  kInteropIfd = 0xA005,
};

constexpr std::uint32_t kLong = 4;
constexpr std::uint64_t kValueMax = 32768;

// Tags of the first directory that describe the picture: description, camera, software, time, author, rating,
// copyright, and the five that hold UTF-16 text.
constexpr std::array<std::uint32_t, 15> kDescriptive = {0x010E, 0x010F, 0x0110, 0x0131, 0x0132, 0x013B, 0x013C, 0x4746,
                                                        0x4749, 0x8298, 0x9C9B, 0x9C9C, 0x9C9D, 0x9C9E, 0x9C9F};
// Tags of the first directory that a block carries but a TIFF writes by itself.
constexpr std::array<std::uint32_t, 4> kGeometric = {kOrientation, kXResolution, kYResolution, kResolutionUnit};

template <std::size_t N>
bool IsOneOf(std::uint32_t tag, const std::array<std::uint32_t, N>& tags) {
  return std::find(tags.begin(), tags.end(), tag) != tags.end();
}

// A tag with its values in little-endian order.
struct Field {
  std::uint32_t tag = 0;
  std::uint32_t type = 0;
  std::uint64_t count = 0;
  std::string values;
};

using Fields = std::vector<Field>;

struct ExifFields {
  Fields main;
  Fields details;
  Fields place;
  Fields interop;

  // Returns true if there is anything besides orientation and resolution.
  bool HasDescription() const {
    const bool describes =
        std::any_of(main.begin(), main.end(), [](const Field& f) { return IsOneOf(f.tag, kDescriptive); });
    return describes || !details.empty() || !place.empty();
  }
};

// Returns the fields of a directory for which keep returns true. Fields that cannot be read are skipped.
template <class Keep>
Fields ReadFields(const TiffTags& tags, std::uint64_t at, Keep keep) {
  Fields fields;
  const auto directory = tags.Directory(at);
  if (!directory) return fields;
  for (const TiffEntry& entry : *directory) {
    if (entry.count == 0 || entry.size == 0 || !keep(entry)) continue;
    std::optional<std::string> values = tags.Values(entry, kValueMax);
    if (values) fields.push_back({entry.tag, entry.type, entry.count, std::move(*values)});
  }
  return fields;
}

ExifFields ReadExifFields(Bytes& bytes) {
  ExifFields fields;
  const std::optional<TiffTags> tags = TiffTags::Open(bytes);
  if (!tags) return fields;
  std::uint64_t details = 0;
  std::uint64_t place = 0;
  std::uint64_t interop = 0;
  fields.main = ReadFields(*tags, tags->First(), [&](const TiffEntry& entry) {
    if (entry.tag == kExifIfd) details = tags->Integer(entry).value_or(0);
    if (entry.tag == kGpsIfd) place = tags->Integer(entry).value_or(0);
    return IsOneOf(entry.tag, kDescriptive) || IsOneOf(entry.tag, kGeometric);
  });
  fields.details = ReadFields(*tags, details, [&](const TiffEntry& entry) {
    if (entry.tag == kInteropIfd) interop = tags->Integer(entry).value_or(0);
    return entry.tag != kInteropIfd && entry.tag != kMakerNote;
  });
  const auto all = [](const TiffEntry&) { return true; };
  fields.place = ReadFields(*tags, place, all);
  fields.interop = ReadFields(*tags, interop, all);
  return fields;
}

void PutNumber(std::string& out, std::uint64_t value, int size) {
  for (int i = 0; i < size; ++i) out += static_cast<char>(value >> (8 * i) & 0xFF);
}

// Returns a field with the offset of another directory.
Field Pointer(std::uint32_t tag, std::uint64_t at, int size) {
  constexpr std::uint32_t kIfd8 = 18;
  Field field{tag, size == 8 ? kIfd8 : kLong, 1, {}};
  PutNumber(field.values, at, size);
  return field;
}

// A directory entry as it is stored, with its tag for sorting.
struct RawEntry {
  std::uint32_t tag = 0;
  std::string bytes;
};

// Serialises directories one after another. start is the file offset of the first; wide selects BigTIFF.
class DirectoryWriter {
 public:
  DirectoryWriter(std::uint64_t start, bool wide) : start_(start), wide_(wide) {}

  // Appends a directory made of new fields and unchanged entries, sorted by tag as TIFF requires.
  // next is the offset of the following directory, 0 for none. Returns the offset of the directory.
  std::uint64_t Add(const Fields& fields, std::vector<RawEntry> entries, std::uint64_t next) {
    const std::size_t word = wide_ ? 8 : 4;
    const std::size_t count = fields.size() + entries.size();
    const std::uint64_t at = start_ + bytes_.size();
    std::uint64_t valuesAt = at + (wide_ ? 8 : 2) + count * (wide_ ? 20 : 12) + word;
    std::string values;
    for (const Field& field : fields) {
      RawEntry entry{field.tag, {}};
      PutNumber(entry.bytes, field.tag, 2);
      PutNumber(entry.bytes, field.type, 2);
      PutNumber(entry.bytes, field.count, static_cast<int>(word));
      if (field.values.size() <= word) {
        entry.bytes += field.values + std::string(word - field.values.size(), '\0');
      } else {
        PutNumber(entry.bytes, valuesAt + values.size(), static_cast<int>(word));
        values += field.values + std::string(field.values.size() % 2, '\0');
      }
      entries.push_back(std::move(entry));
    }
    std::stable_sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) { return a.tag < b.tag; });
    PutNumber(bytes_, count, wide_ ? 8 : 2);
    for (const RawEntry& entry : entries) bytes_ += entry.bytes;
    PutNumber(bytes_, next, static_cast<int>(word));
    bytes_ += values;
    return at;
  }

  // Appends the directories that the first one refers to, and adds the references to main.
  void AddBelow(ExifFields& fields) {
    const int word = wide_ ? 8 : 4;
    if (!fields.interop.empty() && !fields.details.empty()) {
      fields.details.push_back(Pointer(kInteropIfd, Add(fields.interop, {}, 0), word));
    }
    if (!fields.details.empty()) fields.main.push_back(Pointer(kExifIfd, Add(fields.details, {}, 0), word));
    if (!fields.place.empty()) fields.main.push_back(Pointer(kGpsIfd, Add(fields.place, {}, 0), word));
  }

  const std::string& Bytes() const { return bytes_; }

 private:
  std::uint64_t start_;
  bool wide_;
  std::string bytes_;
};

// Reads a draft through the Bytes interface. The draft is not moved by anything else meanwhile.
class DraftBytes : public Bytes {
 public:
  explicit DraftBytes(host::Draft& draft) : draft_(draft) {}
  std::uint64_t Size() const override { return draft_.Size(); }
  bool ReadAt(std::uint64_t offset, void* out, std::size_t size) override {
    return offset <= Size() && size <= Size() - offset && ReadDraft(draft_, offset, out, size);
  }

 private:
  host::Draft& draft_;
};

// The entries of the first directory of a finished TIFF, and the offset of the next one.
struct FirstDirectory {
  std::vector<RawEntry> entries;
  std::uint64_t next = 0;
};

bool ReadFirst(DraftBytes& file, const TiffTags& tags, FirstDirectory& out) {
  const std::size_t head = tags.Wide() ? 8 : 2;
  const std::size_t entrySize = tags.Wide() ? 20 : 12;
  const auto directory = tags.Directory(tags.First());
  if (!directory) return false;
  std::uint64_t at = tags.First() + head;
  for (const TiffEntry& entry : *directory) {
    RawEntry raw{entry.tag, std::string(entrySize, '\0')};
    if (!file.ReadAt(at, raw.bytes.data(), entrySize)) return false;
    out.entries.push_back(std::move(raw));
    at += entrySize;
  }
  std::array<unsigned char, 8> next{};
  const std::size_t word = tags.Wide() ? 8 : 4;
  if (!file.ReadAt(at, next.data(), word)) return false;
  for (std::size_t i = word; i > 0; --i) out.next = out.next << 8 | next[i - 1];
  return true;
}

Status WriteAt(host::Draft& draft, std::uint64_t at, const std::string& bytes) {
  if (Status moved = draft.Seek(at); !moved) return moved;
  return draft.Write(bytes.data(), bytes.size());
}

}  // namespace

std::string ExifOfTiff(Bytes& file) {
  ExifFields fields = ReadExifFields(file);
  if (!fields.HasDescription()) return {};
  constexpr std::uint64_t kHeader = 8;
  DirectoryWriter writer(kHeader, false);
  writer.AddBelow(fields);
  const std::uint64_t first = writer.Add(fields.main, {}, 0);
  std::string block("II*\0", 4);
  PutNumber(block, first, 4);
  return block + writer.Bytes();
}

Status AddExifToTiff(const std::string& block, host::Draft& draft) {
  MemoryBytes bytes(block);
  ExifFields fields = ReadExifFields(bytes);
  if (!fields.HasDescription()) return Status::Ok();
  DraftBytes file(draft);
  const std::optional<TiffTags> tags = TiffTags::Open(file);
  FirstDirectory first;
  if (!tags || !ReadFirst(file, *tags, first)) return fault::NotSaved();
  // Tags that the encoder wrote are right; those of the block may describe the source.
  const auto alreadyThere = [&](const Field& field) {
    return IsOneOf(field.tag, kGeometric) ||
           std::any_of(first.entries.begin(), first.entries.end(), [&](const auto& e) { return e.tag == field.tag; });
  };
  std::erase_if(fields.main, alreadyThere);
  const std::uint64_t end = draft.Size() + draft.Size() % 2;
  DirectoryWriter writer(end, tags->Wide());
  writer.AddBelow(fields);
  const std::uint64_t at = writer.Add(fields.main, std::move(first.entries), first.next);
  if (!tags->Wide() && end + writer.Bytes().size() > std::numeric_limits<std::uint32_t>::max()) return Status::Ok();
  std::string pointer;
  PutNumber(pointer, at, tags->Wide() ? 8 : 4);
  const std::string padding(end - draft.Size(), '\0');
  if (Status written = WriteAt(draft, draft.Size(), padding + writer.Bytes()); !written) return written;
  return WriteAt(draft, pointer.size(), pointer);
}

}  // namespace quillon::imaging
