// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/list/file_walk.h"

#include <algorithm>
#include <deque>
#include <set>
#include <utility>

#include "base/path_text.h"
#include "base/utf8.h"
#include "host/files/file_stamp.h"
#include "imaging/services.h"
#include "job/list/disk_monitor.h"

namespace quillon::job {
namespace {

// Files found and planned for measuring before their visit. Keeps every core measuring, yet is small enough to notice a
// changed folder soon.
constexpr std::size_t kPlanned = 64;
constexpr std::size_t kEntriesPerTurn = 256;
// Seconds that found files wait while the next folder is read.
constexpr double kFolderWait = 0.02;
constexpr const char* kLinkPassedOver =
    "是指向文件夹的链接：覆盖原图时不进入链接，以免改动别处的图片；这样的文件夹都已跳过";

std::string FolderPart(const std::string& path) { return path.substr(0, path.rfind('/') + 1); }

}  // namespace

bool FitsFilter(const std::string& filter, const std::string& path) {
  const std::string extension = base::ToLowerAscii(base::SplitPath(path).extension);
  return !extension.empty() && base::ToLowerAscii(filter).find("." + extension) != std::string::npos;
}

bool WalkRule::Owns(const std::string& relativePath) const {
  return shard.Owns(byFolder ? FolderPart(relativePath) : relativePath);
}

bool WalkRule::Reaches(const std::string& target, const std::string& root) const {
  const std::string below = root == "/" ? root : root + "/";
  if (!target.starts_with(below)) return false;
  const bool direct = target.find('/', below.size()) == std::string::npos;
  const bool isLeftOut = !leftOut.empty() && target.starts_with(leftOut + "/");
  return (direct || subfolders == Subfolders::Yes) && !isLeftOut && accepts(target.substr(target.rfind('/') + 1));
}

bool WalkRule::OwnsNamed(const std::string& path) const {
  return shard.Whole() || shard.OwnsNamed(byFolder ? FolderPart(path) : path);
}

bool WalkRule::OwnsReal(const std::string& path, const std::string& realBase) const {
  const bool below = !realBase.empty() && path.starts_with(realBase + "/");
  return OwnsNamed(below ? base::JoinPath(shard.base, path.substr(realBase.size() + 1)) : path);
}

// Finds the files in the order of the walk, a few before they are visited.
class FileWalk::Finder {
 public:
  Finder(const RunContext& context, const WalkRule& rule) : context_(context), rule_(rule) {
    if (const auto out = rule.leftOut.empty() ? std::nullopt : context.host.files.Stat(rule.leftOut)) {
      walked_.insert(IdOf(*out));
      realLeftOut_ = context.host.files.RealPath(rule.leftOut).value_or("");
    }
    if (!rule.shard.Whole()) realBase_ = context.host.files.RealPath(rule.shard.base).value_or("");
  }

  void Begin(const std::vector<std::string>& roots) {
    for (auto root = roots.rbegin(); root != roots.rend(); ++root) todo_.push_back({*root, 0});
  }

  // Sets path to the next file. Returns false at the end.
  bool Next(std::string& path) {
    const bool more = planned_ < found_.size() || !todo_.empty() || !links_.empty() || reading_;
    if (planned_ <= kPlanned / 2 && more) Prefetch();
    if (found_.empty()) return false;
    path = found_.front().Path();
    reached_ = found_.front().reached;
    found_.pop_front();
    --planned_;
    return true;
  }

  std::vector<std::string> Upcoming(std::size_t count) const {
    std::vector<std::string> paths;
    for (std::size_t i = 0; i < found_.size() && i < count; ++i) paths.push_back(found_[i].Path());
    return paths;
  }

  Reached How() const { return reached_; }
  std::size_t LeftToOthers() const { return leftToOthers_; }
  bool ReachedAll() const { return reachedAll_; }

 private:
  struct Place {
    std::string path;
    std::size_t rootLength = 0;  // length of the root in the path; 0 for a root itself
    Reached reached = Reached::ByFolders;
  };
  struct Found {
    std::shared_ptr<const std::string> folder;  // nullptr for a root
    std::string name;
    Reached reached = Reached::ByFolders;

