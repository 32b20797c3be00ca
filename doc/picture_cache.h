#pragma once
// Loading a show's pictures: the request handed to the picture loader (lbThreadFunc) and the one
// preparation every picture gets before the renderer cuts frames from it.

#include <cstdint>

#include "image/cdib.h"
#include "platform/file/fspec.h"

// How a loaded picture is made ready: a border of matte colour, the depth, and the adjustments.
struct PicturePreparation {
    long matteColor = 0;
    int border = 0;   // half-percent of the picture width; negative tints with the matte colour
    int depth = 24;   // the document's depth: 32, or 24 when alpha is ignored
    int preBlur = 0;  // blur pass first when above 0
    uint16_t showWord = 12850;  // two contrast settings, low byte first; 49..51 both mean none
    bool videoColors = false;
};

// Border in pixels around a picture `width` wide: trunc(border / 200 x width), none for 0 or less.
int BorderPixels(int border, int width);

// The depth a picture of `pictureBits` is kept at: its own, at least 24, at most the document's.
int PictureDepth(int pictureBits, int documentDepth);

// Makes `target` the prepared form of `picture`: (width + 2b) x (height + 2b) at PictureDepth,
// the picture centred on the matte colour, then pre-blur, tint, contrast and video-safe colours.
// False (target as far as it got) when the target cannot be created.
bool PreparePicture(CDIB& target, const CDIB& picture, const PicturePreparation& preparation);
// PreparePicture for a picture just decoded: when it needs no border and keeps its depth, its
// pixels move into `target` (which then holds them with Create's nominal size) and `loaded` is
// left with what `target` held; otherwise it is copied as PreparePicture does.
bool PrepareLoadedPicture(CDIB& target, CDIB& loaded, const PicturePreparation& preparation);

// One picture to load into an image, and where to say that the load is under way or done.
struct PictureLoadRequest {
    CDIB* target = nullptr;
    FSpec spec{};
    bool* busy = nullptr;   // set while the load runs
    int* result = nullptr;  // the loader's result (1 loaded, 0 failed, 2 placeholder)
    PicturePreparation preparation;
    FSpec alternativeFolder{};  // path form of "AltImageFolder"; empty name for none
    bool showErrors = true;     // "ShowPicError"
};

// Loads the request's picture, prepares it into the target, and frees the request. Answers the
// loader's result.
int lbThreadFunc(void* request);
