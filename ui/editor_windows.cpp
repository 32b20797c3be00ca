#include "ui/editor_windows.h"

#include "doc/cdoc.h"
#include "ui/main/cmain.h"
#include "ui/stage/cstage.h"
#include "ui/timeline/ctime.h"
#include "ui/viewer/cview.h"

CMain* pMain = nullptr;
CStage* pStage = nullptr;
CTime* pTime = nullptr;
CView* pViewer = nullptr;
CPWnd* gMainWindowPtr = nullptr;

CPWnd* EditorDialogOwner()
{
    if (pStage)
        return pStage;
    return pMain;
}

void RedrawEditorWindows()
{
    if (pTime && pDoc)
        pTime->SetMaxTime(pDoc->showLength);
    if (pMain)
        pMain->Redraw();
    if (pStage)
        pStage->Redraw();
    if (pTime)
        pTime->Redraw();
    if (pViewer)
        pViewer->Redraw();
}
