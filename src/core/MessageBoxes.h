#pragma once

#include <QString>

enum class MsgIcon
{
    None,
    Exclamation,
    Critical,
    Question
};
enum class MsgButtons
{
    Ok,
    OkCancel,
    YesNo
};
enum class MsgAnswer
{
    Ok,
    Cancel,
    Yes,
    No
};

// Modal message boxes; tests answer them without a screen.
class MessageBoxes
{
public:
    virtual ~MessageBoxes() = default;
    virtual MsgAnswer show(const QString& text, MsgButtons buttons, MsgIcon icon,
                           const QString& title) = 0;
};
