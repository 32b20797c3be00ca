#pragma once
// The editor's own pictures that are not buttons or cursors (those are painted by the portable
// layer): the background tile of the main window, drawn by code at whatever size it is drawn, so
// it stays sharp on screens of any pixel density.

constexpr int kBackgroundTile = 113;  // 128 x 128; the main window is tiled with it
constexpr int kBackgroundTileSize = 128;

// The tile's two colours (0x00BBGGRR): a light grey ground with a darker line every
// kTileStripe columns. It changes only along x, so tiles laid at any height meet seamlessly.
constexpr long kTileGround = 0xCCCCCC;
constexpr long kTileLine = 0xBDBDBD;
constexpr int kTileStripe = 4;

// Registers the pictures with DrawBitmap (bitmap_draw.h); harmless to call again.
void RegisterEditorPictures();
