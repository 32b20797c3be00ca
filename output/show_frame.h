#pragma once
// One frame of the show as a movie shows it: the frame renderer's picture, and during a dissolve
// the incoming picture mixed over the outgoing one. Shared by the movie render loop and the Flash
// export, so both write the same frames.

class CDIB;
class CDoc;

// Renders show frame `frame` (field mode as CDoc::RenderFrame takes it) into `out`, which has
// the movie's size and 32 bits. `incoming` is scratch space for the second picture of a
// dissolve (re-created at out's size when one is needed). A draft frame starts opaque, so the
// nearest-pixel filter that leaves alpha alone leaves it opaque; full-quality filters write alpha
// themselves, and where a 32-bit picture does not cover the frame alpha stays as the renderer
// wrote it. False when the renderer refused the frame.
bool RenderShowFrame(CDoc& doc, long frame, int fieldMode, CDIB* out, CDIB* incoming);
