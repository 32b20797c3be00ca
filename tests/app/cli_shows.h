#pragma once
// Show files for the command line's tests: two pictures with a dissolve, written to a folder.

#include <memory>
#include <string>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "platform/base/env.h"
#include "platform/file/paths.h"
#include "platform/ini/settings.h"
#include "support/bmp_files.h"

namespace pxtest {

// Writes `show` (a .plx) in `folder`: a picture of horizontal bands from frame 0, and one of
// vertical bands from frame `second` with a dissolve of `dissolve` frames into it; each
// picture's camera runs over `second` frames. The pictures are a.bmp and b.bmp beside the show.
inline bool WriteTwoPictureShow(const std::string& folder, const std::string& show,
                                long second = 30, float dissolve = 12.0f)
{
    SetEnvName("Parallaxotron");
    std::string header = "[Parallaxotron]\r\n";
    LoadIniText(header.data(), header.size());
    auto doc = std::make_unique<CDoc>();
    CDoc* before = pDoc;
    pDoc = doc.get();
    bool written = WriteBmp24(folder + "/a.bmp", 64, 48,
                              [](int, int y) {
                                  return Rgb{uint8_t(y * 5), 40, 200};
                              }) &&
                   WriteBmp24(folder + "/b.bmp", 64, 48, [](int x, int) {
                       return Rgb{220, uint8_t(x * 4), 30};
                   });
    if (written) {
        FSpec a = PathFSpec((folder + "/a.bmp").c_str());
        FSpec b = PathFSpec((folder + "/b.bmp").c_str());
        doc->LoadPicture(&a, 0, 0);
        doc->LoadPicture(&b, 1, second);
        for (int pic = 0; pic < 2; ++pic) {
            KeyStruct last = doc->keys[pic][0];
            last.Frame = static_cast<int>(second);
            last.Width *= 0.5f;  // the camera closes in: every frame differs
            doc->SetKey(1, last, pic);
        }
        doc->keys[1][0].TransLen = dissolve;
        FSpec where = PathFSpec((folder + "/" + show).c_str());
        written = doc->picCount == 2 && doc->WriteShowFile(&where);
    }
    pDoc = before;
    return written;
}

}  // namespace pxtest
