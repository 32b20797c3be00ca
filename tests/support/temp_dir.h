#pragma once
// Test helpers: a temporary folder removed at the end of the test, and whole-file bytes.

#include <string>
#include <vector>

namespace pxtest {

// A fresh folder under the system's temporary folder; removed with its contents on destruction.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::string& Path() const { return path_; }
    // Path of a file inside the folder.
    std::string File(const std::string& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

bool WriteBytes(const std::string& path, const std::vector<unsigned char>& bytes);
bool WriteText(const std::string& path, const std::string& text);
// The whole file; empty when it cannot be read.
std::vector<unsigned char> ReadBytes(const std::string& path);
std::string ReadText(const std::string& path);
bool FileExists(const std::string& path);

}  // namespace pxtest
