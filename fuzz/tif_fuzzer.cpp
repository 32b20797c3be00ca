// Fuzzes the TIFF reader: any bytes, read into an image that already holds a picture (so the
// reuse of an image of the same size is exercised too).

#include <cstdint>

#include "picture_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static pxfuzz::ScratchFile input("tif-in");
    input.Write(data, size);
    pxfuzz::FuzzDIB image(3, 5, 24);
    CPFile file(input.Spec(), kFileRead);
    pxfuzz::Check(file.GetFileNum() != 0);
    pxfuzz::CheckResult(image.LoadTif(&file), image);
    return 0;
}
