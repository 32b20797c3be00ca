// Fuzzes the BMP reader. A picture it loads is saved as a BMP and read back: apart from 8-bit
// pictures (whose files state a data offset 256 bytes short, as the program's files always have)
// the rows must come back unchanged.

#include <cstdint>

#include "picture_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static pxfuzz::ScratchFile input("bmp-in");
    static pxfuzz::ScratchFile output("bmp-out");
    input.Write(data, size);

    pxfuzz::FuzzDIB image(1, 1, 24);
    int code;
    {
        CPFile file(input.Spec(), kFileRead);
        pxfuzz::Check(file.GetFileNum() != 0);
        code = image.LoadBmp(&file);
    }
    pxfuzz::CheckResult(code, image);
    if (code != 0 || image.GetBitCount() == 8)
        return 0;

    output.Clear();
    {
        CPFile file(output.Spec(), kFileWrite);
        pxfuzz::Check(image.Save(&file, 0));
    }
    CDIB back(1, 1, 8);
    CPFile file(output.Spec(), kFileRead);
    pxfuzz::Check(back.LoadBmp(&file) == 0);
    pxfuzz::Check(pxfuzz::SameRows(image, back));
    return 0;
}
