// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/posix/posix_disk.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/statvfs.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <map>
#include <memory>
#include <string_view>

#include "host/posix/environment.h"
#include "host/posix/repeat.h"

namespace quillon::host::posix {
namespace {

constexpr std::int64_t kSecond = 1'000'000'000;

int Result(int returned) { return returned < 0 ? -errno : returned; }

std::int64_t Nanoseconds(const timespec& time) { return time.tv_sec * kSecond + time.tv_nsec; }

timespec TimeOf(std::int64_t nanoseconds) {
  std::int64_t seconds = nanoseconds / kSecond;
  if (nanoseconds % kSecond < 0) --seconds;
  return {static_cast<time_t>(seconds), static_cast<long>(nanoseconds - seconds * kSecond)};
}

FileKind KindOf(mode_t mode) {
  if (S_ISREG(mode)) return FileKind::File;
  return S_ISDIR(mode) ? FileKind::Folder : FileKind::Other;
}

DiskFacts FactsOf(const struct stat& info) {
  DiskFacts facts;
  facts.kind = KindOf(info.st_mode);
  facts.link = S_ISLNK(info.st_mode);
  facts.mode = info.st_mode & 07777;
  facts.user = info.st_uid;
  facts.group = info.st_gid;
  facts.size = static_cast<std::uint64_t>(info.st_size);
  facts.accessed = Nanoseconds(info.st_atim);
  facts.modified = Nanoseconds(info.st_mtim);
  facts.changed = Nanoseconds(info.st_ctim);
  facts.device = info.st_dev;
  facts.inode = info.st_ino;
  facts.links = info.st_nlink;
  return facts;
}

// Opens only regular files. O_NONBLOCK keeps open() from waiting for the writer of a named pipe; for regular files it
// has no effect.
int OpenRegular(const std::string& path, int flags) {
  const int handle = Repeat([&] { return open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY); });
  if (handle < 0) return handle;
  struct stat info {};
  int error = fstat(handle, &info) < 0 ? errno : 0;
  if (error == 0 && S_ISDIR(info.st_mode)) error = EISDIR;
  if (error == 0 && !S_ISREG(info.st_mode)) error = ENXIO;
  if (error == 0) return handle;
  close(handle);
  return -error;
}

std::string ScratchFolder() {
  const std::string folder = Environment("TMPDIR");
  return folder.starts_with('/') ? folder : "/var/tmp";
}

// Creates a file without a name. If the file system cannot do that, the name is removed at once.
int OpenUnnamed(const std::string& folder) {
  const int handle = Repeat([&] { return open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600); });
  if (handle != -EOPNOTSUPP && handle != -EISDIR) return handle;
  std::string path = folder + "/quillon-XXXXXX";
  const int named = Repeat([&] { return mkostemp(path.data(), O_CLOEXEC); });
  if (named >= 0) unlink(path.c_str());
  return named;
}

// From this number of files on, syncing their whole disk once is cheaper than syncing each file.
constexpr std::size_t kTogether = 4;

// Returns true if syncfs() on this disk also writes the names of files. Network and user-space file systems may only
// support syncing single files.
bool SyncsTogether(int handle) {
  struct statfs info {};
  if (fstatfs(handle, &info) < 0) return false;
  switch (static_cast<unsigned long>(info.f_type)) {
    case EXT4_SUPER_MAGIC:
    case XFS_SUPER_MAGIC:
    case BTRFS_SUPER_MAGIC:
    case F2FS_SUPER_MAGIC:
    case TMPFS_MAGIC:
      return true;
    default:
      return false;
  }
}

// Returns the result for one file of a disk that was synced as a whole: write errors are kept for each file.
int Written(int handle) {
  constexpr unsigned kAll = SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER;
  const int written = Repeat([&] { return sync_file_range(handle, 0, 0, kAll); });
  return written < 0 ? written : Disk::kSyncedWithName;
}

