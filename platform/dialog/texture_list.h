#pragma once
// The textures the colour picker offers: the picture files of the folder named by the
// "TextureFolder" setting, shown small so that a colour can be picked off them.

#include <cstdint>
#include <string>
#include <vector>

constexpr int kMaxTextures = 256;         // files listed from one folder, the first by name
constexpr int kTexturePreviewWidth = 96;  // pixels of a texture's picture in the picker
constexpr int kTexturePreviewHeight = 64;

// Full paths (UTF-8) of the files in `folder` whose extension names a picture format the
// platform reads, sorted by name without regard to case; at most kMaxTextures. Empty for a null,
// empty or missing folder.
std::vector<std::string> ListTextures(const char* folder);

// The picture of `path` scaled to kTexturePreviewWidth x kTexturePreviewHeight, every pixel a
// 0x00RRGGBB word (blue, green, red, 0 in memory), top row first. False, with `pixels` emptied,
// when the file cannot be read as a picture.
bool LoadTexturePreview(const std::string& path, std::vector<uint32_t>* pixels);
