// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "arch/rules.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <regex>
#include <set>

namespace quillon::arch {
namespace {

using Folders = std::vector<std::string_view>;

struct Layer {
  std::string_view folder;
  Folders below;  // what it may include besides itself
};

Folders operator+(Folders folders, const Folders& more) {
  folders.insert(folders.end(), more.begin(), more.end());
  return folders;
}

// Longer names come first if one holds another. Features stand side by side: what two of them need goes down into job
// or imaging.
std::vector<Layer> MakeLayers() {
  const Folders features = {"regions", "formats", "smart", "print", "shapes", "update"};
  const Folders job = {"base", "controls", "host", "imaging", "tools"};
  const Folders aboveJob = job + Folders{"job"};
  const Folders programs = aboveJob + features + Folders{"parts", "host/posix"};
  std::vector<Layer> layers = {
      {"base", {}},
      {"controls", {"base"}},
      {"host/posix", {"base", "controls", "host"}},
      {"host/testing", {"base", "controls", "host", "host/posix"}},
      {"host", {"base", "controls"}},
      {"imaging", {"base", "controls", "host"}},
      {"tools", {"base", "controls", "host", "imaging"}},
      {"job", job},
      {"parts", aboveJob + features},
      {"cli", programs},
      {"ui/kit", {"base", "controls"}},
      {"ui/desktop", {"base", "controls", "host", "host/posix", "ui/kit"}},
      {"ui", programs + Folders{"ui/kit", "ui/desktop"}},
      {"helpers", job + Folders{"host/posix", "ui/kit", "ui/desktop"}},
      {"app", programs + Folders{"cli", "ui", "ui/kit", "ui/desktop"}},
  };
  for (const std::string_view feature : features) layers.push_back({feature, aboveJob});
  return layers;
}

const std::vector<Layer>& Layers() {
  static const std::vector<Layer> kLayers = MakeLayers();
  return kLayers;
}

// The rooms of a library in their order: a room includes itself and those of a lower rank. A room is a folder, or a
// file of the library's own folder without its ending; "*" is every other file there.
struct House {
  std::string_view library;
  std::map<std::string_view, int> ranks;
  // A header of the top room that rooms from the given rank on may include too.
  std::string_view roof = {};
  int underRoof = 0;
};

const std::vector<House>& Houses() {
  static const std::vector<House> kHouses = {
      {"host", {{"status", 0}, {"files", 1}, {"*", 2}, {"posix", 3}, {"testing", 4}}},
      {"imaging",
       {{"types", 0},
        {"limits", 0},
        {"faults", 0},
        {"image", 0},
        {"cut_source", 0},
        {"io", 0},
        {"rows", 1},
        {"prefetch", 1},
        {"pixels", 2},
        {"metadata", 3},
        {"jpeg", 4},
        {"gif", 4},
        {"png", 4},
        {"tiff", 4},
        {"codecs", 5},
        {"measure", 5},
        {"crop", 6},
        {"*", 7}}},
      // The program object holds all windows: what is cut reads it, lists and runs do without.
      {"job",
       {{"work_files", 0}, {"settings", 0}, {"list", 1}, {"run", 2}, {"cut", 3}, {"windows", 4}, {"*", 5}},
       "job/program.h",
       3},
      {"regions", {{"region", 0}, {"frame", 1}, {"lists", 1}, {"timed", 2}, {"*", 3}}},
  };
  return kHouses;
}

struct Room {
  std::string_view name;
  int rank = 0;
  bool known = false;
};

Room RoomOf(const House& house, std::string_view pathInSrc) {
  std::string_view rest = pathInSrc.substr(house.library.size() + 1);
  const std::size_t slash = rest.find('/');
  const std::string_view name = rest.substr(0, slash == std::string_view::npos ? rest.rfind('.') : slash);
  if (const auto found = house.ranks.find(name); found != house.ranks.end()) return {name, found->second, true};
  if (slash != std::string_view::npos) return {name, 0, false};
  return {"*", house.ranks.at("*"), true};
}

const Layer* LayerOf(std::string_view pathInSrc) {
  for (const Layer& layer : Layers()) {
    if (pathInSrc.starts_with(std::string(layer.folder) + "/")) return &layer;
  }
  return nullptr;
}

const Layer* LayerOf(const Source& source) {
  return source.In("src/") ? LayerOf(std::string_view(source.path).substr(4)) : nullptr;
}

// Adds a breach for each line that matches the pattern; the matched words follow the sentence. Patterns are slow, so
// only lines that contain one of the hints are tried, unless there are no hints.
void Match(const Source& source, const std::string& text, const std::regex& pattern, const std::string& what,
           const std::vector<std::string_view>& hints, Breaches& out) {
  int number = 0;
  for (const std::string_view line : Lines(text)) {
    ++number;
    const bool hinted = std::any_of(hints.begin(), hints.end(),
                                    [&](std::string_view hint) { return line.find(hint) != std::string_view::npos; });
    std::match_results<std::string_view::const_iterator> match;
    if (!hinted || !std::regex_search(line.begin(), line.end(), match, pattern)) continue;
    out.push_back({source.path, number, what + ": " + match.str()});
  }
}

struct Library {
  std::regex header;
  Folders homes;
};

const std::vector<Library>& Libraries() {
  static const std::vector<Library> kLibraries = {
      {std::regex("^Q[A-Z]|^qt|^Qt"), {"src/ui/", "src/helpers/dc_tiffs_maker/window/", "src/app/quillon_main.cpp"}},
      {std::regex("^vips/|^gobject"), {"src/imaging/", "src/helpers/"}},
      {std::regex("^glib"), {"src/imaging/", "src/helpers/", "src/update/"}},
      {std::regex("^jpeglib|^jerror|^turbojpeg|^tiff|^png\\.h|^gif_lib"), {"src/imaging/", "src/helpers/"}},
      {std::regex("^exiv2/"), {"src/imaging/", "src/helpers/"}},
      {std::regex("^lcms2"), {"src/imaging/"}},
      {std::regex("^qpdf/|^poppler|^cgif|^seccomp"), {"src/helpers/"}},
      {std::regex("^MediaInfo"), {"src/helpers/"}},
      {std::regex("^sqlite3"), {"src/host/posix/"}},
      {std::regex("^nlohmann/|^CLI/"), {"src/cli/"}},
      {std::regex("^gtest|^gmock"), {}},
  };
  return kLibraries;
}

bool IsHeavy(const std::string& include) {
  static const std::regex kHeavy(
      "^vips/|^jpeglib|^tiffio|^exiv2/|^MediaInfo|^sqlite3|^nlohmann/|^CLI/|^qpdf/|^poppler");
  return std::regex_search(include, kHeavy);
}

// The layer, or for a helper its own folder.
std::string LibraryOf(std::string_view path) {
  const Layer* layer = LayerOf(path.substr(4));
  if (!layer || layer->folder == "helpers") return std::string(path.substr(0, path.rfind('/')));
  return std::string(layer->folder);
}

// Words made of two parts, so that this file does not hold them.
std::regex UnfinishedWords() { return std::regex(std::string(R"(\b(TO)") + "DO|FIX" + "ME|XX" + "X|HA" + R"(CK)\b)"); }

}  // namespace

Breaches CheckLayers(const Source& source) {
  Breaches out;
  if (!source.In("src/") || !source.IsCode()) return out;
  const Layer* own = LayerOf(source);
  if (!own) return {{source.path, 0, "lies in no known folder"}};
  for (const Include& include : IncludesOf(source.text)) {
    if (!include.quoted) continue;
    const Layer* other = LayerOf(include.name);
    if (!other) {
      out.push_back({source.path, include.line, "names no folder of src/: " + include.name});
    } else if (other != own && std::find(own->below.begin(), own->below.end(), other->folder) == own->below.end()) {
      out.push_back({source.path, include.line, std::string(own->folder) + " may not include " + include.name});
    }
  }
  return out;
}

Breaches CheckRooms(const Source& source) {
  Breaches out;
  if (!source.In("src/") || !source.IsCode()) return out;
  const std::string_view path = std::string_view(source.path).substr(4);
  for (const House& house : Houses()) {
    const std::string prefix = std::string(house.library) + "/";
    if (!path.starts_with(prefix)) continue;
    const Room own = RoomOf(house, path);
    if (!own.known) out.push_back({source.path, 0, "lies in no known room"});
    for (const Include& include : IncludesOf(source.text)) {
      if (!own.known || !include.quoted || !include.name.starts_with(prefix)) continue;
      if (include.name == house.roof && own.rank >= house.underRoof) continue;
      const Room other = RoomOf(house, include.name);
      if (other.name != own.name &&
          (!other.known || other.rank > own.rank || (own.rank > 0 && other.rank == own.rank))) {
        out.push_back(
            {source.path, include.line, "the room " + std::string(own.name) + " may not include " + include.name});
      }
    }
  }
  return out;
}

Breaches CheckLibraries(const Source& source) {
  Breaches out;
  if (!source.In("src/") || !source.IsCode()) return out;
  for (const Include& include : IncludesOf(source.text)) {
    for (const Library& library : Libraries()) {
      const bool home = std::any_of(library.homes.begin(), library.homes.end(),
                                    [&](std::string_view folder) { return source.In(folder); });
      if (!home && std::regex_search(include.name, library.header)) {
        out.push_back({source.path, include.line, "this library does not belong here: " + include.name});
      }
    }
  }
  return out;
}

Breaches CheckPlatform(const Source& source) {
  static const std::regex kHeader(
      "^(unistd|fcntl|dirent|poll|signal|pthread|sched|semaphore|termios|pwd|grp|dlfcn|malloc|spawn|glob|ftw|fnmatch|"
      "mntent|syslog|utime|netdb|ifaddrs|execinfo|ucontext|libgen|langinfo)\\.h$|"
      "^(sys|linux|asm|net|netinet|arpa|bits)/");
  // The folders that may use one platform, and single files elsewhere that need it.
  static const Folders kHomes = {
      "src/host/posix/",
      "src/host/testing/",
      "src/ui/",
      "src/helpers/",
      "src/cli/cli.cpp",                  // whether a terminal listens
      "src/cli/private_folder.cpp",       // the number of the process
      "src/cli/stop_signals.cpp",         // signals that end a batch
      "src/cli/workers/",                 // processes side by side, and the pipes to them
      "src/imaging/jpeg/jpeg_reader.cpp"  // large pages for coefficients
  };
  Breaches out;
  if (!source.In("src/") || !source.IsCode()) return out;
  if (std::any_of(kHomes.begin(), kHomes.end(), [&](std::string_view home) { return source.In(home); })) return out;
  for (const Include& include : IncludesOf(source.text)) {
    if (!include.quoted && std::regex_search(include.name, kHeader)) {
      out.push_back({source.path, include.line, "a header of one platform belongs into host/posix: " + include.name});
    }
  }
  return out;
}

Breaches CheckWiring(const Source& source) {
  Breaches out;
  if (!source.In("src/") || !source.IsCode() || source.In("src/host/")) return out;
  for (const Include& include : IncludesOf(source.text)) {
    if (include.name.starts_with("host/testing/")) {
      out.push_back({source.path, include.line, "a double for tests in the program: " + include.name});
    }
    if (include.name.starts_with("host/posix/") && source.IsHeader()) {
      out.push_back({source.path, include.line, "the real world is wired up in a .cpp file: " + include.name});
    }
  }
  return out;
}

Breaches CheckWrites(const Source& source) {
  static const std::regex kCalls(
      R"(\bstd::(ofstream|fstream|tmpfile|rename)\b|\bstd::remove\s*\(\s*[^,()]*\)|)"
      R"((^|[^\w.>:])(::)?(remove|truncate|creat|freopen)\s*\(\s*[^()]*\)|)"
      R"(\b(renameat2?|rename|unlinkat|unlink|rmdir|mkdir|mkstemps?|mkostemps?|mkdtemp|jpeg_stdio_dest|TIFFOpen)\s*\(|)"
      R"(\bO_(CREAT|WRONLY|RDWR|TRUNC|APPEND|TMPFILE)\b|)"
      R"(\b(filesystem|fs)::(remove|remove_all|rename|copy|copy_file|resize_file|create_director\w+|permissions)\b|)"
      R"(\bQ(SaveFile|TemporaryFile|TemporaryDir|Settings|LockFile)\b|\bQFile::(remove|rename|copy|link)\b|)"
      R"(\bQIODevice(Base)?::(WriteOnly|ReadWrite|Append|Truncate)\b|\b(mkpath|removeRecursively|moveToTrash)\s*\(|)"
      R"(\bvips_\w+save\s*\(|\b(vips_image_)?write_to_file\s*\(|[.>]\w+save\s*\()");
  static const std::regex kOpenForWriting(R"re(\bfopen\s*\((?!.*"r[be]*"\s*\)))re");
  Breaches out;
  if (!source.In("src/") || !source.IsCode() || source.In("src/host/")) return out;
  const std::string what = "files are written by host::Files alone";
  static const std::vector<std::string_view> kHints = {
      "fstream", "tmpfile",    "rename",   "remove",    "truncate", "creat",       "freopen",  "unlink",     "rmdir",
      "mk",      "jpeg_stdio", "TIFFOpen", "O_",        "copy",     "permissions", "QSave",    "QTemp",      "QSett",
      "QLock",   "QFile",      "QIOD",     "removeRec", "moveTo",   "save",        "write_to", "resize_file"};
  Match(source, CodeOf(source.text, Literals::Blank), kCalls, what, kHints, out);
  Match(source, CodeOf(source.text, Literals::Keep), kOpenForWriting, what, {"open"}, out);
  return out;
}

Breaches CheckWorkFiles(const Source& source) {
  static const std::regex kNames(R"re("(Tmp2?|tmp|Canvas|OmitSubfolds|Pdfs|Exif)(\.\w*)?")re");
  static constexpr std::string_view kFolders[] = {"src/job/",   "src/regions/", "src/formats/",
                                                  "src/smart/", "src/print/",   "src/shapes/"};
  Breaches out;
  const bool governed =
      std::any_of(std::begin(kFolders), std::end(kFolders), [&](std::string_view folder) { return source.In(folder); });
  if (!governed || !source.IsCode() || source.path == "src/job/work_files.h") return out;
  Match(source, CodeOf(source.text, Literals::Keep), kNames, "work files are named in job/work_files.h", {"\""}, out);
  return out;
}

Breaches CheckSizes(const Source& source) {
  constexpr int kLinesOfHeader = 300;
  constexpr int kLinesOfCpp = 700;
  constexpr int kLinesOfMain = 60;
  constexpr int kLinesOfHelper = 150;  // its order and its main function together
  constexpr int kLinesOfFunction = 100;
  Breaches out;
  if (!source.IsCode()) return out;
  const bool helper = source.In("src/helpers/") && source.path.ends_with("/main.cpp");
  const int limit = source.In("src/app/") ? kLinesOfMain
                    : helper              ? kLinesOfHelper
                    : source.IsHeader()   ? kLinesOfHeader
                                          : kLinesOfCpp;
  const int lines = static_cast<int>(Lines(source.text).size());
  if (lines > limit) {
    out.push_back({source.path, 0, std::to_string(lines) + " lines, at most " + std::to_string(limit)});
  }
  for (const Function& function : FunctionsOf(source.text)) {
    if (function.lines <= kLinesOfFunction) continue;
    out.push_back(
        {source.path, function.line,
         "a function of " + std::to_string(function.lines) + " lines, at most " + std::to_string(kLinesOfFunction)});
  }
  return out;
}

Breaches CheckLicence(const Source& source) {
  const bool script = source.In("scripts/") || source.text.starts_with("#!");
  const bool hashed = script || source.path.ends_with(".cmake") || source.path.ends_with("CMakeLists.txt");
  if (!source.IsCode() && !hashed) return {};
  const std::string sign = hashed ? "# " : "// ";
  std::vector<std::string_view> lines = Lines(source.text);
  // What the system or a linter reads before anything else.
  while (!lines.empty() && (lines[0].starts_with("#!") || lines[0].starts_with("# shellcheck")))
    lines.erase(lines.begin());
  const bool good = lines.size() >= 2 && lines[0] == sign + "SPDX-FileCopyrightText: 2026 The Quillon developers" &&
                    lines[1] == sign + "SPDX-License-Identifier: GPL-3.0-or-later";
  if (good) return {};
  return {{source.path, 1, "the licence lines are missing"}};
}

Breaches CheckText(const Source& source) {
  Breaches out;
  if (source.path == "LICENSE") return out;
  static const std::regex kUnfinished = UnfinishedWords();
  Match(source, source.text, kUnfinished, "unfinished work", {"TO", "FIX", "XX", "HA"}, out);
  int number = 0;
  for (const std::string_view line : Lines(source.text)) {
    ++number;
    if (line.find('\t') != std::string_view::npos) out.push_back({source.path, number, "a tab"});
    if (line.find('\r') != std::string_view::npos) out.push_back({source.path, number, "a carriage return"});
    if (line.ends_with(' ')) out.push_back({source.path, number, "blanks at the end of the line"});
  }
  if (!source.text.ends_with("\n") || source.text.ends_with("\n\n")) {
    out.push_back({source.path, 0, "ends in no newline or in several"});
  }
  return out;
}

Breaches CheckNames(const Source& source) {
  static const std::regex kName(R"([a-z0-9_]+\.(h|cpp))");
  static const std::regex kUsing(R"(\busing\s+namespace\b)");
  Breaches out;
  if (!source.IsCode()) return out;
  const std::string name = source.path.substr(source.path.rfind('/') + 1);
  if (!std::regex_match(name, kName))
    out.push_back({source.path, 0, "files are named lower_snake.h or lower_snake.cpp"});
  if (!source.IsHeader()) {
    const bool tests = source.text.find("\nTEST") != std::string::npos;
    if (tests && !name.ends_with("_test.cpp")) out.push_back({source.path, 0, "tests stand in files named *_test.cpp"});
    return out;
  }
  const std::string code = CodeOf(source.text, Literals::Blank);
  if (code.find("#pragma once\n") == std::string::npos) out.push_back({source.path, 0, "has no #pragma once"});
  Match(source, code, kUsing, "in a header", {"using"}, out);
  return out;
}

Breaches CheckTinyFiles(const std::vector<Source>& tree) {
  std::vector<std::string> tiny;
  std::size_t all = 0;
  for (const Source& source : tree) {
    if (!source.In("src/") || !source.IsCode()) continue;
    ++all;
    if (Lines(source.text).size() <= kTinyLines) tiny.push_back(source.path);
  }
  if (tiny.size() * 100 <= all * kTinyShare) return {};
  std::string what = std::to_string(tiny.size()) + " of " + std::to_string(all) + " files have at most " +
                     std::to_string(kTinyLines) + " lines; merge some that belong together:";
  for (const std::string& path : tiny) what += " " + path;
  return {{"src", 0, what}};
}

Breaches CheckFolders(const std::vector<Source>& tree) {
  std::map<std::string, int> files;
  for (const Source& source : tree) {
    if (source.In("src/") && source.IsCode()) ++files[source.path.substr(0, source.path.rfind('/'))];
  }
  Breaches out;
  for (const auto& [folder, count] : files) {
    if (count <= kFilesOfFolder) continue;
    out.push_back({folder, 0, std::to_string(count) + " files, at most " + std::to_string(kFilesOfFolder)});
  }
  return out;
}

Breaches CheckHeavyHeaders(const std::vector<Source>& tree) {
  std::set<std::string> heavy;
  for (const Source& source : tree) {
    if (!source.In("src/") || !source.IsHeader()) continue;
    for (const Include& include : IncludesOf(source.text)) {
      if (IsHeavy(include.name)) heavy.insert(source.path);
    }
  }
  Breaches out;
  for (const Source& source : tree) {
    if (!source.In("src/") || !source.IsCode()) continue;
    for (const Include& include : IncludesOf(source.text)) {
      const std::string path = "src/" + include.name;
      if (heavy.contains(path) && LibraryOf(path) != LibraryOf(source.path)) {
        out.push_back({source.path, include.line, "this header is private to its library: " + include.name});
      }
    }
  }
  return out;
}

}  // namespace quillon::arch
