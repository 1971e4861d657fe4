# SPDX-FileCopyrightText: 2026 The Quillon developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Every library Quillon stands on, all packaged by Debian; scripts/lib.sh names the packages.
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
pkg_check_modules(VIPS REQUIRED IMPORTED_TARGET vips-cpp)
pkg_check_modules(JPEG REQUIRED IMPORTED_TARGET libjpeg)
pkg_check_modules(TIFF REQUIRED IMPORTED_TARGET libtiff-4)
pkg_check_modules(PNG REQUIRED IMPORTED_TARGET libpng)
pkg_check_modules(GIF REQUIRED IMPORTED_TARGET libgif)
pkg_check_modules(ZLIB REQUIRED IMPORTED_TARGET zlib)
pkg_check_modules(EXIV2 REQUIRED IMPORTED_TARGET exiv2)
pkg_check_modules(MEDIAINFO REQUIRED IMPORTED_TARGET libmediainfo)
pkg_check_modules(SQLITE REQUIRED IMPORTED_TARGET sqlite3)
pkg_check_modules(SECCOMP REQUIRED IMPORTED_TARGET libseccomp)
pkg_check_modules(LCMS REQUIRED IMPORTED_TARGET lcms2)
pkg_check_modules(QPDF REQUIRED IMPORTED_TARGET libqpdf)
pkg_check_modules(POPPLER REQUIRED IMPORTED_TARGET poppler-cpp)
pkg_check_modules(CGIF REQUIRED IMPORTED_TARGET cgif)
find_package(fmt REQUIRED)
find_package(nlohmann_json REQUIRED)
find_package(CLI11 REQUIRED)
find_package(Qt6 REQUIRED COMPONENTS Core Gui Widgets DBus Svg Test)

# Only the tests and the benchmarks need these: the program builds without them.
find_package(GTest QUIET)
find_package(benchmark QUIET)
