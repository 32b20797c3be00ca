#pragma once
// KeyStruct: one camera key. The same 56-byte record is the show file's key record and the undo
// ring's entry, so its fields, their order and their widths are fixed.

#include <cstdint>

struct KeyStruct {
    float XPos;       // camera centre, picture pixels
    float Spare1;     // first key of the first picture: the show file's version stamp
    float YPos;       // camera centre, picture pixels counted down from the top row (the
                      // picture is stored bottom row first: storage row = height - YPos)
    float Width;      // camera frame width, picture pixels (height follows from the aspect)
    float VertExtra;  // carried, and rescaled vertically by RescaleMoves; never interpolated
    float Rot2;       // second rotation value, handed to the camera filter
    float Rot3;       // third rotation value
    float Rotation;   // camera rotation, degrees
    float Ease;       // ease code of the segment starting here; 0 = the show's default
    float PicStart;   // key 0 only: the picture's start frame on the show's time line
    float TransLen;   // key 0 only: frames of transition from the previous picture
    float ShowLen;    // key 0 only: show length in frames, written when the show is saved
    int32_t Frame;    // frames after the picture's start (key 0 is at 0)
    // Undo ring use: [0] picture index, [1] action code. Zero in a new key; carried everywhere.
    int16_t Reserved[2];
};

static_assert(sizeof(KeyStruct) == 56, "a key is fourteen 4-byte fields");

// All fourteen fields zero: the identity key.
void KeyIdentity(KeyStruct& key);
