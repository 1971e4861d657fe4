// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/runtime/file_access.h"

#include <fcntl.h>
#include <link.h>
#include <linux/landlock.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <string_view>

#include "base/path_text.h"
#include "host/posix/environment.h"
#include "host/posix/repeat.h"

// Landlock is the kernel's way for a process to give up rights to files. A set of rules names the kinds of access that
// it handles; once it is enforced, each of them is refused unless a rule allows it for the file or for a folder above
// it. A rule belongs to the file itself and not to its name. Kernels know more kinds of access with each version of
// Landlock; a kind that a kernel does not know is left out.
namespace quillon::helpers {
namespace {

using host::posix::Repeat;
using Rights = std::uint64_t;

// Of later versions than some systems declare in their headers.
constexpr Rights kTruncate = Rights{1} << 14;
constexpr Rights kOtherSignals = Rights{1} << 1;

constexpr Rights kRead = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;
constexpr Rights kRun = kRead | LANDLOCK_ACCESS_FS_EXECUTE;
constexpr Rights kWrite = kRead | LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_REMOVE_FILE |
                          LANDLOCK_ACCESS_FS_REMOVE_DIR | LANDLOCK_ACCESS_FS_MAKE_REG | LANDLOCK_ACCESS_FS_MAKE_DIR |
                          LANDLOCK_ACCESS_FS_REFER | kTruncate;
// The kinds of access that a rule for a single file may name.
constexpr Rights kOfOneFile =
    LANDLOCK_ACCESS_FS_EXECUTE | LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_WRITE_FILE | kTruncate;

// The structure of a rule set, with the fields of later versions. A kernel that does not know a field accepts 0 in it.
struct RuleSet {
  Rights files = 0;
  Rights ports = 0;
  Rights scopes = 0;
};

// Programs of a coverage build write their counters into the build folder when they end.
#if defined(QUILLON_COVERAGE)
constexpr bool kEnabled = false;
#else
constexpr bool kEnabled = true;
#endif

constexpr std::array kInstalled = {"/usr", "/bin", "/lib", "/lib64", "/opt"};

// /proc does not give other processes away: their memory and their open files are refused by Landlock itself.
constexpr std::array kReadByAll = {"/proc",          "/sys/devices/system", "/etc/fonts",  "/etc/ld.so.cache",
                                   "/etc/localtime", "/etc/nsswitch.conf",  "/etc/passwd", "/var/cache/fontconfig",
                                   "/dev/random",    "/dev/urandom",        "/dev/zero"};

// Returns the version of Landlock, 0 if the kernel has none.
int LandlockVersion() {
  const long version = syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
  return kEnabled && version > 0 ? static_cast<int>(version) : 0;
}

RuleSet RuleSetOf(int version) {
  constexpr Rights kFirst = (LANDLOCK_ACCESS_FS_MAKE_SYM << 1) - 1;
  constexpr int kWithRefer = 2;
  constexpr int kWithTruncate = 3;
  constexpr int kWithScopes = 6;
  RuleSet set{.files = kFirst};
  if (version >= kWithRefer) set.files |= LANDLOCK_ACCESS_FS_REFER;
  if (version >= kWithTruncate) set.files |= kTruncate;
  if (version >= kWithScopes) set.scopes = kOtherSignals;
  return set;
}

class FileRules {
 public:
  explicit FileRules(int version) : set_(RuleSetOf(version)) {
    handle_ = static_cast<int>(syscall(SYS_landlock_create_ruleset, &set_, sizeof set_, 0));
  }
  ~FileRules() {
    if (handle_ >= 0) close(handle_);
  }
  FileRules(const FileRules&) = delete;
  FileRules& operator=(const FileRules&) = delete;

  // Does nothing if the path does not exist.
  void Allow(const std::string& path, Rights rights) const {
    const int file = open(path.c_str(), O_PATH | O_CLOEXEC);
    if (file < 0) return;
    struct stat info {};
    const bool folder = fstat(file, &info) == 0 && S_ISDIR(info.st_mode);
    landlock_path_beneath_attr rule{};
    rule.allowed_access = rights & set_.files & (folder ? ~Rights{0} : kOfOneFile);
    rule.parent_fd = file;
    (void)syscall(SYS_landlock_add_rule, handle_, LANDLOCK_RULE_PATH_BENEATH, &rule, 0);
    close(file);
  }

  void Enforce() const { (void)syscall(SYS_landlock_restrict_self, handle_, 0); }

