#pragma once
// The program's own pictures, built into the program as Qt resources and named by number
// (133: the placeholder shown for a picture whose file is missing or unreadable).

#include "platform/picture/importer.h"

constexpr int kPlaceholderPicture = 133;

// Decodes built-in picture `resourceId` into the caller's rows (see importer.h for the layout).
// kImportUnreadable when there is no such picture.
ImportResult LoadResourcePicture(int resourceId, PictureRows* rows);
// True when the program carries picture `resourceId`.
bool HasResourcePicture(int resourceId);
