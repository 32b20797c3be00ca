#include "doc/timecode.h"

#include <cstring>

#include "doc/globals.h"

// FrameToString counts minutes at the exact rate (1798 frames a minute at 29.97) but seconds and
// frames at the rounded rate (30 a second), and StringToFrame counts everything at the rounded
// rate. Shows have always been timed with these texts, so a timecode at a fractional rate does
// not read back as the frame it was made from; both sides are kept as they are.

namespace {

// The frame rate within what the products below can hold: at most a million frames a second,
// at least one hundredth of a frame.
unsigned long ExactRate()
{
    long rate = gFrameRate;
    if (rate < 1)
        return 1;
    if (rate > 100000000)
        return 100000000;
    return static_cast<unsigned long>(rate);
}

// Whole frames per second: 30 at 2997, 25 at 2500, 24 at 2400.
unsigned long RoundedRate() { return (ExactRate() + 50) / 100; }

unsigned long AtLeastOne(unsigned long value) { return value == 0 ? 1 : value; }

// "00" to "59", built once.
struct TwoDigitTable {
    char text[60][2];
    TwoDigitTable()
    {
        for (int i = 0; i < 60; i++) {
            text[i][0] = static_cast<char>('0' + i / 10);
            text[i][1] = static_cast<char>('0' + i % 10);
        }
    }
};

char* PutTwoDigits(char* out, unsigned long value)
{
    static const TwoDigitTable table;
    const char* digits = table.text[value % 60];
    out[0] = digits[0];
    out[1] = digits[1];
    return out + 2;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

void FrameToString(char* out, long frame, bool shortForm)
{
    // The magnitude in unsigned arithmetic, so the most negative frame has one too.
    unsigned long n =
        frame < 0 ? 0UL - static_cast<unsigned long>(frame) : static_cast<unsigned long>(frame);
    unsigned long rate = ExactRate();

    unsigned long hourFrames = rate * 36;  // frames in an hour at the exact rate
    unsigned long hours = (n / hourFrames) % 12;
    unsigned long rest = n - hours * hourFrames;

    unsigned long minuteFrames = AtLeastOne(rate * 60 / 100);  // truncated: 1798 at 29.97
    unsigned long minutes = rest / minuteFrames;
    rest -= minuteFrames * (minutes % 60);

    unsigned long second = AtLeastOne(RoundedRate());
    unsigned long seconds = rest / second;
    unsigned long frames = rest % second;

    char* p = out;
    if (!shortForm) {
        p = PutTwoDigits(p, hours);
        *p++ = ':';
    }
    p = PutTwoDigits(p, minutes);
    *p++ = ':';
    p = PutTwoDigits(p, seconds);
    *p++ = frame < 0 ? '.' : ':';
    p = PutTwoDigits(p, frames);
    *p = 0;
}

void StringToFrame(long* frame, const char* text)
{
    if (!frame || !text)
        return;

    // Field values in unsigned arithmetic: a long run of digits wraps instead of overflowing.
    const unsigned long second = RoundedRate();
    const unsigned long scale[4] = {1, second, second * 60, second * 3600};
    unsigned long parsed = 0;
    int field = 0;
    for (long i = static_cast<long>(std::strlen(text)) - 1; i >= 0;) {
        if (!IsDigit(text[i])) {
            i--;
            continue;
        }
        unsigned long value = static_cast<unsigned long>(text[i] - '0');
        if (i > 0 && IsDigit(text[i - 1])) {
            value += 10 * static_cast<unsigned long>(text[i - 1] - '0');
            i -= 2;
        } else {
            i -= 1;
        }
        if (field < 4)
            parsed += value * scale[field];
        field++;
    }
    if (field == 0)
        return;

    unsigned long incoming = static_cast<unsigned long>(*frame);
    if (text[0] == '+')
        *frame = static_cast<long>(incoming + parsed);
    else if (text[0] == '-')
        *frame = static_cast<long>(incoming - parsed);
    else
        *frame = static_cast<long>(parsed);
}
