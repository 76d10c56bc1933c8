#pragma once

#include <QString>

class Clock;
class ErrorReport;
class MessagePump;
class ValueStore;

// What capture and fill need of the main bar.
class FormMemoryHost
{
public:
    virtual ~FormMemoryHost() = default;
    virtual bool isPaused() const = 0;
    virtual void ShowStatus(const QString& text) = 0;
    // The auto-jump check box is checked.
    virtual bool isAutoJumpChecked() const = 0;
};

struct FormMemoryServices
{
    FormMemoryHost& host;
    ValueStore& values;
    ErrorReport& errors;
    MessagePump& pump;
    const Clock& clock;
};
