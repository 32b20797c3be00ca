// Fuzzes the Photoshop reader, packed rows included.

#include <cstdint>

#include "picture_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static pxfuzz::ScratchFile input("psd-in");
    input.Write(data, size);
    pxfuzz::FuzzDIB image(3, 2, 24);
    CPFile file(input.Spec(), kFileRead);
    pxfuzz::Check(file.GetFileNum() != 0);
    pxfuzz::CheckResult(image.LoadPsd(&file), image);
    return 0;
}
