#pragma once

// Shows a dialog form modally; returns when it has closed. The platform shows a real dialog,
// tests script what the user does in it.
template <class Form> class ModalDisplay
{
public:
    virtual ~ModalDisplay() = default;
    virtual void ShowModal(Form& form) = 0;
};
