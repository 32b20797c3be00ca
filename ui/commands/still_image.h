#pragma once
// "Make Still Image": the camera's view at the current frame, rendered at the movie's size
// ("MovieWid" x "MovieHgt") and saved as a Targa picture.

// "Targa Image (*.tga)|*.tga|"
const char* StillImageFilter();

// The command (1037): asks where, renders, saves (whole or not at all), beeps. False when
// cancelled or nothing could be made; the picture save reports its own failures.
bool MakeStillImageCommand();
