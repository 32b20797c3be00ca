// A show made from scratch through the main window's menus and keys, the dialogs answered by
// the script: new show, two pictures, keys made by dragging on the stage, save, new, load, a
// two-second movie, a still image, undo and redo, and the way out with unsaved changes. Each step
// is one function of the walk, so a step can be put between two others.

#include <gtest/gtest.h>
#include <cstdio>
#include <cstring>
#include <string>

#include "image/cdib.h"
#include "output/movie.h"
#include "platform/dialog/codec_dialog.h"
#include "platform/dialog/dialog_layout.h"
#include "platform/dialog/posted_input.h"
#include "platform/dialog/string_box.h"
#include "support/editor_fixture.h"
#include "support/movie_frames.h"
#include "ui/commands/make_movie_file.h"
#include "ui/stage/cstage.h"
#include "ui/stage/stage_geometry.h"

namespace {

class WalkThrough : public pxtest::Editor {
protected:
    // Real key input on the main window's content: a press and its release.
    static void Type(int key, const QString& text, Qt::KeyboardModifiers modifiers = {})
    {
        QWidget* content = Content(pMain);
        SendKey(content, QEvent::KeyPress, key, modifiers, text);
        SendKey(content, QEvent::KeyRelease, key, modifiers, text);
        ProcessEvents();
    }
    static void CtrlKey(int key) { Type(key, QString(), Qt::ControlModifier); }
    // `count` frames on with the "+" key.
    static void Forward(int count)
    {
        for (int i = 0; i < count; ++i)
            Type(Qt::Key_Plus, "+");
    }
    // Drags the camera frame's centre `dx` pixels to the right with real mouse input.
    static void DragCamera(int dx)
    {
        StageFrame frame = FrameOf(pStage->currentKey, pStage->View());
        QWidget* content = Content(pStage);
        QPoint from(frame.centre.x, frame.centre.y);
        Press(content, from);
        for (int step = 10; step <= dx; step += 10)
            SendMouse(content, QEvent::MouseMove, from + QPoint(step, 0), Qt::NoButton);
        Release(content, from + QPoint(dx, 0));
        ProcessEvents();
    }
    int KeyCount() const
    {
        int count = 0;
        for (int pic = 0; pic < pDoc->picCount; ++pic)
            count += pDoc->GetKeyCount(pic);
        return count;
    }