// Calls call once for the size and once for the bytes; again if the attribute grew in between.
template <typename Call>
int ReadAttribute(std::string& bytes, Call call) {
  for (;;) {
    const ssize_t size = call(nullptr, 0);
    if (size < 0) return -errno;
    bytes.resize(static_cast<std::size_t>(size));
    if (size == 0) return 0;
    const ssize_t read = call(bytes.data(), bytes.size());
    if (read < 0 && errno == ERANGE) continue;
    if (read < 0) return -errno;
    bytes.resize(static_cast<std::size_t>(read));
    return 0;
  }
}

struct CloseFolder {
  void operator()(DIR* folder) const { closedir(folder); }
};

// Opens the folder, or returns nullptr and sets errno.
std::unique_ptr<DIR, CloseFolder> OpenFolder(const std::string& folder) {
  for (;;) {
    std::unique_ptr<DIR, CloseFolder> opened(opendir(folder.c_str()));
    if (opened || errno != EINTR) return opened;
  }
}

// Returns the next entry of the folder; nullptr at its end, or with errno set if it cannot be read.
const dirent* NextEntry(DIR* folder) {
  for (;;) {
    errno = 0;
    const dirent* const entry = readdir(folder);
    if (entry || errno != EINTR) return entry;
  }
}

// Asks the disk about the entry only if the listing itself does not say what it is.
FolderEntry EntryOf(int folder, const dirent& listed) {
  FolderEntry entry{listed.d_name, FileKind::Other, listed.d_type == DT_LNK};
  struct stat info {};
  if (listed.d_type == DT_UNKNOWN && fstatat(folder, listed.d_name, &info, AT_SYMLINK_NOFOLLOW) == 0) {
    entry.link = S_ISLNK(info.st_mode);
  }
  if (listed.d_type != DT_UNKNOWN && listed.d_type != DT_LNK) {
    entry.kind = KindOf(DTTOIF(listed.d_type));
  } else if (fstatat(folder, listed.d_name, &info, 0) == 0) {
    entry.kind = KindOf(info.st_mode);
  }
  return entry;
}

}  // namespace

PosixDisk::PosixDisk() : PosixDisk(BaseFolder("XDG_DATA_HOME", ".local/share")) {}
PosixDisk::PosixDisk(std::string dataHome, std::string root) : dataHome_(std::move(dataHome)), root_(std::move(root)) {}

int PosixDisk::OpenNew(const std::string& path, unsigned mode) {
  return Repeat([&] { return open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode); });
}

int PosixDisk::OpenRead(const std::string& path) { return OpenRegular(path, O_RDONLY); }

int PosixDisk::OpenOwn(const std::string& path) { return OpenRegular(path, O_RDWR | O_NOFOLLOW); }

std::int64_t PosixDisk::Write(int handle, const void* data, std::size_t size) {
  return Repeat([&] { return static_cast<std::int64_t>(write(handle, data, size)); });
}

std::int64_t PosixDisk::Read(int handle, void* data, std::size_t size) {
  return Repeat([&] { return static_cast<std::int64_t>(read(handle, data, size)); });
}

int PosixDisk::Seek(int handle, std::uint64_t position) {
  if (position > static_cast<std::uint64_t>(INT64_MAX)) return -EFBIG;
  return lseek(handle, static_cast<off_t>(position), SEEK_SET) < 0 ? -errno : 0;
}

int PosixDisk::OpenScratch(std::uint64_t size) {
  const std::string folder = ScratchFolder();
  struct statvfs disk {};
  if (statvfs(folder.c_str(), &disk) < 0) return -errno;
  if (std::uint64_t{disk.f_bavail} * disk.f_frsize / 2 < size) return -ENOSPC;
  return OpenUnnamed(folder);
}

std::int64_t PosixDisk::ReadAt(int handle, std::uint64_t position, void* data, std::size_t size) {
  return Repeat([&] { return static_cast<std::int64_t>(pread(handle, data, size, static_cast<off_t>(position))); });
}

