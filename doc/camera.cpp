// Camera curve and easing; CDoc::QueueKey, the camera of a picture at a frame.

#include "doc/camera.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "doc/cdoc.h"

// Truncated on purpose: every stored show's timing was made with these values.
static constexpr double kHalfTurnish = 3.1414;
static constexpr double kQuarterTurnish = 1.5707;
static constexpr double kRadiansPerDegree = 0.0174532;

static float FieldValue(const KeyStruct& key, int field)
{
    float value;
    std::memcpy(&value, reinterpret_cast<const char*>(&key) + 4 * field, sizeof value);
    return value;
}

static bool IsRotationField(int field)
{
    return field == kFieldRotation || field == kFieldRot2 || field == kFieldRot3;
}

// Whole part toward zero, bounded so that damaged values convert safely.
static long WholePart(double value)
{
    if (std::isnan(value))
        return 0;
    return static_cast<long>(std::clamp(std::trunc(value), -2.0e9, 2.0e9));
}

KeyEase DecodeKeyEase(float ease)
{
    long whole = WholePart(ease);
    KeyEase decoded;
    decoded.speed = static_cast<double>(whole % 1000) / 100.0;
    decoded.kind = static_cast<int>(WholePart((static_cast<double>(ease) - 900.0) / 1000.0));
    decoded.noCurves = (whole % 2) != 0;
    return decoded;
}

float CalcEase(float t, float a, float b)
{
    double in = 2.0 * a / kHalfTurnish;
    double out = 2.0 * (1.0 - b) / kHalfTurnish;
    double middle = static_cast<double>(b) - a;
    double total = in + middle + out;
    double result;
    // The order of the tests keeps a = 0 from dividing: the first needs a > t >= 0.
    if (a > t)
        result = (std::sin(t / static_cast<double>(a) * kQuarterTurnish - kQuarterTurnish) + 1.0) *
                 in / total;
    else if (t > b)
        result = (std::sin((t - static_cast<double>(b)) / (1.0 - b) * kQuarterTurnish) * out +
                  middle + in) /
                 total;
    else
        result = (t + in - a) / total;
    return static_cast<float>(result);
}

float CurveFit(int n, const KeyStruct* keys, int field, long r, int secondField, int ease)
{
    if (n <= 0)
        return 0.0f;
    if (n == 1)
        return FieldValue(keys[0], field);
    double half = secondField ? 0.5 : 0.0;

    // Tangents: 0 at the first key; at each inner key the neighbours' slope, flattened where the
    // two moves differ much in length; the last segment ends as if a mirrored key followed.
    double a = std::fabs(
        std::trunc(static_cast<double>(FieldValue(keys[1], field)) - FieldValue(keys[0], field)));
    double m0 = 0.0;
    double m1 = 0.0;
    for (int i = 0; i <= n - 2; ++i) {
        double p0 = FieldValue(keys[i], field);
        double p1 = FieldValue(keys[i + 1], field);
        m0 = i == 0 ? 0.0 : m1;
        if (i < n - 2) {
            double p2 = FieldValue(keys[i + 2], field);
            double b = std::fabs(std::trunc(p2 - p1));
            if (b == 0.0)
                b = 1.0;
            double f = std::min(1.0, std::min(a, b) / std::max(a, b) * 3.0);
            m1 = (p2 - p0) / 2.0 * f;
            a = b;
        } else {
            m1 = p1 - p0;
        }

        long start = keys[i].Frame;
        long end = keys[i + 1].Frame;
        if (!(start <= r && r < end))
            continue;

        if ((ease & 15) == kEaseHold)
            return static_cast<float>(p0);
        double u = (static_cast<double>(r - start) + half) / static_cast<double>(end - start);

        int defaultKind = ease & 15;
        int kind;
        double speed = 0.0;
        if (n == 2 && defaultKind == kEaseBoth)
            kind = kEaseBoth;
        else if (i == 0 && defaultKind < kEaseOut)
            kind = kEaseIn;
        else if (defaultKind == kEaseBoth || defaultKind == kEaseOut)
            kind = i == n - 2 ? kEaseOut : kEaseNone;
        else
            kind = kEaseNone;
        bool noCurves = (ease & kEaseNoCurves) != 0;
        if (keys[i].Ease > 0.0f) {
            KeyEase own = DecodeKeyEase(keys[i].Ease);
            kind = own.kind;
            speed = own.speed;
            noCurves = own.noCurves;
        }
        if (IsRotationField(field))
            noCurves = true;

        float t = static_cast<float>(u);
        float s = static_cast<float>(speed);
        if (kind == kEaseBoth)
            u = CalcEase(t, 0.5f - s / 2.0f, 0.5f + s / 2.0f);
        else if (kind == kEaseIn)
            u = CalcEase(t, 1.0f - s, 1.0f);
        else if (kind == kEaseOut)
            u = CalcEase(t, 0.0f, s);

        if (noCurves)
            return static_cast<float>(p0 + u * (p1 - p0));
        double c2 = 3.0 * (p1 - p0) - 2.0 * m0 - m1;
        double c3 = m0 + m1 + 2.0 * (p0 - p1);
        return static_cast<float>(p0 + m0 * u + c2 * u * u + c3 * u * u * u);
    }
    return FieldValue(keys[n - 1], field);
}

