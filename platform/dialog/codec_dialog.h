#pragma once
// The compression settings dialog: the codecs a movie can be written with, listed by name, and
// a quality slider of five steps (least, low, normal, high, best), with OK and Cancel.
//
// Like the message boxes it has a seam for tests: while answers are queued, each dialog takes
// the oldest instead of showing anything. With no answer queued and no QApplication (the
// command line), nothing blocks: the dialog answers OK with the settings it was given. Every
// dialog, however it was answered, is added to a record that tests read back.
//
// Main thread only.

#include <string>
#include <vector>

class CPWnd;

// One codec the dialog offers.
struct CodecDialogCodec {
    std::string type;  // four-character code, "avc1"
    std::string name;  // shown to the user, "H.264"
};

struct CodecDialogSettings {
    std::string type;   // the chosen codec's code
    int quality = 512;  // spatial quality: 0 least, 256 low, 512 normal, 768 high, 1023 best
};

// The slider's steps, least to best.
constexpr int kCodecQualitySteps[5] = {0, 256, 512, 768, 1023};

// Shows the dialog over `owner` (the active window when null) offering `codecs` in their order,
// with `settings` selected (the first codec when its type is not offered; the nearest step of
// its quality). On OK `settings` receives the choice and the answer is true; on Cancel, Esc or
// closing the window it is left alone and the answer is false. An empty list answers false.
bool CodecSettingsDialog(CPWnd* owner, const std::vector<CodecDialogCodec>& codecs,
                         CodecDialogSettings* settings);

// ---- The seam for tests -------------------------------------------------------------------

struct CodecDialogAnswer {
    bool ok = true;
    std::string type;  // the codec "chosen"; empty keeps the one the dialog offered
    int quality = -1;  // the quality "chosen" (0..1023); below 0 keeps the one offered
};
void PushCodecDialogAnswer(const CodecDialogAnswer& answer);
void PushCodecDialogCancel();
int CountCodecDialogAnswers();

enum class CodecDialogWay { kScripted, kShown, kConsole };

struct ShownCodecDialog {
    std::vector<CodecDialogCodec> codecs;  // as offered
    CodecDialogSettings offered;           // as the dialog opened
    CodecDialogSettings chosen;            // as it closed (the offered settings when cancelled)
    bool ok = false;
    CodecDialogWay way = CodecDialogWay::kConsole;
};

// Hands back every dialog since the last take, oldest first, and forgets them. The record keeps
// the last 256 only.
std::vector<ShownCodecDialog> TakeShownCodecDialogs();
// Forgets the queued answers and the record.
void ClearCodecDialogScript();
