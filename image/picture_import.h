#pragma once
// Pictures the program's own readers do not take, through the platform picture importer, and
// the program's built-in pictures. Both arrive as 32-bit images (blue, green, red, alpha; alpha
// 255 where the file has none).

class CDIB;
class CPFile;
struct FSpec;

// Reads any picture the platform can decode (JPEG, PNG, GIF, ...) into `target`, which must
// have a header like every reader's target. Answers a reader's result code: 0 loaded, 2 a side
// above 8192, 3 not a picture the platform knows, 4 no header, 6 no memory.
int MacLoadPict(CDIB* target, CPFile* file);
int MacLoadPict(CDIB* target, const FSpec* file);

// Makes `target` built-in picture `resourceId` (133: the placeholder for a picture that cannot
// be loaded). False, with the target left as it was, for a number the program has no picture for.
bool BitmapToDIB(CDIB* target, int resourceId);

// The JPEG library interface. No JPEG library is part of this program: JP_DllInstalled answers
// false, and the other three do nothing and answer 0. JPEG files reach the platform importer
// instead (through MacLoadPict).
bool JP_DllInstalled();
long JP_JpegToMem(CPFile* file, unsigned char* buffer, long bufferBytes, long* width, long* height);
int JP_JpegToDIB(CDIB* target, CPFile* file);
int JP_JpegFromDIB(CDIB* source, CPFile* file, int quality);

// Hosted inside a video editor, pictures come from the host's timeline instead of files: while
// this flag is set, CDIB::Load(FSpec*, ...) answers what GetSourceImage answers. The stand-alone
// program leaves it false.
extern bool gGetImageFromTimeline;
// What the host embedding gives: fills `target` with the host's current picture and answers
// like CDIB::Load(FSpec*, ...) (1 loaded, 0 failed and reported, 2 replaced by the placeholder).
using SourceImageProvider = int (*)(CDIB* target);
void SetSourceImageProvider(SourceImageProvider provider);
// Asks the provider; 0 when there is none.
int GetSourceImage(CDIB* target);
