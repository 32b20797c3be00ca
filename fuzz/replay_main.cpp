// Replays fuzz inputs without libFuzzer: every file named on the command line, and every file in
// every folder named there, goes once through the target. Used where clang is not available.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

static int ReplayFile(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
    return 1;
}

int main(int argc, char** argv)
{
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        std::filesystem::path path(argv[i]);
        std::error_code error;
        if (std::filesystem::is_directory(path, error)) {
            for (const auto& entry : std::filesystem::directory_iterator(path, error))
                if (entry.is_regular_file())
                    count += ReplayFile(entry.path());
        } else if (std::filesystem::is_regular_file(path, error)) {
            count += ReplayFile(path);
        }
    }
    std::printf("replayed %d inputs\n", count);
    return 0;
}
