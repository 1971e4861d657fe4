// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
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

// Engines that an option relies on and that are no object of their own. An option without its engine answers with the
// missing-resource question and stays off.
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

  // Start-up in its order. False: another instance is running; the program ends at once.
  bool Start();
  // Asks whether to close; on OK cleans up in its order and answers true: the program ends.
  bool Unload();
  bool Ended() const { return ended_; }

  host::Host& host;
  Flags flags;
  host::DiskThread diskThread;  // reads and writes pictures
  host::Saver saver;            // a full disk that the user gives up on sets Flags::StopRequested
  imaging::Services images;
  tools::Tools tools;  // its waits end with MenuStop, and the title tells of those that last
  tools::Converter converter;
  controls::Windows windows;
  Form1 form1;
  FBaseOpt fBaseOpt;
  FCutPre fCutPre;
  FileList files;
  RunContext context;  // what lists and runs see of all this
  DiskMonitor disks;

  // Parts built above the job; nullptr where the program has none.
  ManualFrame* manualFrame = nullptr;
  Sheets* sheets = nullptr;
  OutputTools* outputTools = nullptr;
  PageCounter* pageCounter = nullptr;
  RunObserver* observer = nullptr;
  host::Journals* journals = nullptr;
  Engines engines;

  // The part of all files that this program is to handle, and how many it has left to the others.
  Shard shard;
  std::size_t leftToOthers = 0;
  // Files that are left out because an earlier process has handled them.
  DoneElsewhere doneElsewhere;
  // An earlier process died in the place of this one: nothing is worked on ahead, and the observer hears also of each
  // file that is taken up for the list, so that it is known which file another death was about.
  bool recovering = false;

  // A folder was named for the list, and not only files.
  bool folderListed = false;

  // Where the guide was installed, for a program folder that holds none.
  std::string documents;

  // --- Boxes, all titled "消息".
  host::Reply Ask(const std::string& text, int type = 0);
  // The missing-resource question; OK opens the browser on the installer's location, which the setting "InstallerUrl"
  // may name.
  void AskMissingResource();

  // --- What menus and drops do.
  FileIntake& Intake() { return *intake_; }
  // A normal cut from its first check to its last box.
  void RunNormalCut();
  // Shows a picture in the preview; a picture that cannot be measured is passed over.
  void ShowInPreview(const std::string& path);
  // Shows the picture in the file at path, which may be reduced, as one of that size; its frame follows the parameters,
  // its shape no option.
  void ShowPicture(const std::string& path, base::Size size);
  // Puts the picture of ShowInPreview to the size and angle at which it will be cut, and the frame and the border over
  // any.
  void ShowAsCut();
  // Writes \Canvas.bmp, a white picture of 50 x 50.
  void WriteCanvas();
  // Shows the window of that name and answers true, or false where the program has none.
  bool ShowWindow(const std::string& name);
  // Hides the window of that name, if there is one.
  void HideWindow(const std::string& name);
  // Puts the enabled state of all controls to what the parameters allow. Every handler that changes one of them ends
  // with it.
  void ShowAvailability();

  // --- Settings of the program, section "Default".
  std::string Setting(const std::string& key);
  void SaveSetting(const std::string& key, const std::string& value);
  // Remembers the folders of both labels, as every batch does at its start.
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

  bool previewFollows_ = false;  // the picture on show takes the shape of its cut
  std::unique_ptr<FileIntake> intake_;
  bool ended_ = false;
};

}  // namespace quillon::job
