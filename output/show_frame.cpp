#include "output/show_frame.h"

#include "doc/cdoc.h"
#include "doc/frame_math.h"

bool RenderShowFrame(CDoc& doc, long frame, int fieldMode, CDIB* out, CDIB* incoming)
{
    int width = out->GetWid();
    int height = out->GetHgt();
    out->SetAlpha(255);
    bool rendered = doc.RenderFrame(frame, fieldMode, false, width, height, out, true);
    // During a dissolve the frame above is the outgoing picture; the incoming one is mixed in more
    // and more until it alone is left.
    int pic = doc.FindCurPic(frame);
    long pictureStart = doc.GetPicStart(pic);
    long dissolve = FrameOfFloat(doc.keys[pic][0].TransLen);
    if (pic > 0 && dissolve > 0 && frame >= pictureStart && frame < pictureStart + dissolve &&
        incoming->Create(width, height, 32) && incoming->SetAlpha(255) &&
        doc.RenderFrame(frame, fieldMode, false, width, height, incoming, false)) {
        double outgoingShare =
            1.0 - static_cast<double>(frame - pictureStart) / static_cast<double>(dissolve);
        out->Dissolve(incoming, static_cast<float>(outgoingShare));
    }
    return rendered;
}
