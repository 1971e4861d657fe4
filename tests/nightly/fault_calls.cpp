// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// A library for LD_PRELOAD. It counts the file calls that concern one folder, or the allocations, of a process and of
// all processes that it starts, and makes the n-th fail, or every call from the n-th on, or kills the process instead
// of making the n-th. FaultState says which.
//
// Every wrapper has the name of a function of the C library, asks Fault(), and calls the function of the library unless
// the call is to fail. Calls that the C library makes itself, such as the open() of fopen(), pass by unseen; fopen()
// and opendir() are therefore wrapped too.
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <type_traits>

#include "nightly/fault_state.h"

using namespace quillon::nightly;

// The allocator of the C library by its own names: looking them up would allocate.
extern "C" void* __libc_malloc(std::size_t size);
extern "C" void* __libc_calloc(std::size_t count, std::size_t size);
extern "C" void* __libc_realloc(void* block, std::size_t size);
extern "C" void* __libc_memalign(std::size_t alignment, std::size_t size);

namespace {

constexpr unsigned kRead = kAnyCall | kInterruptible;
constexpr unsigned kWrite = kAnyCall | kInterruptible | kSpaceCall;
constexpr unsigned kPath = kAnyCall | kPathCall;
constexpr unsigned kPathSpace = kAnyCall | kPathCall | kSpaceCall;

FaultState* state = nullptr;

// Maps the state before main() starts. The calls of this function are made directly, as they must not count.
__attribute__((constructor)) void MapState() {
  const char* path = std::getenv(kStateVariable);
  if (!path) return;
  const long handle = syscall(SYS_openat, AT_FDCWD, path, O_RDWR | O_CLOEXEC);
  if (handle < 0) return;
  void* const mapped =
      mmap(nullptr, sizeof(FaultState), PROT_READ | PROT_WRITE, MAP_SHARED, static_cast<int>(handle), 0);
  syscall(SYS_close, handle);
  if (mapped != MAP_FAILED) state = static_cast<FaultState*>(mapped);
}

// Returns true if the path is below the folder of the state. A relative path is: every process of a run starts there.
bool Concerns(const char* path) {
  if (!path) return false;
  if (path[0] != '/') return true;
  const std::size_t length = std::strlen(state->root);
  return std::strncmp(path, state->root, length) == 0 && (path[length] == '/' || path[length] == '\0');
}

void Note(const char* name, const char* path) {
  std::strncpy(state->name, name, sizeof state->name - 1);
  std::strncpy(state->path, path, sizeof state->path - 1);
}

// Counts a call that concerns the run. Returns true, with errno set, if it is to fail; does not return if it is to
// kill.
bool Fires(const char* name, const char* path) {
  const std::uint64_t number = ++state->calls;
  if (state->mode == FaultMode::Count || number < state->at) return false;
  if (number > state->at && state->mode != FaultMode::FailForEver) return false;
  if (++state->fired == 1) Note(name, path);
  if (state->mode == FaultMode::Kill) kill(getpid(), SIGKILL);
  errno = state->error;
  return true;
}

bool Fault(unsigned classes, const char* name, const char* path) {
  return state && (state->callClass & classes) && Concerns(path) && Fires(name, path);
}

// For a call on an open file. Handles of other things than files, such as pipes, have no absolute path.
bool Fault(unsigned classes, const char* name, int handle) {
  if (!state || !(state->callClass & classes)) return false;
  const int saved = errno;
  char link[32];
  char path[512];
  std::snprintf(link, sizeof link, "/proc/self/fd/%d", handle);
  const long length = syscall(SYS_readlink, link, path, sizeof path - 1);
  errno = saved;
  if (length <= 0 || path[0] != '/') return false;
  path[length] = '\0';
  return Concerns(path) && Fires(name, path);
}

// This thread is looking up a function, which must not fail.
thread_local bool lookingUp = false;

// Returns the function of the C library that has the name.
template <typename Function>
Function* Next(const char* name) {
  lookingUp = true;
  void* const found = dlsym(RTLD_NEXT, name);
  lookingUp = false;
  return reinterpret_cast<Function*>(found);
}

bool NoMemory(const char* name) { return state && (state->callClass & kAllocation) && !lookingUp && Fires(name, ""); }

}  // namespace

// Finds a function of the C library when this library is loaded: later a lack of memory may have left the loader locked
// for ever. The constructor of another library may call earlier; then it is found at that call.
#define QUILLON_FIND(type, name)                                                  \
  namespace {                                                                     \
  type* const found_##name = Next<type>(#name);                                   \
  type* Next_##name() { return found_##name ? found_##name : Next<type>(#name); } \
  }

