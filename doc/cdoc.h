#pragma once
// CDoc: the show document, the one model of the program. Pictures laid end to end on one time
// line, each with its camera keys, held in fixed tables that never grow.
//
// Picture indices are 0-based and below kMaxPictures; key indices below kMaxKeys. Indices out of
// range are ignored silently (reads leave their output untouched).

#include <cstdint>

#include "doc/edit_state.h"
#include "doc/key.h"
#include "image/cdib.h"
#include "platform/file/fspec.h"

constexpr int kMaxPictures = 64;
constexpr int kMaxKeys = 64;
constexpr int kUndoEntries = 32;
// The tables have one more picture slot than a show may use: scratch space for picture swaps.
constexpr int kPictureSlots = kMaxPictures + 1;
constexpr int kTextSetting = 256;  // folder settings: 255 characters and a terminator

// Undo action codes kept in an entry's Reserved[1] (0..63: the index of the key to swap back).
constexpr int kUndoRedelete = 96;
constexpr int kUndoDeletedKey = 97;
constexpr int kUndoPictureSwap = 98;

class DocEditor;

// What came of opening a show file.
enum class ShowFileResult {
    kOpened,
    kCantOpen,  // missing or unreadable
    kNotAShow,  // read, but not a show: the current show is left as it was
};

struct PicturePreparation;

class CDoc {
public:
    CDoc();
    ~CDoc();
    CDoc(const CDoc&) = delete;
    CDoc& operator=(const CDoc&) = delete;

    // Empties the show: no pictures, every slot one key at (200, 200) width 100, empty undo ring.
    void ClearShow();

    // Start frame of a picture (its key 0 PicStart, truncated toward zero); 0 out of range.
    long GetPicStart(int pic) const;
    void SetPicStart(long frame, int pic);

    // Copies key `key` of picture `pic`; leaves `out` untouched for an index of 64 or more.
    void GetKey(int key, KeyStruct& out, int pic) const;
    // Stores a key and marks the show modified. At or past the key count it appends (the count
    // grows by one, never above 64). Index 64 addresses key 0 of the following slot.
    void SetKey(int key, const KeyStruct& in, int pic);
    int GetKeyCount(int pic) const;

    // The picture on screen at an absolute frame; the last picture when no start matches.
    int FindCurPic(long frame) const;
    // The first key of the picture at `frame` within 3 frames of it, or -1.
    int FindKey(long frame) const;
    // Orders a picture's keys by Frame (selection sort: the earliest-stored of equal minima wins).
    void SortKeys(int pic);
    // Removes one key, recording it for undo first.
    void DeleteKey(int key, int pic);
    // Every key of every picture in use goes back to the show's default ease.
    void DefaultEase();
    // True when rotation is forced on, or any key of the picture turns (or holds a NaN) in any of
    // its three rotation values: the renderer then takes the rotating filter.
    bool HasRotationInShow(int pic) const;

    // The camera of picture `pic` at absolute `frame`: position and width on the fitted curve,
    // the three rotations on straight lines, and the ease code of the segment in force.
    // secondField samples half a frame later (the second field of an interlaced frame).
    void QueueKey(KeyStruct* out, int pic, long frame, int secondField) const;

    // --- Timing edits (each records the old keys for undo first and marks the show modified) ---
    // Moves every key after `frame` of the picture there, and every later picture, by delta.
    bool ShiftKeys(long frame, long delta);
    // A picture's start dropped at `frame`: a move, or a swap with the picture dropped on.
    bool ChangePicTiming(long frame, int pic);
    // Copies keys and file record; either index may be the scratch slot 64.
    void CopyPic(int dst, int src);
    // Swaps two pictures' contents; each time slot keeps its own start.
    void FlopPic(int a, int b);
    // Removes a picture; later pictures move down into the earlier time slots.
    void DeletePic(int pic);
    // Trims the show to `length` frames, ending every move exactly there.
    bool ChopShow(long length);
    // Rescales the key times of the first picture from one show length to another.
    bool RescaleShow(long from, long to);
    // Rescales key positions and widths of a picture whose file changed size.
    void RescaleMoves(int pic, int oldWidth, int oldHeight, int newWidth, int newHeight);
    // "Uniform Speed": re-times the keys so the camera travels at one speed.
    void ConstantMotion(int pic);