    std::string Path() const { return folder ? base::JoinPath(*folder, name) : name; }
  };

  void Prefetch() {
    while (found_.size() < kPlanned && !context_.Stopped() && Expand()) {
    }
    std::vector<std::string> paths = Upcoming(kPlanned);
    planned_ = paths.size();
    if (context_.recovering) return;
    context_.images.PlanMeasures(std::move(paths));
  }

  // Returns false at the end, or if found files would have to wait for the next folder.
  bool Expand() {
    if (!reading_) {
      if (todo_.empty() && !links_.empty()) {
        todo_.push_back(std::move(links_.front()));
        links_.pop_front();
      }
      if (todo_.empty()) return false;
      place_ = std::move(todo_.back());
      todo_.pop_back();
      reading_ = std::make_unique<FolderReader>(context_, place_.path);
    }
    if (!found_.empty() && !reading_->Done(kFolderWait)) return false;
    const FolderContent content = reading_->Await();
    reading_.reset();
    ReadContent(std::exchange(place_, {}), content);
    context_.host.pump.Turn();
    return true;
  }

  void ReadContent(const Place& place, const FolderContent& content) {
    const bool root = place.rootLength == 0;
    const bool folder = content.facts && content.facts->kind == host::FileKind::Folder;
    if (root && !folder && content.listed) {
      Append({nullptr, place.path}, OwnsRoot(place.path));
    } else if (!content.listed) {
      const bool mine = root || rule_.shard.Owns(Relative(place.path, place.rootLength));
      NoteNotListed(place.path, content.listed, mine);
    }
    if (folder && !InLeftOut(place) && walked_.insert(IdOf(*content.facts)).second) {
      ReadEntries(place, content);
    }
  }

  // Returns true for a folder that a link leads to and that lies in the folder that is left out.
  bool InLeftOut(const Place& place) const {
    if (realLeftOut_.empty() || place.reached != Reached::ByFolderLink) return false;
    return context_.host.files.RealPath(place.path).value_or("").starts_with(realLeftOut_ + "/");
  }

  void ReadEntries(const Place& place, const FolderContent& content) {
    const auto folder = std::make_shared<const std::string>(place.path);
    const std::size_t rootLength = place.rootLength > 0 ? place.rootLength : place.path.size();
    std::vector<Place> below;
    std::size_t seen = 0;
    for (const host::FolderEntry& entry : content.entries) {
      const std::string path = base::JoinPath(place.path, entry.name);
      if (entry.kind == host::FileKind::File && rule_.accepts(entry.name)) {
        const bool mine = OwnsEntry(path, rootLength, entry, content);
        if (!IsTwin(place, entry, content, mine)) Append({folder, entry.name, place.reached}, mine);
      } else if (entry.kind == host::FileKind::Folder && rule_.subfolders == Subfolders::Yes) {
        if (entry.link) {
          KeepLink({path, rootLength, Reached::ByFolderLink}, rule_.Owns(Relative(path, rootLength)));
        } else {
          below.push_back({path, rootLength, place.reached});
        }
      }
      if (++seen % kEntriesPerTurn == 0) context_.host.pump.Turn();
    }
    todo_.insert(todo_.end(), below.rbegin(), below.rend());
  }

  // Of several processes that walk the folder, the one that owns the first link reports it.
  void KeepLink(Place link, bool mine) {
    if (rule_.links == Links::Followed) {
      links_.push_back(std::move(link));
    } else if (!std::exchange(linkMet_, true) && mine && context_.observer) {
      context_.observer->FileFilteredOut(link.path, kLinkPassedOver);
    }
  }

  // All links to one file belong to one shard, so that a run that overwrites can pass over all but one of them.
  bool OwnsEntry(const std::string& path, std::size_t rootLength, const host::FolderEntry& entry,
                 const FolderContent& content) const {
    const auto target = content.targets.find(entry.name);
    const bool byTarget =
        rule_.links == Links::Refused && entry.link && target != content.targets.end() && !target->second.empty();
    return byTarget ? rule_.OwnsReal(target->second, realBase_) : rule_.Owns(Relative(path, rootLength));
  }

