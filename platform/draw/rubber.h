#pragma once
// Rubber bands: temporary outlines on the current drawing port (GetDrawDC), in window pixels,
// drawn in exclusive-or so that drawing the same shape again puts every pixel back. The pen is
// square, `width` pixels wide (narrower than 1 draws nothing), and inverts the pixels of a 50 %
// grey pattern (the window pixels whose x + y is even) or, optionally, every pixel it covers.
// Each pixel of a shape is inverted once, however many of its sides cross there.

#include "platform/base/types.h"

constexpr int kRubberHalftone = 0;  // the 50 % grey pattern
constexpr int kRubberSolid = 1;     // every pixel

// The outline of the rectangle spanned by the two corners, in whichever order they come, edges
// included, the pen inside it: (50, 60)-(10, 20) frames the same pixels as (10, 20)-(50, 60).
void RubberBox(const tagRECT& rect, int width, int pattern = kRubberHalftone);
// A line from (left, top) to (right, bottom), centred as DrawLine centres it.
void RubberLine(const tagRECT& rect, int width, int pattern = kRubberHalftone);
// The outline of the oval inscribed in the rectangle spanned by the two corners, edges included.
void RubberCir(const tagRECT& rect, int width, int pattern = kRubberHalftone);
// The closed outline through count points, its sides centred as DrawLine centres them. A null
// list or a count below 1 draws nothing.
void RubberPolygon(int count, const tagPOINT* points, int width, int pattern = kRubberHalftone);