    // The add-key command: the editor's current camera becomes a key of the picture on screen
    // (a key within the tolerance is replaced). True when a new key was made.
    bool AddKey();

    // --- Undo ring -----------------------------------------------------------------------------
    // Records an undo entry: a copy of `key` with the picture and the action in Reserved.
    void Do(const KeyStruct& key, int action, int pic);
    // Applies the entry at the head and rewrites it into its own inverse.
    void UnDoAction();
    void UnDo();
    void ReDo();

    // --- Show file -----------------------------------------------------------------------------
    // Lays the show into `buffer` and answers its length; with a null buffer only answers the
    // size needed. Either way a picture of one key first gets a second key a second later.
    long SaveShow(FSpec* file, char* buffer);
    // Rebuilds the show from the first `size` bytes of `buffer` (which the caller cleared with
    // ClearShow) and loads its pictures. False, with nothing changed, for a null buffer or a
    // buffer that is not a show.
    bool LoadShow(FSpec* file, const char* buffer, long size, bool gotoStart);
    // Reads a whole show file and, when it is a show, replaces the current show with it.
    ShowFileResult OpenShowFile(const FSpec* file, bool gotoStart);
    // Writes the whole show; the old file is replaced only by a complete new one.
    bool WriteShowFile(const FSpec* file);
    // The show's default ease as a key's own Ease: (kind + 1) x 1000, + 1 without curves.
    float EncodedDefaultEase() const;

    // --- Frames and pictures -------------------------------------------------------------------
    // Renders one frame into `out` (already of the wanted size). fieldMode: 0 whole frame, 1 first
    // field, 2 second field, 3 both fields interleaved. outgoing: the picture that is leaving
    // during a transition. A picture that cannot be read gives the placeholder picture in each
    // of its frames. False for a size outside 1..8192, no `out` or a picture not in the show.
    bool RenderFrame(long frame, int fieldMode, bool oddField, int width, int height, CDIB* out,
                     bool outgoing);
    // The rows RenderFrame paints as letterbox bars at the top and again at the bottom of a
    // width x height frame: 0 unless the aspect mode is letterboxed 16:9 (5626).
    int LetterboxBarRows(int width, int height) const;
    // Moves the current frame (clamped to the show), loads its picture with the next one ahead
    // and computes its camera (currentCamera, and the stage's key when an editor is attached).
    bool GotoFrame(long frame, bool refresh);
    // Makes `pic` the picture in `image`: kept, taken back from `previousImage`, copied from the
    // look-ahead image, or loaded; the picture it replaces becomes the previous one. Unless
    // noLookAhead, a picture newly made current has the one after it loaded ahead. Also sets
    // the rotating-filter choice from the picture's keys as they are now. False for a picture
    // not in the show or one that could not be read (it is still current, with its load state).
    bool LoadPictureBuffer(int pic, bool noLookAhead);
    // Puts a picture file into slot `pic` (0..63; anything else is ignored) starting at `start`
    // (0 for slot 0).
    void LoadPicture(FSpec* file, int pic, long start);
    // The key selection of the editor's commands: FindKey(gCurFrame) (-1 none; key 0 can be
    // copied but not cut or deleted).
    int GetKeySelection() const;
    // Attaches the editor's windows (null detaches).
    void AttachEditor(DocEditor* windows) { editor = windows; }

