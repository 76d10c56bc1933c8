#pragma once

#include <QString>

// The program the desktop opens a file with, from the freedesktop MIME associations
// (mimeapps.list and defaults.list, then the application's .desktop entry).
namespace DefaultApplication {

// The full path of the program for this file's type; empty when there is none.
QString forFile(const QString& file);
// The same for a MIME type ("x-scheme-handler/http" names the default web browser).
QString forMimeType(const QString& mimeType);

} // namespace DefaultApplication
