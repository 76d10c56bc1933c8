#pragma once

// What the fuzz targets check of one input, shared by the fuzzers and the regression test that
// replays the inputs they found: a description of the fault, or nothing when all holds.
#include <QByteArray>
#include <optional>
#include <string>

namespace FuzzChecks {
// The input is a section, a key and a value (UTF-8, as a page's field names and values come)
// separated by NUL bytes, then the bytes of an INI file. Reading never fails; an untouched file
// is written back byte for byte; a write is refused only for a line break or NUL, and then
// changes nothing; otherwise the file read anew holds the value written and every other line
// as it was.
std::optional<std::string> iniReadWrite(const QByteArray& input);
// The same input, through a real file: the value written reads back exactly; a file stays in
// Windows' code page (its other lines byte for byte) while it can hold every character, and is
// UTF-8 with a byte-order mark once it cannot or once it was; damaged bytes cost no other line.
std::optional<std::string> iniFile(const QByteArray& input);
// The input is a page address (UTF-8): its site file name is a plain file name of the profile
// prefix, at most 40 allowed characters and ".ini", the same every time.
std::optional<std::string> siteFileName(const QByteArray& input);
} // namespace FuzzChecks