  // As OwnsEntry, for a file that is a root.
  bool OwnsRoot(const std::string& path) const {
    if (rule_.links == Links::Followed || rule_.shard.Whole()) return rule_.OwnsNamed(path);
    return rule_.OwnsReal(context_.host.files.RealPath(path).value_or(path), realBase_);
  }

  // Returns true if the walk also finds the file that the link leads to by its own name or by an earlier link.
  bool IsTwin(const Place& place, const host::FolderEntry& entry, const FolderContent& content, bool mine) {
    if (rule_.links == Links::Followed || !entry.link) return false;
    const auto target = content.targets.find(entry.name);
    if (target == content.targets.end() || target->second.empty()) return false;
    const std::size_t belowRoot = place.rootLength > 0 ? place.path.size() - place.rootLength : 0;
    const std::string root = content.realPath.substr(0, content.realPath.size() - belowRoot);
    if (!rule_.Reaches(target->second, root) && (!mine || targets_.insert(target->second).second)) return false;
    if (mine && context_.observer) {
      context_.observer->FileFilteredOut(base::JoinPath(place.path, entry.name),
                                         "是链接，和“" + base::DisplayText(target->second) + "”是同一个文件，只裁一次");
    }
    return true;
  }

  static std::string Relative(const std::string& path, std::size_t rootLength) {
    return path.substr(path[rootLength] == '/' ? rootLength + 1 : rootLength);
  }

  void Append(Found found, bool mine) {
    if (mine && (context_.doneElsewhere.empty() || !context_.doneElsewhere.contains(found.Path()))) {
      found_.push_back(std::move(found));
    } else {
      ++leftToOthers_;
    }
  }

  // A folder that was removed meanwhile is not an error.
  void NoteNotListed(const std::string& folder, const host::Status& why, bool mine) {
    const host::Problem problem = why.GetProblem();
    if (problem == host::Problem::Missing || problem == host::Problem::Stopped) return;
    if (problem != host::Problem::Denied) reachedAll_ = false;
    if (mine && context_.observer) {
      context_.observer->FileNotListed(folder, "文件夹无法读取，已跳过：" + why.Why());
    }
  }

  const RunContext& context_;
  const WalkRule& rule_;
  std::vector<Place> todo_;  // roots and folders, the next one last
  std::deque<Place> links_;  // links to folders
  bool linkMet_ = false;
  std::unique_ptr<FolderReader> reading_;
  Place place_;  // of reading_
  std::deque<Found> found_;
  Reached reached_ = Reached::ByFolders;  // how Next reached its last file
  std::size_t planned_ = 0;               // how many of found_ are planned for measuring
  std::size_t leftToOthers_ = 0;
  bool reachedAll_ = true;
  std::set<host::FileId> walked_;
  std::set<std::string> targets_;  // real paths of files that are reached by links alone
  std::string realLeftOut_;        // of the folder that is left out; "" for none
  std::string realBase_;           // of the base of the shard; "" if the shard is whole
};

FileWalk::FileWalk(const RunContext& context, WalkRule rule)
    : context_(context), rule_(std::move(rule)), finder_(std::make_unique<Finder>(context_, rule_)) {}

FileWalk::~FileWalk() = default;

WalkEnd FileWalk::Run(const std::vector<std::string>& roots, const Visit& visit) {
  finder_->Begin(roots);
  WalkEnd end = WalkEnd::Complete;
  std::string path;
  while (end == WalkEnd::Complete && finder_->Next(path)) {
    context_.host.pump.Turn();
    if (context_.Stopped() || !visit(path)) end = WalkEnd::Stopped;
  }
  if (context_.Stopped()) end = WalkEnd::Stopped;
  context_.images.PlanMeasures({});
  return end;
}

Reached FileWalk::How() const { return finder_->How(); }

std::vector<std::string> FileWalk::Upcoming(std::size_t count) const { return finder_->Upcoming(count); }

std::size_t FileWalk::LeftToOthers() const { return finder_->LeftToOthers(); }

bool FileWalk::ReachedAll() const { return finder_->ReachedAll(); }

}  // namespace quillon::job
