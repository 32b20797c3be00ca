#include "output/show_frame.h"

#include "doc/cdoc.h"
#include "doc/frame_math.h"

namespace {

// Only the draft renderer's nearest-pixel rotating filter leaves the alpha byte of a 24-bit
// picture's frame as it finds it; every other filter writes all four bytes of each pixel. A pass
// over the whole frame costs about a twentieth of a full-quality render, so it is made only there.
bool RenderOpaque(CDoc& doc, long frame, int fieldMode, CDIB* out, bool outgoing)
{
    if (doc.draftRender)
        out->SetAlpha(255);
    return doc.RenderFrame(frame, fieldMode, false, out->GetWid(), out->GetHgt(), out, outgoing);
}

}  // namespace

bool RenderShowFrame(CDoc& doc, long frame, int fieldMode, CDIB* out, CDIB* incoming)
{
    int width = out->GetWid();
    int height = out->GetHgt();
    bool rendered = RenderOpaque(doc, frame, fieldMode, out, true);
    // During a dissolve the frame above is the outgoing picture; the incoming one is mixed in more
    // and more until it alone is left.
    int pic = doc.FindCurPic(frame);
    long pictureStart = doc.GetPicStart(pic);
    long dissolve = FrameOfFloat(doc.keys[pic][0].TransLen);
    if (pic > 0 && dissolve > 0 && frame >= pictureStart && frame < pictureStart + dissolve &&
        incoming->Create(width, height, 32) &&
        RenderOpaque(doc, frame, fieldMode, incoming, false)) {
        double outgoingShare =
            1.0 - static_cast<double>(frame - pictureStart) / static_cast<double>(dissolve);
        out->Dissolve(incoming, static_cast<float>(outgoingShare));
    }
    return rendered;
}
