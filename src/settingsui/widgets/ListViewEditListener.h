#pragma once

namespace ListView {

// Told by an editable list what the user does in it. Every operation does nothing unless the
// listener overrides it.
class ListViewEditListener
{
public:
    virtual ~ListViewEditListener() = default;

    // The user changed the text of the cell (row, column).
    virtual void ItemChanged(int /*row*/, int /*column*/) {}
    // The user pressed Enter on a cell, to start or to finish its edit.
    virtual void OnEnter(int /*row*/, int /*column*/) {}
    // The user pressed the button of a button cell in `row`; the listener chooses the value.
    virtual void OnButtonCell(int /*row*/) {}
    // The list is about to open a modal window for a cell (a file dialog, a button cell's
    // chooser), and has closed it again.
    virtual void beginModal(int /*row*/, int /*column*/) {}
    virtual void endModal(int /*row*/, int /*column*/) {}
};

} // namespace ListView
