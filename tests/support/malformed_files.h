#pragma once
// The damaged inputs kept in tests/data/<format>/malformed/, each named "<code>-<what it is>":
// the answer its reader must give, then what is wrong with it. Read from the folder CTest names
// in PX_TEST_DATA (the source tree's copy when a test program is run by hand).

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace pxtest {

struct MalformedFile {
    std::string path;
    int code;
    std::vector<unsigned char> bytes;  // the whole file
};

// Every kept file of the format, sorted by name.
inline std::vector<MalformedFile> MalformedFiles(const std::string& format)
{
    const char* data = std::getenv("PX_TEST_DATA");
    std::filesystem::path folder =
        std::filesystem::path(data ? data : PX_SOURCE_DIR "/tests/data") / format / "malformed";
    std::vector<MalformedFile> files;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
        std::string name = entry.path().filename().string();
        std::ifstream in(entry.path(), std::ios::binary);
        std::vector<unsigned char> bytes((std::istreambuf_iterator<char>(in)),
                                         std::istreambuf_iterator<char>());
        files.push_back({entry.path().string(), std::atoi(name.c_str()), std::move(bytes)});
    }
    std::sort(files.begin(), files.end(),
              [](const MalformedFile& a, const MalformedFile& b) { return a.path < b.path; });
    return files;
}

}  // namespace pxtest
