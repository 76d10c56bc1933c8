#include "Cp1252.h"

#include <algorithm>
#include <array>

namespace {
// 0x80..0x9F; the five unassigned bytes map to the C1 control of the same number.
constexpr std::array<char16_t, 32> High = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

// The byte of a character, or 0 when the code page has none for it (NUL is never in a file).
char byteOf(char16_t c)
{
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF))
        return static_cast<char>(c);
    for (size_t i = 0; i < High.size(); ++i) {
        if (High[i] == c)
            return static_cast<char>(0x80 + i);
    }
    return 0;
}

char encodeOne(char16_t c)
{
    if (c == 0)
        return 0;
    const char byte = byteOf(c);
    return byte ? byte : '?';
}
} // namespace

QString Cp1252::decode(const QByteArray& bytes)
{
    QString text(bytes.size(), Qt::Uninitialized);
    QChar* out = text.data();
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const auto b = static_cast<unsigned char>(bytes.at(i));
        out[i] = (b >= 0x80 && b < 0xA0) ? QChar(High[b - 0x80]) : QChar(b);
    }
    return text;
}

QByteArray Cp1252::encode(const QString& text)
{
    QByteArray bytes;
    bytes.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        // A character outside the basic plane is one replacement, not two.
        if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate())
            ++i;
        bytes.append(encodeOne(c.unicode()));
    }
    return bytes;
}

bool Cp1252::holds(const QString& text)
{
    return std::all_of(text.cbegin(), text.cend(),
                       [](QChar c) { return c.unicode() == 0 || byteOf(c.unicode()) != 0; });
}
