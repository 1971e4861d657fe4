// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <set>
#include <string>

#include "controls/windows.h"
#include "host/host.h"
#include "host/journal.h"
#include "host/saver.h"
#include "imaging/services.h"
#include "job/list/disk_monitor.h"
#include "job/list/file_list.h"
#include "job/list/run_context.h"
#include "job/settings/collaborators.h"
#include "job/settings/flags.h"
#include "job/settings/run_report.h"
#include "job/settings/shard.h"
#include "job/windows/fbaseopt.h"
#include "job/windows/fcutpre.h"
#include "job/windows/form1.h"
#include "tools/converter.h"
#include "tools/tools.h"

namespace quillon::job {

class FileIntake;

// Features without an object of their own. If one is missing, its option asks the missing-resource question and stays
// off.
struct Engines {
  bool edgeRemoval = false;  // ChClsWhite, ChClsBlack
};

// The whole program without a window system: all window records, the flags, and what the menus start.
class Program {
  std::unique_ptr<RunWindow> runWindow_;  // context refers to it

 public:
  explicit Program(host::Host& host);
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  // Starts the program. Returns false if another instance is running; the program then ends at once.
  bool Start();
  // Asks whether to close, unless Flags::CloseRequested is set, and on OK cleans up. Returns true if the program ends.
  bool Unload();
  bool Ended() const { return ended_; }

  host::Host& host;
  Flags flags;
  host::DiskThread diskThread;  // reads and writes pictures
  host::Saver saver;            // a full disk that the user gives up on sets Flags::StopRequested
  imaging::Services images;
  tools::Tools tools;  // MenuStop ends its waits; the title shows a long wait
  tools::Converter converter;
  controls::Windows windows;
  Form1 form1;
  FBaseOpt fBaseOpt;
  FCutPre fCutPre;
  FileList files;
  RunContext context;  // references to what lists and runs need
  DiskMonitor disks;

  // Set by the libraries above the job; nullptr if the program lacks the part.
  ManualFrame* manualFrame = nullptr;
  Sheets* sheets = nullptr;
  OutputTools* outputTools = nullptr;
  PageCounter* pageCounter = nullptr;
  RunObserver* observer = nullptr;
  host::Journals* journals = nullptr;
  Engines engines;
  // The cut modes whose drivers the program has. Another mode cannot be chosen.
  std::set<CutMode> modes{CutMode::Normal};

  // The shard of this program, and how many files it has left to other processes. Set the shard before the libraries
  // above the job are constructed: it decides which of their controls are usable.
  Shard shard;
  std::size_t leftToOthers = 0;
  // Files that are skipped because an earlier worker has handled them.
  DoneElsewhere doneElsewhere;
  // True if this process replaces a worker that died. Nothing is prefetched, and the observer is also notified before
  // each file that is listed, so that the parent knows which file caused another death.
  bool recovering = false;

  // Folders that were named for the list, beside files: each as it was named, and without links.
  std::set<std::string> listedFolders;
  OnExisting onExisting = OnExisting::Ask;

  // The installed guide, used if the program folder has none.
  std::string documents;

  // --- Boxes, all titled "消息".
  host::Reply Ask(const std::string& text, int type = 0);
  // Asks the missing-resource question. On OK opens the address of the installer in the browser; the setting
  // "InstallerUrl" replaces the built-in address.
  void AskMissingResource();

  // --- What menus and drops do.
  FileIntake& Intake() { return *intake_; }
  // Runs a normal cut, from its first check to its last box.
  void RunNormalCut();
  // Shows a picture in the preview. Does nothing if it cannot be measured.
  void ShowInPreview(const std::string& path);
  // Shows the file at path, which may be reduced, as a picture of that size. The frame follows the parameters; the
  // options do not turn or scale it.
  void ShowPicture(const std::string& path, base::Size size);
  // Shows no picture, but an empty area if there is a screen.
  void ShowNoPicture();
  // Scales and turns the picture of ShowInPreview as the cut will. Updates frame and border of any picture.
  void ShowAsCut();
  // Writes \Canvas.bmp, a white picture of 50 x 50.
  void WriteCanvas();
  // Shows the window of that name. Returns false if there is none.
  bool ShowWindow(const std::string& name);
  // Hides the window of that name, if there is one.
  void HideWindow(const std::string& name);
  // Enables and disables all controls as the parameters allow. Every handler that changes a parameter calls it last.
  void ShowAvailability();
  // Shows which values have an effect on a cut, and what is written in place of others. Called by the two above.
  void ShowEffects();

  // --- Settings of the program, section "Default".
  std::string Setting(const std::string& key);
  void SaveSetting(const std::string& key, const std::string& value);
  // Stores the folders of both labels, as every run does at its start.
  void SaveFolders();

  // Returns the path of a file in the program folder: AppPath(work_files::kCanvas).
  std::string AppPath(const std::string& name) const;

 private:
  void ReadScreen();
  void EndLeftOverHelpers();
  void ShowDesktopPicture();
  void ReadFolders();
  std::string PreviewSource(const std::string& path, base::Size size);
  bool Reduce(const std::string& path, base::Size size, const std::string& target, base::Size to);

  void Present(const std::string& path, base::Size size);

  bool previewFollows_ = false;  // the shown picture is scaled and turned as its cut
  std::unique_ptr<FileIntake> intake_;
  bool ended_ = false;
};

}  // namespace quillon::job
