#pragma once
// The length of a finished movie in frames, read back through the movie reader.

#include <string>

#include "image/cdib.h"
#include "output/movie.h"
#include "platform/file/paths.h"

namespace pxtest {

// The movie's duration in frame periods of 100 units; -1 when it cannot be read.
inline long MovieFrames(const std::string& path)
{
    FSpec movie = PathFSpec(path.c_str());
    CDIB frame(1, 1, 32);
    if (!QTMovieReadOpen(&movie, &frame))
        return -1;
    long frames = QTGetMovieDuration() / 100;
    QTMovieReadClose();
    return frames;
}

}  // namespace pxtest