    // --- The show ------------------------------------------------------------------------------
    CDIB image;           // the current source picture the renderer cuts frames from
    CDIB lookAheadImage;  // the next picture, loaded ahead
    // The picture that was current before: a dissolve or a motion-blur sample that goes back to
    // it takes it from here instead of reading its file again.
    CDIB previousImage{1, 1, 24};
    int picCount = 0;
    KeyStruct keys[kPictureSlots][kMaxKeys];
    int keyCount[kPictureSlots];
    FSpec picSpec[kPictureSlots];  // where each picture's file lives
    FSpec extraSpec;               // optional record saved after the pictures
    bool hasExtraSpec = false;
    long showLength = 1800;  // frames
    bool dirty = false;
    uint8_t standalone = 0;   // 1 when running as its own application, 0 hosted in a video editor
    uint16_t showID = 0;      // random at each save, 0 after ClearShow
    ShowFileRecord showFile;  // where the show was opened from or saved to; cleared by ClearShow
    KeyClipboard clipboard;   // the key Copy and Cut keep for Paste

    // --- Undo ring -----------------------------------------------------------------------------
    KeyStruct undoRing[kUndoEntries];
    int undoHead = -1;  // -1: empty
    int undoCount = 0;
    int redoCount = 0;

    // --- Picture preparation and cache ---------------------------------------------------------
    int border = 0;             // half-percent of the picture width; -1 tints with the matte colour
    int preBlur = 0;            // "PreBlur"
    uint16_t showWord = 12850;  // the two contrast settings
    // Load results (1 loaded, 0 failed, 2 failed and replaced by the placeholder) of the
    // pictures held in the three images.
    int picLoadState = 1;  // of the picture in `image`
    int curPic = 0;        // picture held in `image`, -1 none
    int previousPic = -1;  // picture held in `previousImage`, -1 none
    int previousLoadState = 1;
    int lookAheadPic = -1;  // picture held in `lookAheadImage`, -1 none
    int lookAheadLoadState = 1;
    bool loadBusy = false;      // a picture load is under way
    KeyStruct currentCamera{};  // the camera GotoFrame computed last
    int pictureFailures = 0;    // pictures that could not be read since the show was cleared
    int pictureFileLoads = 0;   // picture files read since the show was cleared
    FSpec failedPicture{};      // the last of them

    // --- Settings read at construction ---------------------------------------------------------
    int defaultEase = 0;    // "EaseType": low four bits the kind, bit 4 (16) no curves
    int aspectMode = 7500;  // height / width x 10000; the last digit below 5 is a variant
    float aspectRatio = 0.75f;
    bool alwaysUseRotation = false;
    bool fieldSwap = false;
    bool draftRender = false;
    bool rescaleShow = false;
    bool flopTopField = false;
    long blurFrames = 0;
    long matteColor = 0;
    bool videoColors = true;
    bool showPicError = true;
    bool autoAddKey = true;
    bool ignoreAlpha = true;
    char altImageFolder[kTextSetting] = {};
    char rootVolume[kTextSetting] = {};
    // Set when the program's environment name holds "Slatewhirl": shows then store the aspect
    // ratio instead of the show length in each picture's ShowLen.
    bool slatewhirl = false;

    // Aspect ratio of an "AspectMode" value: the last digit below 5 does not change it.
    static float AspectRatioOf(int aspectMode);

private:
    void ReadSettings();
    // The preparation every picture of this show gets (border, depth, adjustments).
    PicturePreparation Preparation() const;
    // "AltImageFolder" as a path-form record; empty when none is set.
    FSpec AlternativeFolder() const;
    // Loads picture `pic` into `target` with that preparation; `result` gets the loader's code.
    bool LoadInto(CDIB& target, int pic, int* result);
    void NoteFailedPicture(const FSpec& spec);
    // After an edit that moves or replaces pictures, the images in memory no longer match.
    void ForgetLookAhead();
    void ForgetLoadedPictures();
    // The second-field flag after "FieldSwap", and never outside 24.01 to 40 frames per second.
    bool SecondFieldFlag(bool secondField) const;
    // One pass of the camera filter for the picture in `image`.
    bool FilterCamera(CDIB* out, int pic, long frame, bool secondField, int quality, int fieldCode);

    DocEditor* editor = nullptr;
};

// The one document, created at start-up before the main window.
extern CDoc* pDoc;
