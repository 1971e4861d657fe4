// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

namespace quillon::fuzz {

// A folder of this process for the files of one input. It is below /dev/shm if there is one, as memory is quicker than
// a disk.
inline const std::string& InputFolder() {
  static const std::string folder = [] {
    std::error_code error;
    const std::filesystem::path memory = "/dev/shm";
    const bool usable = access(memory.c_str(), W_OK) == 0;
    const std::filesystem::path base = usable ? memory : std::filesystem::temp_directory_path(error);
    return (base / ("quillon-fuzz-" + std::to_string(getpid()))).native();
  }();
  return folder;
}

// Empties the folder.
inline void ClearInputFolder() {
  std::filesystem::remove_all(InputFolder());
  std::filesystem::create_directories(InputFolder());
}

inline void WriteInput(const std::string& path, const std::uint8_t* data, std::size_t size) {
  std::ofstream(path, std::ios::binary | std::ios::trunc)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
}

}  // namespace quillon::fuzz
