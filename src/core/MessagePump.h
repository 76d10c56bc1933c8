#pragma once

// Lets pending user-interface events run, where the program allows re-entrancy.
class MessagePump
{
public:
    virtual ~MessagePump() = default;
    virtual void DoEvents() = 0;
};
