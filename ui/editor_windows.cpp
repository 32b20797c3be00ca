#include "ui/editor_windows.h"

CMain* pMain = nullptr;
CStage* pStage = nullptr;
CTime* pTime = nullptr;
CView* pViewer = nullptr;
CPWnd* gMainWindowPtr = nullptr;
