#pragma once
// The camera path on the stage: the camera centre of a picture frame by frame, as one line.

#include "doc/key.h"

// Draws the path through n keys with the show's ease, each point at trunc(x x scale) + originX,
// trunc(y x scale) + originY on the current drawing port, 1 pixel wide in `colour`.
void DrawCurve(int n, const KeyStruct* keys, int ease, int originX, int originY, float scale,
               long colour);
