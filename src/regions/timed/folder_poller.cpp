// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "regions/timed/folder_poller.h"

#include <utility>

#include "base/path_text.h"

namespace quillon::regions {
namespace {

// A file may be added without a change of the folder's time, as long as the clock of the disk has not ticked.
constexpr double kSecondsToTrustAStamp = 2;
// Some network disks never change the time of a folder.
constexpr double kSecondsBetweenListings = 10;

}  // namespace

FolderPoller::FolderPoller(host::Host& host, std::string folder, Accepts accepts)
    : host_(host), folder_(std::move(folder)), accepts_(std::move(accepts)) {}

std::vector<std::string> FolderPoller::Poll() {
  if (ListingNeeded()) List();
  std::vector<std::string> ready;
  for (auto entry = waiting_.begin(); entry != waiting_.end();) {
    auto& [name, waiting] = *entry;
    const auto now = host::StampOf(host_.files, base::JoinPath(folder_, name));
    if (!now) {
      entry = waiting_.erase(entry);
      continue;
    }
    if (!Unchanged(waiting.stamp, *now)) {
      waiting = {*now, false};
    } else if (!waiting.refused) {
      ready.push_back(name);
    }
    ++entry;
  }
  return ready;
}

bool FolderPoller::ListingNeeded() {
  const double now = host_.clock.Seconds();
  const auto facts = host_.files.Stat(folder_);
  if (!facts || facts->kind != host::FileKind::Folder) {
    there_ = false;
    folderStamp_.reset();
    return false;
  }
  const host::FileStamp stamp = host::StampOf(*facts);
  if (!there_ || !folderStamp_ || !Unchanged(*folderStamp_, stamp)) {
    folderStamp_ = stamp;
    stampSince_ = now;
    return true;
  }
  return listedAt_ - stampSince_ < kSecondsToTrustAStamp || now - listedAt_ >= kSecondsBetweenListings;
}

// A new name gets an empty stamp, so that the second poll decides.
void FolderPoller::List() {
  listedAt_ = host_.clock.Seconds();
  const host::Status listed = host_.files.ListFolder(folder_, [this](const host::FolderEntry& entry) {
    if (entry.kind == host::FileKind::File && accepts_(entry.name) && !seenNames_.contains(entry.name)) {
      waiting_.try_emplace(entry.name);
    }
    return true;
  });
  there_ = static_cast<bool>(listed);
}

void FolderPoller::MarkHandled(const std::string& name) {
  seenNames_.insert(name);
  waiting_.erase(name);
}

void FolderPoller::Refuse(const std::string& name) {
  if (const auto found = waiting_.find(name); found != waiting_.end()) found->second.refused = true;
}

std::optional<host::FileStamp> FolderPoller::StampOf(const std::string& name) const {
  const auto found = waiting_.find(name);
  return found == waiting_.end() ? std::nullopt : std::optional(found->second.stamp);
}

}  // namespace quillon::regions