    // ---- The steps ----
    void NewShow()
    {
        CtrlKey(Qt::Key_N);
        ASSERT_EQ(pDoc->picCount, 0);
        ASSERT_EQ(Title(), "Hollerbank Parallaxotron");
    }
    void LoadTwoPictures()
    {
        PushFileDialogAnswer(pxtest::kLake.c_str());
        ASSERT_TRUE(Choose(1010));
        ASSERT_EQ(pDoc->picCount, 1);
        Forward(10);
        ASSERT_EQ(gCurFrame, 10);
        PushFileDialogAnswer(pxtest::kCity.c_str());
        CtrlKey(Qt::Key_E);
        ASSERT_EQ(pDoc->picCount, 2);
        ASSERT_EQ(pDoc->GetPicStart(1), 10);
    }
    void AddKeysByDragging()
    {
        int keys = KeyCount();
        Forward(30);
        DragCamera(40);
        ASSERT_EQ(KeyCount(), keys + 1);
        Forward(30);
        DragCamera(60);
        ASSERT_EQ(KeyCount(), keys + 2);
        ASSERT_TRUE(pDoc->dirty);
        // Undo both drags from the Edit menu, redo them with the keys.
        ASSERT_TRUE(Enabled(9004));
        ASSERT_TRUE(Choose(9004));
        ASSERT_TRUE(Choose(9004));
        ASSERT_EQ(KeyCount(), keys);
        ASSERT_TRUE(Enabled(9005));
        CtrlKey(Qt::Key_Y);
        CtrlKey(Qt::Key_Y);
        ASSERT_EQ(KeyCount(), keys + 2);
        ASSERT_FALSE(Enabled(9005));
    }
    void SaveShow()
    {
        PushFileDialogAnswer(showPath.c_str());
        CtrlKey(Qt::Key_S);
        ASSERT_FALSE(pDoc->dirty);
        ASSERT_EQ(Title(), "Hollerbank Parallaxotron - walk");
        saved.picCount = pDoc->picCount;
        for (int pic = 0; pic < pDoc->picCount; ++pic) {
            saved.keyCount[pic] = pDoc->keyCount[pic];
            std::memcpy(saved.keys[pic], pDoc->keys[pic], sizeof saved.keys[pic]);
            saved.picSpec[pic] = pDoc->picSpec[pic];
        }
    }
    void LoadShowAgain()
    {
        ASSERT_TRUE(Choose(2005));
        ASSERT_EQ(pDoc->picCount, 0);
        PushFileDialogAnswer(showPath.c_str());
        CtrlKey(Qt::Key_O);
        ASSERT_EQ(pDoc->picCount, saved.picCount);
        for (int pic = 0; pic < saved.picCount; ++pic) {
            ASSERT_EQ(pDoc->keyCount[pic], saved.keyCount[pic]) << pic;
            for (int key = 0; key < saved.keyCount[pic]; ++key) {
                const KeyStruct& a = pDoc->keys[pic][key];
                const KeyStruct& b = saved.keys[pic][key];
                EXPECT_EQ(a.XPos, b.XPos) << pic << " " << key;
                EXPECT_EQ(a.YPos, b.YPos) << pic << " " << key;
                EXPECT_EQ(a.Width, b.Width) << pic << " " << key;
                EXPECT_EQ(a.Rotation, b.Rotation) << pic << " " << key;
                EXPECT_EQ(a.Frame, b.Frame) << pic << " " << key;
                EXPECT_EQ(a.PicStart, b.PicStart) << pic << " " << key;
            }
            EXPECT_STREQ(pDoc->picSpec[pic].name, saved.picSpec[pic].name) << pic;
        }
        ASSERT_EQ(Title(), "Hollerbank Parallaxotron - walk");
        ASSERT_FALSE(pDoc->dirty);
    }
    // Ctrl+K: the options with the end typed as two seconds, the movie's name and its codec.
    // The movie has the 60 frames of two seconds, and an outside reader agrees.
    void MakeTwoSecondMovie()
    {
        char rate[] = "30";
        char start[] = "00:00:00";
        char none[] = "";
        SetIniItem("MovieFPS", rate);
        SetIniItem("MovieStart", start);
        SetIniItem("MovieHold", start);
        SetIniItem("MovieFields", none);
        MovieDialogLists lists = MakeMovieDialog(*pDoc);
        DialogLayout layout = MakeDialogLayout(kMovieDialogX, kMovieDialogY, kMovieDialogRows,
                                               lists.descriptions, false);
        tagRECT end = DialogValueArea(layout, kMovieRowEnd);
        PushStringBoxAnswer("00:02:00");
        PostClick(pStage, (end.left + end.right) / 2, (end.top + end.bottom) / 2);
        PostReturn(pStage);
        std::string movie = dir.File("walk.mov");
        PushFileDialogAnswer(movie.c_str());
        const char* codec = IsCodecAvailable("avc1") ? "avc1" : "png ";
        PushCodecDialogAnswer(CodecDialogAnswer{true, codec, -1});
        PushMessageBoxAnswer(kBoxYes);
        CtrlKey(Qt::Key_K);
        ASSERT_EQ(BoxTexts(), std::vector<std::string>{": Movie file(s) successfully made"});
        EXPECT_EQ(pxtest::MovieFrames(movie), 60);
        if (std::system("ffprobe -version > /dev/null 2>&1") != 0) {
            std::printf("ffprobe is not installed: the movie is checked with our reader only\n");
            return;
        }
        std::string command =
            "ffprobe -v error -count_frames -select_streams v:0 -show_entries "
            "stream=codec_name,nb_read_frames,duration -of csv=p=0 '" +
            movie + "'";
        FILE* pipe = popen(command.c_str(), "r");
        ASSERT_NE(pipe, nullptr);
        char line[128] = {};
        std::fgets(line, sizeof line, pipe);
        pclose(pipe);
        std::string expected =
            std::string(codec) == "avc1" ? "h264,2.000000,60\n" : "png,2.000000,60\n";
        EXPECT_EQ(std::string(line), expected);
    }
    void MakeStillImage()
    {
        SetIniItem("MovieWid", 320L);
        SetIniItem("MovieHgt", 240L);
        pDoc->GotoFrame(40, true);
        std::string still = dir.File("still.tga");
        PushFileDialogAnswer(still.c_str());
        CtrlKey(Qt::Key_T);
        CDIB expected(320, 240, 32);
        ASSERT_TRUE(pDoc->RenderFrame(40, 0, false, 320, 240, &expected, false));
        CDIB loaded(1, 1, 32);
        FSpec spec = PathFSpec(still.c_str());
        ASSERT_EQ(loaded.Load(&spec, nullptr, false), 1);
        ASSERT_EQ(loaded.GetWid(), 320);
        ASSERT_EQ(loaded.GetHgt(), 240);
        int bytes = loaded.GetBitCount() / 8;
        ASSERT_GE(bytes, 3);
        int differing = 0;
        for (int row = 0; row < 240; ++row) {
            const unsigned char* a = expected.GetBitsAdd(row);
            const unsigned char* b = loaded.GetBitsAdd(row);
            for (int x = 0; x < 320; ++x) {
                for (int c = 0; c < 3; ++c)
                    differing += a[x * 4 + c] != b[x * bytes + c];
            }
        }
        EXPECT_EQ(differing, 0);
        CheckWithFfprobe(still);
    }
    // An outside reader sees a 320 by 240 picture.
    static void CheckWithFfprobe(const std::string& still)
    {
        if (std::system("ffprobe -version > /dev/null 2>&1") != 0) {
            std::printf("ffprobe is not installed: the still is checked with our reader only\n");
            return;
        }
        std::string command =
            "ffprobe -v error -show_entries stream=width,height -of csv=p=0 '" + still + "'";
        FILE* pipe = popen(command.c_str(), "r");
        ASSERT_NE(pipe, nullptr);
        char line[64] = {};
        std::fgets(line, sizeof line, pipe);
        pclose(pipe);
        EXPECT_STREQ(line, "320,240\n");
    }
    void EditAfterLoadingWithUndoAndRedo()
    {
        int keys = KeyCount();
        Forward(15);
        DragCamera(30);
        ASSERT_EQ(KeyCount(), keys + 1);
        CtrlKey(Qt::Key_Z);
        ASSERT_EQ(KeyCount(), keys);
        ASSERT_TRUE(Choose(9005));
        ASSERT_EQ(KeyCount(), keys + 1);
        ASSERT_TRUE(pDoc->dirty);
    }
    void ExitCancelledThenSaved()
    {
        PushMessageBoxAnswer(kBoxCancel);
        CtrlKey(Qt::Key_Q);
        ASSERT_EQ(gMacDone, 0);
        ASSERT_NE(pMain, nullptr);
        PushMessageBoxAnswer(kBoxYes);
        PushFileDialogAnswer(showPath.c_str());
        ASSERT_TRUE(Choose(2001));
        ASSERT_EQ(gMacDone, 1);
        ASSERT_FALSE(pDoc->dirty);
        std::vector<std::string> boxes = BoxTexts();
        ASSERT_EQ(boxes.size(), 2u);
        EXPECT_EQ(boxes[0], "Exit Application: Do you want to save this show?");
        // What was saved on the way out is the show with the last key.
        int keys = KeyCount();
        pDoc->ClearShow();
        FSpec spec = PathFSpec(showPath.c_str());
        ASSERT_TRUE(OpenDocumentFile(&spec, true));
        EXPECT_EQ(KeyCount(), keys);
    }

    std::string showPath = dir.File("walk.plx");
    struct {
        int picCount = 0;
        int keyCount[kPictureSlots] = {};
        KeyStruct keys[kPictureSlots][kMaxKeys] = {};
        FSpec picSpec[kPictureSlots] = {};
    } saved;
};

TEST_F(WalkThrough, AShowFromScratchThroughTheMenusAndKeys)
{
    Start("MovieWid=320\r\nMovieHgt=240\r\n");
    ASSERT_NO_FATAL_FAILURE(NewShow());
    ASSERT_NO_FATAL_FAILURE(LoadTwoPictures());
    ASSERT_NO_FATAL_FAILURE(AddKeysByDragging());
    ASSERT_NO_FATAL_FAILURE(SaveShow());
    ASSERT_NO_FATAL_FAILURE(LoadShowAgain());
    ASSERT_NO_FATAL_FAILURE(MakeTwoSecondMovie());
    ASSERT_NO_FATAL_FAILURE(MakeStillImage());
    ASSERT_NO_FATAL_FAILURE(EditAfterLoadingWithUndoAndRedo());
    ASSERT_NO_FATAL_FAILURE(ExitCancelledThenSaved());
}

}  // namespace
