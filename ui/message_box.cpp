#include "ui/message_box.h"

#include <QMessageBox>

#include "ui/exec_modal.h"
#include "ui/window_texts.h"

namespace ui {

void ShowMessageBox(const platform::Message& message, QWidget* parent) {
    QMessageBox box(message.Critical ? QMessageBox::Critical : QMessageBox::NoIcon, FromUtf8(message.Title),
                    FromUtf8(message.Text), QMessageBox::Ok, parent);
    box.setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse);
    if (message.SystemModal) box.setWindowFlag(Qt::WindowStaysOnTopHint);
    ExecModal(box);
    // The keys go back to where they were, also on a display without a window manager.
    if (parent != nullptr) parent->activateWindow();
}

}  // namespace ui