void CDoc::QueueKey(KeyStruct* out, int pic, long frame, int secondField) const
{
    KeyIdentity(*out);
    if (pic < 0 || pic >= kPictureSlots)
        return;
    long r = frame - GetPicStart(pic);
    int n = keyCount[pic];
    const KeyStruct* list = keys[pic];
    out->XPos = CurveFit(n, list, kFieldXPos, r, secondField, defaultEase);
    out->YPos = CurveFit(n, list, kFieldYPos, r, secondField, defaultEase);
    out->Width = CurveFit(n, list, kFieldWidth, r, secondField, defaultEase);
    out->Rotation = CurveFit(n, list, kFieldRotation, r, secondField, defaultEase | kEaseNoCurves);
    out->Rot2 = CurveFit(n, list, kFieldRot2, r, secondField, defaultEase | kEaseNoCurves);
    out->Rot3 = CurveFit(n, list, kFieldRot3, r, secondField, defaultEase | kEaseNoCurves);
    out->Ease = CurveFit(n, list, kFieldEase, r, secondField, kEaseHold);
}

// Whole pixels toward zero; a damaged angle or a far point stays within the coordinate range.
static int32_t Coordinate(double value)
{
    if (std::isnan(value))
        return 0;
    return static_cast<int32_t>(std::clamp(std::trunc(value), -2147483648.0, 2147483647.0));
}

void RotatePoint(tagPOINT& p, float degrees, const tagPOINT& centre)
{
    double angle = degrees * kRadiansPerDegree;
    double s = std::sin(angle);
    double c = std::cos(angle);
    double x = static_cast<double>(p.x) - centre.x;
    double y = static_cast<double>(p.y) - centre.y;
    p.x = Coordinate(Coordinate(c * x - s * y + 0.5) + static_cast<double>(centre.x));
    p.y = Coordinate(Coordinate(s * x + c * y + 0.5) + static_cast<double>(centre.y));
}

void RotateRect(tagRECT& r, float degrees, const tagPOINT& centre)
{
    double angle = degrees * kRadiansPerDegree;
    double s = std::sin(angle);
    double c = std::cos(angle);
    double x = static_cast<double>(r.left) - centre.x;
    double y = static_cast<double>(r.top) - centre.y;
    tagPOINT corner = {r.right, r.bottom};
    RotatePoint(corner, degrees, centre);
    r.left = Coordinate(Coordinate(c * x - s * y + 0.5) + static_cast<double>(centre.x));
    // The new top keeps its single-precision products and its 0.05: placed frames depend on it.
    float along = static_cast<float>(x * s);
    float across = static_cast<float>(y * c);
    r.top = Coordinate(Coordinate(static_cast<double>(along + across) + 0.05) +
                       static_cast<double>(centre.y));
    r.right = corner.x;
    r.bottom = corner.y;
}

std::vector<CameraPathPoint> CameraPath(int n, const KeyStruct* keys, int ease)
{
    std::vector<CameraPathPoint> path;
    if (n < 1)
        return path;
    long last = std::max<long>(keys[n - 1].Frame, 0);
    long step = last / kMaxCameraPathPoints + 1;
    path.reserve(static_cast<size_t>(last / step + 2));
    for (long frame = 0;; frame += step) {
        frame = std::min(frame, last);
        path.push_back({CurveFit(n, keys, kFieldXPos, frame, 0, ease),
                        CurveFit(n, keys, kFieldYPos, frame, 0, ease)});
        if (frame == last)
            break;
    }
    return path;
}
