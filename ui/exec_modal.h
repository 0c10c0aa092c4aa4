// Modal dialogs of the window.
#pragma once

class QDialog;

namespace ui {

/// Shows dialog and waits until it is closed; gives what its exec gives. The windows that it stands above
/// take no input until this has returned: the toolkit itself lets clicks through as soon as the dialog is
/// hidden, while its loop, and with it whoever asked for the dialog, has not come back yet.
int ExecModal(QDialog& dialog);

}  // namespace ui