// A wrapper with a result of -1 on failure: its return type, name, parameters, arguments, classes, and the path or
// handle that decides whether it counts.
#define QUILLON_WRAP_AS(result, name, parameters, arguments, classes, subject, failure) \
  QUILLON_FIND(std::remove_pointer_t<result(*) parameters>, name)                       \
  extern "C" result name parameters { return Fault(classes, #name, subject) ? failure : Next_##name() arguments; }
#define QUILLON_WRAP(result, name, parameters, arguments, classes, subject) \
  QUILLON_WRAP_AS(result, name, parameters, arguments, classes, subject, -1)

namespace {

using Open = int(const char*, int, ...);
using OpenAt = int(int, const char*, int, ...);

unsigned ClassesOfOpen(int flags) { return kPath | kInterruptible | (flags & O_CREAT ? kSpaceCall : 0U); }

}  // namespace

// Calls that create or open. The mode is there only if a file may be created.
#define QUILLON_WRAP_OPEN(name)                                                              \
  QUILLON_FIND(Open, name)                                                                   \
  extern "C" int name(const char* path, int flags, ...) {                                    \
    std::va_list rest;                                                                       \
    va_start(rest, flags);                                                                   \
    const mode_t mode = flags & (O_CREAT | O_TMPFILE) ? va_arg(rest, mode_t) : 0;            \
    va_end(rest);                                                                            \
    return Fault(ClassesOfOpen(flags), #name, path) ? -1 : Next_##name()(path, flags, mode); \
  }
#define QUILLON_WRAP_OPENAT(name)                                                                    \
  QUILLON_FIND(OpenAt, name)                                                                         \
  extern "C" int name(int folder, const char* path, int flags, ...) {                                \
    std::va_list rest;                                                                               \
    va_start(rest, flags);                                                                           \
    const mode_t mode = flags & (O_CREAT | O_TMPFILE) ? va_arg(rest, mode_t) : 0;                    \
    va_end(rest);                                                                                    \
    return Fault(ClassesOfOpen(flags), #name, path) ? -1 : Next_##name()(folder, path, flags, mode); \
  }

QUILLON_WRAP_OPEN(open)
QUILLON_WRAP_OPEN(open64)
QUILLON_WRAP_OPENAT(openat)
QUILLON_WRAP_OPENAT(openat64)
QUILLON_WRAP(int, __open_2, (const char* path, int flags), (path, flags), kPath | kInterruptible, path)
QUILLON_WRAP(int, __open64_2, (const char* path, int flags), (path, flags), kPath | kInterruptible, path)
QUILLON_WRAP_AS(FILE*, fopen, (const char* path, const char* mode), (path, mode), kPath, path, nullptr)
QUILLON_WRAP_AS(FILE*, fopen64, (const char* path, const char* mode), (path, mode), kPath, path, nullptr)
QUILLON_WRAP_AS(DIR*, opendir, (const char* path), (path), kPath, path, nullptr)
QUILLON_WRAP_AS(dirent*, readdir, (DIR * folder), (folder), kAnyCall, dirfd(folder), nullptr)
QUILLON_WRAP_AS(dirent64*, readdir64, (DIR * folder), (folder), kAnyCall, dirfd(folder), nullptr)

QUILLON_WRAP(ssize_t, read, (int handle, void* data, std::size_t size), (handle, data, size), kRead, handle)
QUILLON_WRAP(ssize_t, __read_chk, (int handle, void* data, std::size_t size, std::size_t room),
             (handle, data, size, room), kRead, handle)
QUILLON_WRAP(ssize_t, pread, (int handle, void* data, std::size_t size, off_t at), (handle, data, size, at), kRead,
             handle)
QUILLON_WRAP(ssize_t, pread64, (int handle, void* data, std::size_t size, off64_t at), (handle, data, size, at), kRead,
             handle)
QUILLON_WRAP(ssize_t, write, (int handle, const void* data, std::size_t size), (handle, data, size), kWrite, handle)
QUILLON_WRAP(ssize_t, pwrite, (int handle, const void* data, std::size_t size, off_t at), (handle, data, size, at),
             kWrite, handle)
QUILLON_WRAP(ssize_t, pwrite64, (int handle, const void* data, std::size_t size, off64_t at), (handle, data, size, at),
             kWrite, handle)
QUILLON_WRAP(off_t, lseek, (int handle, off_t at, int from), (handle, at, from), kAnyCall, handle)
QUILLON_WRAP(off64_t, lseek64, (int handle, off64_t at, int from), (handle, at, from), kAnyCall, handle)
QUILLON_WRAP(int, fsync, (int handle), (handle), kWrite, handle)
// Called by SQLite alone, which does not repeat it: no signal interrupts it on a disk of this machine.
QUILLON_WRAP(int, fdatasync, (int handle), (handle), kAnyCall | kSpaceCall, handle)
QUILLON_WRAP(int, syncfs, (int handle), (handle), kAnyCall | kSpaceCall, handle)
QUILLON_WRAP(int, sync_file_range, (int handle, off64_t at, off64_t size, unsigned flags), (handle, at, size, flags),
             kAnyCall | kSpaceCall, handle)
QUILLON_WRAP(int, ftruncate, (int handle, off_t size), (handle, size), kWrite, handle)
QUILLON_WRAP(int, ftruncate64, (int handle, off64_t size), (handle, size), kWrite, handle)
QUILLON_WRAP(int, fchmod, (int handle, mode_t mode), (handle, mode), kAnyCall, handle)
QUILLON_WRAP(int, fchown, (int handle, uid_t user, gid_t group), (handle, user, group), kAnyCall, handle)
QUILLON_WRAP(int, futimens, (int handle, const timespec* times), (handle, times), kAnyCall, handle)
QUILLON_WRAP(int, flock, (int handle, int operation), (handle, operation), kRead, handle)
QUILLON_WRAP(int, fstat, (int handle, struct stat* facts), (handle, facts), kAnyCall, handle)
QUILLON_WRAP(int, fstat64, (int handle, struct stat64* facts), (handle, facts), kAnyCall, handle)
QUILLON_WRAP(int, fsetxattr, (int handle, const char* name, const void* value, std::size_t size, int flags),
             (handle, name, value, size, flags), kAnyCall | kSpaceCall, handle)

QUILLON_WRAP(int, stat, (const char* path, struct stat* facts), (path, facts), kPath, path)
QUILLON_WRAP(int, stat64, (const char* path, struct stat64* facts), (path, facts), kPath, path)
QUILLON_WRAP(int, lstat, (const char* path, struct stat* facts), (path, facts), kPath, path)
QUILLON_WRAP(int, lstat64, (const char* path, struct stat64* facts), (path, facts), kPath, path)
QUILLON_WRAP(int, faccessat, (int folder, const char* path, int mode, int flags), (folder, path, mode, flags), kPath,
             path)
QUILLON_WRAP(int, access, (const char* path, int mode), (path, mode), kPath, path)
QUILLON_WRAP(ssize_t, readlink, (const char* path, char* target, std::size_t size), (path, target, size), kPath, path)
QUILLON_WRAP_AS(char*, realpath, (const char* path, char* real), (path, real), kPath, path, nullptr)
QUILLON_WRAP(int, mkdir, (const char* path, mode_t mode), (path, mode), kPathSpace, path)
QUILLON_WRAP(int, rmdir, (const char* path), (path), kPath, path)
QUILLON_WRAP(int, unlink, (const char* path), (path), kPath, path)
QUILLON_WRAP(int, unlinkat, (int folder, const char* path, int flags), (folder, path, flags), kPath, path)
QUILLON_WRAP(int, rename, (const char* from, const char* to), (from, to), kPathSpace, to)
QUILLON_WRAP(int, renameat2, (int folder, const char* from, int other, const char* to, unsigned flags),
             (folder, from, other, to, flags), kPathSpace, to)
QUILLON_WRAP(int, linkat, (int folder, const char* from, int other, const char* to, int flags),
             (folder, from, other, to, flags), kPathSpace, to)
QUILLON_WRAP(int, symlink, (const char* target, const char* path), (target, path), kPathSpace, path)
QUILLON_WRAP(ssize_t, listxattr, (const char* path, char* names, std::size_t size), (path, names, size), kPath, path)
QUILLON_WRAP(ssize_t, getxattr, (const char* path, const char* name, void* value, std::size_t size),
             (path, name, value, size), kPath, path)

extern "C" void* malloc(std::size_t size) { return NoMemory("malloc") ? nullptr : __libc_malloc(size); }
extern "C" void* calloc(std::size_t count, std::size_t size) {
  return NoMemory("calloc") ? nullptr : __libc_calloc(count, size);
}
extern "C" void* realloc(void* block, std::size_t size) {
  return NoMemory("realloc") ? nullptr : __libc_realloc(block, size);
}
extern "C" void* memalign(std::size_t alignment, std::size_t size) {
  return NoMemory("memalign") ? nullptr : __libc_memalign(alignment, size);
}
extern "C" void* aligned_alloc(std::size_t alignment, std::size_t size) { return memalign(alignment, size); }
extern "C" int posix_memalign(void** block, std::size_t alignment, std::size_t size) {
  void* const made = memalign(alignment, size);
  if (!made) return ENOMEM;
  *block = made;
  return 0;
}