int PosixDisk::StatOpen(int handle, DiskFacts& facts) {
  struct stat info {};
  if (fstat(handle, &info) < 0) return -errno;
  facts = FactsOf(info);
  return 0;
}

int PosixDisk::SetMode(int handle, unsigned mode) { return Result(fchmod(handle, mode)); }

int PosixDisk::SetOwner(int handle, unsigned user, unsigned group) { return Result(fchown(handle, user, group)); }

int PosixDisk::SetTimes(int handle, std::int64_t accessed, std::int64_t modified) {
  const timespec times[2] = {TimeOf(accessed), TimeOf(modified)};
  return Result(futimens(handle, times));
}

int PosixDisk::CopyLabels(const std::string& path, int handle) {
  std::string names;
  const int listed =
      ReadAttribute(names, [&](char* to, std::size_t room) { return listxattr(path.c_str(), to, room); });
  if (listed < 0) return listed;
  for (std::size_t at = 0; at < names.size(); at = names.find('\0', at) + 1) {
    const char* name = names.c_str() + at;
    if (!std::string_view(name).starts_with("user.")) continue;
    std::string value;
    const int read =
        ReadAttribute(value, [&](char* to, std::size_t room) { return getxattr(path.c_str(), name, to, room); });
    if (read == -ENODATA) continue;
    if (read < 0) return read;
    if (fsetxattr(handle, name, value.data(), value.size(), 0) < 0) return -errno;
  }
  return 0;
}

int PosixDisk::Lock(int handle) {
  return Repeat([&] { return flock(handle, LOCK_EX | LOCK_NB); });
}

int PosixDisk::Unlock(int handle) { return Result(flock(handle, LOCK_UN)); }

int PosixDisk::StartSync(int handle) {
  return Repeat([&] { return sync_file_range(handle, 0, 0, SYNC_FILE_RANGE_WRITE); });
}

int PosixDisk::Sync(int handle) {
  const int synced = Repeat([&] { return fsync(handle); });
  if (synced < 0) return synced;
  // Network and user-space file systems send the data whenever a handle is closed, and report errors there. Closing a
  // duplicate does that while the original stays open.
  // A close that a signal interrupts must not be repeated, but another duplicate can be closed.
  return Repeat([&] {
    const int twin = fcntl(handle, F_DUPFD_CLOEXEC, 0);
    return twin < 0 ? twin : close(twin);
  });
}

std::vector<int> PosixDisk::SyncAll(const std::vector<int>& handles) {
  std::map<dev_t, std::vector<std::size_t>> disks;
  for (std::size_t i = 0; i < handles.size(); ++i) {
    struct stat info {};
    disks[fstat(handles[i], &info) == 0 ? info.st_dev : 0].push_back(i);
  }
  std::vector<int> results(handles.size(), 0);
  for (const auto& [device, places] : disks) {
    const bool together =
        places.size() >= kTogether && SyncsTogether(handles[places[0]]) && syncfs(handles[places[0]]) == 0;
    for (const std::size_t i : places) results[i] = together ? Written(handles[i]) : Sync(handles[i]);
  }
  return results;
}

// User-space file systems (FUSE) may hang just like network disks, so they do not count as local.
bool PosixDisk::IsLocalDisk(const std::string& folder) {
  struct statfs info {};
  if (statfs(folder.c_str(), &info) < 0) return true;
  constexpr unsigned long kElsewhere[] = {NFS_SUPER_MAGIC,  SMB_SUPER_MAGIC, CIFS_SUPER_MAGIC, SMB2_SUPER_MAGIC,
                                          FUSE_SUPER_MAGIC, V9FS_MAGIC,      CEPH_SUPER_MAGIC, AFS_SUPER_MAGIC};
  const auto kind = static_cast<std::uint32_t>(info.f_type);
  return std::find(std::begin(kElsewhere), std::end(kElsewhere), kind) == std::end(kElsewhere);
}

