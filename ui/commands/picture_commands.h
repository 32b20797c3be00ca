#pragma once
// "Load Picture": a picture file into the show, either replacing the picture at the current
// frame or added after the last one.

class CDoc;

// Where a loaded picture goes.
struct PictureSlot {
    int slot = -1;   // the picture slot; -1 when the show is full and no picture is replaced
    long frame = 0;  // its start frame
};

// The slot for a picture loaded at frame `target`: the first picture that starts at or before
// it and less than 6 x timelineScale / fps frames before it is replaced; otherwise the picture
// goes after the last one, one second after that picture's last key when the last picture
// starts at or after `target`. An empty show takes it at frame 0.
PictureSlot ChoosePictureSlot(const CDoc& doc, long target, int timelineScale, long fps);

// The picture file filter of the open dialog: the formats the readers know.
const char* PictureFileFilter();

// The command (1010): asks for the file (the viewer hidden meanwhile), loads it into its slot,
// offers to match the moves to a new size, and goes to its frame. `jump` (1011) moves the
// current frame on by "PicJump" frames afterwards.
void LoadPictureCommand(bool jump);
