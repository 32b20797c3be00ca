#pragma once
// The Options, Render and View menus and the frame-rate items: check items kept in step with the
// settings, the ease and curve choice, the output's aspect, the stage's zoom and the timeline's
// scale. The step rules are plain functions, tested without windows.

// Stage zoom in: 0.1 goes on as 0.125; doubled, at most 1.0. Steps 0.1, 0.25, 0.5, 1.0.
float StageZoomIn(float scale);
// Stage zoom out: halved; below 0.25 (compared in whole percent) it is 0.1.
float StageZoomOut(float scale);
// Timeline enlarge at `frameRate` (hundredths of a frame per second): min(fps x 64, 2 x scale),
// above fps rounded down to a multiple of fps.
int EnlargeTimelineScale(int scale, long frameRate);
// Timeline contract: max((rate + 50) / 400, scale / 2) rounded down to a multiple of 5; never
// below 1, so the timeline always has a scale to divide by.
int ContractTimelineScale(int scale, long frameRate);
// The show ease after an ease item (1003..1006): "no curves" (bit 16) kept, the kind replaced.
int EaseAfterKind(int ease, int command);
// The show ease after "No Curves": bit 16 flipped, the slow-in/slow-out kind kept.
int EaseAfterNoCurves(int ease);

// The commands (each finds its own windows through the global pointers).
void ToggleCameraPath();            // 1000
void ToggleAutoRescale();           // 1002
void ChooseEase(int command);       // 1003 .. 1006
void ToggleNoCurves();              // 1007
void ChooseFrameRate(int command);  // 1015 NTSC, 1016 PAL, 1017 Film
void ChooseAspect(int command);     // 1030 4:3, 1031 16:9, 1032 letterboxed 16:9
void ToggleDraft();                 // 1033
void ToggleMultiprocessor();        // 1034
void ToggleMotionBlur();            // 1035
void ToggleTvSafe();                // 1040
void ToggleCentrePicture();         // 1041
void ZoomStage(bool in);            // 1042, 1043
void ScaleTimeline(bool enlarge);   // 1044, 1045
