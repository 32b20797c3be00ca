#pragma once
// The Qt side of a DrawPort, for the portable layer's own files only.

#include <QImage>

#include "platform/draw/draw_port.h"

struct DrawPort::Backing {
    QImage image;  // Format_RGB32
};