 private:
  RuleSet set_;
  int handle_ = -1;
};

// Returns the program that execvp() starts, "" if there is none.
std::string FindProgram(const std::string& name) {
  if (name.find('/') != std::string::npos) return name;
  std::istringstream folders(host::posix::Environment("PATH"));
  for (std::string folder; std::getline(folders, folder, ':');) {
    std::string path = base::JoinPath(folder, name);
    if (access(path.c_str(), X_OK) == 0) return path;
  }
  return "";
}

// Returns the first bytes of a file, "" if it cannot be read.
std::string HeadOf(const std::string& path) {
  const int file = Repeat([&] { return open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); });
  if (file < 0) return "";
  std::string head(4096, '\0');
  const ssize_t count = Repeat([&] { return read(file, head.data(), head.size()); });
  close(file);
  head.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
  return head;
}

// Returns the dynamic linker that the beginning of a program names, "" if it names none.
std::string LinkerIn(std::string_view head) {
  ElfW(Ehdr) file{};
  if (head.size() < sizeof file || !head.starts_with(ELFMAG)) return "";
  std::memcpy(&file, head.data(), sizeof file);
  for (std::size_t i = 0; i < file.e_phnum; ++i) {
    ElfW(Phdr) part{};
    if (file.e_phoff > head.size() || file.e_phoff + (i + 1) * sizeof part > head.size()) return "";
    std::memcpy(&part, head.data() + file.e_phoff + i * sizeof part, sizeof part);
    if (part.p_type != PT_INTERP || part.p_offset > head.size()) continue;
    const std::string_view name = head.substr(part.p_offset, part.p_filesz);
    return std::string(name.substr(0, name.find('\0')));
  }
  return "";
}

// The kernel executes two files for a program: the program, and its dynamic linker.
void AllowTool(const FileRules& rules, const std::string& name) {
  if (name.empty()) return;
  const std::string program = FindProgram(name);
  const std::string head = HeadOf(program);
  rules.Allow(program, kRun);
  rules.Allow(LinkerIn(head), kRun);
  if (!head.starts_with("#!")) return;
  for (const char* folder : kInstalled) rules.Allow(folder, kRun);
}

// The fonts of the user. A stale list of them is rewritten.
void AllowFonts(const FileRules& rules) {
  rules.Allow(base::JoinPath(host::posix::HomeFolder(), ".fonts"), kRead);
  rules.Allow(base::JoinPath(host::posix::BaseFolder("XDG_DATA_HOME", ".local/share"), "fonts"), kRead);
  rules.Allow(base::JoinPath(host::posix::BaseFolder("XDG_CONFIG_HOME", ".config"), "fontconfig"), kRead);
  rules.Allow(base::JoinPath(host::posix::BaseFolder("XDG_CACHE_HOME", ".cache"), "fontconfig"), kWrite);
}

// A result that is a link is written at the end of the link, even if nothing exists there yet.
void AllowResult(const FileRules& rules, std::filesystem::path result) {
  constexpr int kMaxLinks = 40;
  std::error_code error;
  for (int i = 0; i < kMaxLinks; ++i) {
    rules.Allow(result.has_parent_path() ? result.parent_path().native() : ".", kWrite);
    const std::filesystem::path next = std::filesystem::read_symlink(result, error);
    if (error) return;
    result = result.parent_path() / next;
  }
}

}  // namespace

bool FileAccessIsLimited() { return LandlockVersion() > 0; }

void AllowOnly(const HandedFiles& handed, const std::vector<std::string>& ownFolders) {
  const int version = LandlockVersion();
  if (version == 0) return;
  const FileRules rules(version);
  for (const char* path : kInstalled) rules.Allow(path, kRead);
  for (const char* path : kReadByAll) rules.Allow(path, kRead);
  rules.Allow("/dev/null", kWrite);
#if defined(QUILLON_LEAK_SUPPRESSIONS)
  // The search for leaks at the end of the process reads it, or fails.
  rules.Allow(QUILLON_LEAK_SUPPRESSIONS, kRead);
#endif
  AllowFonts(rules);
  AllowTool(rules, handed.tool);
  for (const std::string& folder : ownFolders) rules.Allow(folder, kWrite);
  for (const std::string& source : handed.sources) rules.Allow(source, kRead);
  for (const std::string& result : handed.results) AllowResult(rules, result);
  rules.Enforce();
}

}  // namespace quillon::helpers
