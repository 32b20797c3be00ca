#include "ui/viewer/viewer_geometry.h"

#include <algorithm>

#include "platform/util/rect.h"

tagRECT ViewerStartRect(const tagRECT& owner, long storedTop, long storedLeft, long storedWidth,
                        bool dualScreen)
{
    long ownerWidth = static_cast<long>(owner.right) - owner.left;
    long defaultWidth = ownerWidth > 1767 ? ownerWidth / 8 : 220;
    long top = storedTop == kNotStored ? owner.top + 80L : std::max(storedTop, kViewerMinPlace);
    long left = storedLeft == kNotStored ? owner.right - defaultWidth - 40
                                         : std::max(storedLeft, kViewerMinPlace);
    long width = storedWidth == kNotStored ? defaultWidth : std::max(storedWidth, 0L);
    long right = left + width;
    if (!dualScreen) {
        top = std::min(top, owner.bottom - 64L);
        left = std::min(left, owner.right - 64L);
        right = std::min(right, owner.right - 64L);
    }
    right = std::max(right, left + kViewerMinWidth);
    // A first height only: the window is fitted to the show's shape right after.
    long bottom = top + (right - left) * 3 / 4;
    return {static_cast<int>(left), static_cast<int>(top), static_cast<int>(right),
            static_cast<int>(bottom)};
}

tagRECT ViewerFittedRect(const tagRECT& rect, float aspect, int captionHeight)
{
    tagRECT fitted = rect;
    long width = static_cast<long>(rect.right) - rect.left;
    fitted.bottom = rect.top + static_cast<int>(static_cast<float>(width) * aspect) +
                    captionHeight + kViewerStrip;
    return fitted;
}

tagRECT ViewerPictureArea(const tagRECT& client)
{
    tagRECT picture = client;
    picture.bottom = std::max(client.top, client.bottom - kViewerStrip);
    return picture;
}

ViewerControls ViewerControlLayout(int bottom)
{
    auto square = [bottom](int left) {
        int top = bottom - 22;
        return tagRECT{left, top, left + kViewerButtonSize, top + kViewerButtonSize};
    };
    ViewerControls controls{};
    controls.backwards = square(4);
    controls.stop = square(4 + 24);
    controls.forwards = square(4 + 48);
    controls.addKey = square(4 + 48 + 109);
    controls.timecode = controls.addKey;
    controls.timecode.left = controls.addKey.left - 85;
    controls.timecode.right = controls.timecode.left + kViewerCodeWidth;
    return controls;
}

ViewerSafeAreas ViewerSafeAreasOf(const tagRECT& picture)
{
    int w = RectWidth(&picture, false);
    int h = RectHgt(&picture, false);
    ViewerSafeAreas areas{};
    areas.title = picture;
    ScaleRect(&areas.title, -static_cast<int>(0.096 * w), -static_cast<int>(0.096 * h));
    areas.corner = static_cast<int>(0.1 * w);
    areas.action = picture;
    ScaleRect(&areas.action, -static_cast<int>(0.048 * w), -static_cast<int>(0.048 * h));
    return areas;
}
