#include "VbText.h"

QString TrimSpaces(const QString& text)
{
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && text.at(begin) == QLatin1Char(' '))
        ++begin;
    while (end > begin && text.at(end - 1) == QLatin1Char(' '))
        --end;
    return text.mid(begin, end - begin);
}

double Val(const QString& text)
{
    qsizetype i = 0;
    while (i < text.size() && (text.at(i) == QLatin1Char(' ') || text.at(i) == QLatin1Char('\t')))
        ++i;
    QString number;
    if (i < text.size() && (text.at(i) == QLatin1Char('-') || text.at(i) == QLatin1Char('+')))
        number += text.at(i++);
    bool seenPoint = false;
    for (; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c >= QLatin1Char('0') && c <= QLatin1Char('9'))
            number += c;
        else if (c == QLatin1Char('.') && !seenPoint) {
            seenPoint = true;
            number += c;
        } else
            break;
    }
    bool ok = false;
    const double value = number.toDouble(&ok);
    return ok ? value : 0.0;
}

bool SameText(const QString& a, const QString& b)
{
    return TrimSpaces(a.toUpper()) == TrimSpaces(b.toUpper());
}
