#pragma once

#include <QByteArray>
#include <QString>

// Windows-1252, the code page the data files are written in. Decoding maps every byte to one
// character and encoding maps it back, so unchanged lines survive a rewrite byte for byte.
namespace Cp1252 {
QString decode(const QByteArray& bytes);
// Characters the code page cannot hold become '?'.
QByteArray encode(const QString& text);
// Whether the code page holds every character of the text.
bool holds(const QString& text);
} // namespace Cp1252
