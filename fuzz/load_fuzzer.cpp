// Fuzzes picture loading as a whole: the format told from the first bytes, the Targa reader
// tried on anything unmarked, and the platform importer taking what it refuses.

#include <cstdint>

#include "picture_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static pxfuzz::ScratchFile input("load-in");
    input.Write(data, size);
    pxfuzz::FuzzDIB image(2, 2, 32);
    CPFile file(input.Spec(), kFileRead);
    pxfuzz::Check(file.GetFileNum() != 0);
    pxfuzz::CheckResult(image.Load(&file), image);
    return 0;
}
