#pragma once
// Text for the command line's messages: file names and the picture loader's words as they are,
// except bytes that are not UTF-8, which are written as \xNN so a terminal or a log shows them
// and the line stays one line.

#include <string>

// The text with every byte of an invalid UTF-8 sequence, and every control character, as \xNN.
std::string PrintableText(const std::string& text);
