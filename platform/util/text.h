#pragma once
// Helpers on NUL-terminated texts, all working in place in the caller's buffer. Texts are UTF-8;
// the separators and markers looked for are all ASCII.

// Removes every CR (13) and LF (10). Only the first 512 characters are examined; the rest of the
// text is dropped.
void StripCR(char* text);
// Only when the text holds a ".": removes trailing "0"s, then a "." left at the end
// ("2.50" -> "2.5", "3.00" -> "3", "100" stays).
void StripTrailingZeros(char* text);
// Cuts the text at its first "." ("a.b.c" -> "a").
void StripFileExt(char* text);
// Keeps what follows the last separator ("Disk:Shows:a.plx" -> "a.plx"). ":", "\" and "/" are
// separators; a ":" or "\" in the first position is not seen, a "/" there is (a POSIX absolute
// path). Only the first 1,022 characters are searched and kept; a text without a separator among
// them is left as it is.
void StripFilePath(char* text);
// Keeps the folder part: cuts just after the last separator (as for StripFilePath), keeping it.
// With no separator the text becomes empty.
void StripFileName(char* text);
// ASCII letters to lower or upper case; other bytes are left alone.
void lowercase(char* text);
void uppercase(char* text);

// Fits the text into width pixels in the current font. A text that fits is left alone; otherwise
// characters come off the end until text + ellipsis fits and the ellipsis is appended; when even
// the ellipsis alone is too wide, the text becomes the ellipsis alone. The buffer needs room for
// the text and the ellipsis together. Answers the width of the resulting text.
long ShrinkTextWidth(char* text, long width, const char* ellipsis);
// Breaks a line that is wider than width pixels: cuts the text at the last space before which it
// still fits and answers the index just after that space, where the rest of the line begins.
// Answers 0 with the text unchanged when it fits, and 0 with the text emptied when no space
// gives a line that fits.
long WrapText(char* text, long width);
// Cuts the text at every separator, storing the start of each part in parts (the caller gives
// room for one more than the number of separators). Answers the number of parts, 0 for null.
int Split(char* text, char** parts, char separator);

// Appends length bytes of text (all of it when length is 0) to the debug file, then the end
// character unless it is 0. The file is <cache>/<program name>/debug.txt, where <cache> is
// $XDG_CACHE_HOME, else ~/.cache, else /tmp (see GetDebugFilePath).
void DebugStream(const char* text, long length, char end);
// The debug file's path, cut to max - 1 characters.
void GetDebugFilePath(char* out, long max);
