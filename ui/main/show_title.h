#pragma once
// The main window's title: the product name, then " - " and the show's name when a show file is
// open ("Hollerbank Parallaxotron - My Trip" for /shows/My Trip.plx).

constexpr int kTitleSize = 512;
constexpr const char* kProductTitle = "Hollerbank Parallaxotron";

// Writes the title into `out` (kTitleSize characters with the terminator). `path` may be null;
// its folder and extension are left out. The reduced variant is titled with the program's own
// name (productName) instead of kProductTitle.
void MakeShowTitle(const char* path, const char* productName, char* out);
