#pragma once
// Inside the picture folder only: the decoder both the importer and the built-in pictures use.

#include "platform/picture/importer.h"

class QIODevice;

// Reads one picture from an open device into the caller's rows (layout in importer.h).
ImportResult DecodePicture(QIODevice* device, int maxSide, PictureRows* rows);
