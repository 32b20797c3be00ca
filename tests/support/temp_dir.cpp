#include "support/temp_dir.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace pxtest {

TempDir::TempDir()
{
    std::string pattern = (std::filesystem::temp_directory_path() / "pxtest-XXXXXX").string();
    if (mkdtemp(pattern.data()) != nullptr)
        path_ = pattern;
}

TempDir::~TempDir()
{
    std::error_code ignored;
    if (!path_.empty())
        std::filesystem::remove_all(path_, ignored);
}

bool WriteBytes(const std::string& path, const std::vector<unsigned char>& bytes)
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(bytes.size()));
    return static_cast<bool>(out);
}

bool WriteText(const std::string& path, const std::string& text)
{
    return WriteBytes(path, std::vector<unsigned char>(text.begin(), text.end()));
}

std::vector<unsigned char> ReadBytes(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::vector<unsigned char>(std::istreambuf_iterator<char>(in),
                                      std::istreambuf_iterator<char>());
}

std::string ReadText(const std::string& path)
{
    std::vector<unsigned char> bytes = ReadBytes(path);
    return std::string(bytes.begin(), bytes.end());
}

bool FileExists(const std::string& path)
{
    std::error_code ignored;
    return std::filesystem::exists(path, ignored);
}

}  // namespace pxtest