int PosixDisk::Close(int handle) { return Result(close(handle)); }

int PosixDisk::Stat(const std::string& path, DiskFacts& facts) {
  struct stat info {};
  if (stat(path.c_str(), &info) < 0) return -errno;
  facts = FactsOf(info);
  return 0;
}

int PosixDisk::StatLink(const std::string& path, DiskFacts& facts) {
  struct stat info {};
  if (lstat(path.c_str(), &info) < 0) return -errno;
  facts = FactsOf(info);
  return 0;
}

int PosixDisk::MayWrite(const std::string& path) { return Result(faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS)); }

int PosixDisk::ReadLink(const std::string& path, std::string& target) {
  char text[PATH_MAX];
  const ssize_t length = readlink(path.c_str(), text, sizeof text);
  if (length < 0) return -errno;
  if (length == static_cast<ssize_t>(sizeof text)) return -ENAMETOOLONG;
  target.assign(text, static_cast<std::size_t>(length));
  return 0;
}

int PosixDisk::RealPath(const std::string& path, std::string& real) {
  const std::unique_ptr<char, decltype(&std::free)> found(realpath(path.c_str(), nullptr), &std::free);
  if (!found) return -errno;
  real = found.get();
  return 0;
}

int PosixDisk::List(const std::string& folder, const std::function<bool(const FolderEntry&)>& visit) {
  const auto entries = OpenFolder(folder);
  if (!entries) return -errno;
  while (const dirent* const listed = NextEntry(entries.get())) {
    const std::string_view name = listed->d_name;
    if (name != "." && name != ".." && !visit(EntryOf(dirfd(entries.get()), *listed))) return 0;
  }
  return -errno;
}

int PosixDisk::MakeFolder(const std::string& path, unsigned mode) { return Result(mkdir(path.c_str(), mode)); }

int PosixDisk::Remove(const std::string& path) { return Result(unlink(path.c_str())); }

int PosixDisk::RemoveFolder(const std::string& path) { return Result(rmdir(path.c_str())); }

int PosixDisk::Rename(const std::string& from, const std::string& to) {
  return Result(rename(from.c_str(), to.c_str()));
}

int PosixDisk::RenameNew(const std::string& from, const std::string& to) {
  const int renamed = Result(renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE));
  if (renamed != -EINVAL && renamed != -ENOSYS && renamed != -ENOTSUP) return renamed;
  // Some file systems, such as NFS, cannot refuse an existing target while they rename, but always do while they link.
  const int linked = Result(linkat(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), 0));
  if (linked == -EEXIST || linked == -ENOENT) return linked;
  if (linked == 0) {
    const int removed = Remove(from);
    if (removed < 0) (void)Remove(to);
    return removed;
  }
  // A folder, or a disk without hard links. Checking first leaves only a very short race.
  DiskFacts facts;
  const int existing = StatLink(to, facts);
  if (existing == 0) return -EEXIST;
  return existing == -ENOENT ? Rename(from, to) : existing;
}

int PosixDisk::Link(const std::string& from, const std::string& to) {
  return Result(linkat(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), AT_SYMLINK_FOLLOW));
}

int PosixDisk::SyncFolder(const std::string& folder) {
  const int handle = Repeat([&] { return open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
  // A folder that is writable but not readable cannot be opened, and so not synced. Its disk will write it later.
  if (handle == -EACCES) return 0;
  if (handle < 0) return handle;
  const int synced = Repeat([&] { return fsync(handle); });
  close(handle);
  return synced == -EINVAL || synced == -EROFS ? 0 : synced;
}

std::string PosixDisk::DataHome() { return dataHome_; }

unsigned PosixDisk::User() { return geteuid(); }

std::string PosixDisk::Root() { return root_; }

std::string PosixDisk::TimeStamp() {
  const time_t now = std::time(nullptr);
  tm local{};
  localtime_r(&now, &local);
  char text[32];
  std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &local);
  return text;
}

}  // namespace quillon::host::posix
