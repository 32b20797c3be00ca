// Fuzzes the Targa reader. A picture it loads is saved as a Targa and read back: the rows must
// come back unchanged (the reader clears each row's padding, so the padding matches too).

#include <cstdint>

#include "picture_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static pxfuzz::ScratchFile input("tga-in");
    static pxfuzz::ScratchFile output("tga-out");
    input.Write(data, size);

    pxfuzz::FuzzDIB image(1, 1, 24);
    int code;
    {
        CPFile file(input.Spec(), kFileRead);
        pxfuzz::Check(file.GetFileNum() != 0);
        code = image.LoadTga(&file);
    }
    pxfuzz::CheckResult(code, image);
    if (code != 0)
        return 0;

    output.Clear();
    {
        CPFile file(output.Spec(), kFileWrite);
        pxfuzz::Check(image.Save(&file, 1));
    }
    CDIB back(1, 1, 8);
    CPFile file(output.Spec(), kFileRead);
    pxfuzz::Check(back.LoadTga(&file) == 0);
    pxfuzz::Check(pxfuzz::SameRows(image, back));
    return 0;
}
