// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/disk_thread.h"
#include "host/files/files.h"
#include "host/status.h"

// How an unresponsive disk is kept from blocking the program. A system call on a network disk whose server is gone, or
// on a failing drive, may never return. So every first access to a disk is made by a host::BackgroundCall, on a thread
// of its own, while the thread of control waits in small steps: it gives the message pump its turns, obeys a stop
// request at once, and counts how long the disk has been silent. Each answered call restarts the count, so that a
// slow disk is waited for and a silent one is given up after host::kDiskTimeoutSeconds. The thread that hangs is
// abandoned; it owns or shares everything it writes to, so it does no harm when it returns late.
//
// A disk that was given up is remembered by the topmost folder that did not answer, together with its call. Everything
// below that folder is refused at once, without another wait, until the abandoned call returns: then the disk is back
// and the entry is dropped.
namespace quillon::job {

struct RunContext;

// How long a disk is waited for. The time begins when the object is made.
class DiskTimeout {
 public:
  explicit DiskTimeout(const RunContext& context);

  // Waits for a call, which counts in `answers` what the disk has answered so far. Errors: Stopped as soon as a stop is
  // requested; Other with "没有响应" once the disk was silent for host::kDiskTimeoutSeconds.
  host::Status Await(const host::BackgroundCall& call, const std::atomic<std::size_t>& answers);

 private:
  const RunContext& context_;
  bool stopped_;       // a stop request of earlier work, which does not end this wait
  double lastAnswer_;  // seconds of host::Clock
};

// The attributes of a path, and the entries if it is a folder.
struct FolderContent {
  std::optional<host::FileFacts> facts;  // nothing if the path does not exist
  std::vector<host::FolderEntry> entries;
  std::string realPath;                        // of the folder; "" unless it holds links to files
  std::map<std::string, std::string> targets;  // real paths of the files that links in it lead to, by the links' names
  host::Status listed;                         // the error that ended the listing early; the entries before it count
};

// Reads a folder on a background thread. Starts immediately.
class FolderReader {
 public:
  FolderReader(const RunContext& context, const std::string& path);
  FolderReader(const FolderReader&) = delete;
  FolderReader& operator=(const FolderReader&) = delete;

  // Waits at most `seconds`. Returns true if everything is read.
  bool Done(double seconds) const { return call_.Done(seconds); }
  // Waits for the content as DiskTimeout::Await does; its failure becomes `listed`. Call at most once; the object must
  // not be used afterwards.
  FolderContent Await();

 private:
  struct Reading;
  static host::BackgroundCall::Work WorkOf(std::shared_ptr<Reading> reading, const host::Files& files,
                                           std::string path);

  DiskTimeout timeout_;
  std::shared_ptr<Reading> reading_;
  host::BackgroundCall call_;
};

// Whether disks still answer. A local disk is asked at most every half second for each folder, one on the network
// before every file.
class DiskMonitor {
 public:
  explicit DiskMonitor(const RunContext& context);
  ~DiskMonitor();
  DiskMonitor(const DiskMonitor&) = delete;
  DiskMonitor& operator=(const DiskMonitor&) = delete;

  // Stats the folders above the file and opens it, which a network disk cannot answer from its cache. Reads nothing.
  // Returns Ok if the disk has answered, even with an error. Errors: Stopped; Other with a sentence for the row if the
  // disk is silent.
  host::Status AskFile(const std::string& path);
  // As AskFile, for a folder.
  host::Status AskFolder(const std::string& folder);
  // As AskFile for a source and, unless sources are overwritten, for the output folder.
  host::Status AskForCut(const std::string& source);

  // Waits for the disks as Files::Flush does. If that lasts, the window gets its turns, and everything that is not on
  // disk yet counts as failed if a disk is silent. A slow disk that answers is waited for.
  std::vector<host::LateFailure> Flush();

  // Returns whether the disk of the file at path is known to be silent. Accesses no disk.
  bool Silent(const std::string& path);

 private:
  struct Asking;
  struct Silence {
    std::string place;  // nothing in this folder or below it answers
    std::unique_ptr<host::BackgroundCall> call;
  };
  struct Answered {
    double when = 0;    // seconds of host::Clock
    bool local = true;  // see host::Files::IsLocalDisk
  };

  host::Status Ask(const std::string& folder, const std::string& path, const char* sentence);
  bool Fresh(const std::string& folder) const;
  bool SilentBelow(const std::string& folder);
  void Note(const std::string& folder, bool local);

  const RunContext& context_;
  std::vector<Silence> silent_;
  std::unordered_map<std::string, Answered> answered_;  // by folder
};

}  // namespace quillon::job
