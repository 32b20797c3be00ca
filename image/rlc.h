#pragma once
// Run-length packed rows (the PackBits scheme), as Photoshop files store their picture rows.
//
// A row is a series of runs, each led by a signed count byte n:
//   0 ... 127     the next n + 1 bytes are copied as they are
//   -127 ... -1   the next byte is repeated 1 - n times
//   -128          nothing (a filler)

// Unpacks one row of `inputBytes` packed bytes into `output`, which holds `outputBytes`. Stops
// when the row is full or the input is used up, whichever comes first: nothing is ever written
// past the row's end nor read past the input's end (a run that would pass either is cut short).
// Answers the number of bytes written; a row that decodes short answers fewer than outputBytes.
long RLCUnPack(const unsigned char* input, long inputBytes, unsigned char* output,
               long outputBytes);
