// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The yardstick of the listing: MediaInfo's own loop, one thread, one object, files opened by name, the whole report
// asked for. Reads the names from a file, one a line. Prints how many reports held a width.
//
// usage: mediainfo_loop LISTFILE
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include <MediaInfo/MediaInfo.h>

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: mediainfo_loop LISTFILE\n");
    return 2;
  }
  std::setlocale(LC_CTYPE, "C.UTF-8");
  MediaInfoLib::MediaInfo info;
  // Without this option MediaInfo treats numbered names as one sequence and reads every neighbour.
  info.Option(L"File_TestContinuousFileNames", L"0");
  info.Option(L"Complete", L"");
  std::ifstream list(argv[1]);
  std::string name;
  int found = 0;
  while (std::getline(list, name)) {
    std::wstring wide(name.size(), L'\0');
    wide.resize(std::mbstowcs(wide.data(), name.c_str(), wide.size()));
    info.Open(wide);
    if (info.Inform().find(L"Width") != std::wstring::npos) ++found;
    info.Close();
  }
  std::printf("%d\n", found);
  return 0;
}
