#include "ui/exec_modal.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <set>

namespace ui {

namespace {

bool IsInput(QEvent::Type type) {
    static const std::set<QEvent::Type> inputs{QEvent::MouseButtonPress,
                                               QEvent::MouseButtonRelease,
                                               QEvent::MouseButtonDblClick,
                                               QEvent::Wheel,
                                               QEvent::KeyPress,
                                               QEvent::KeyRelease,
                                               QEvent::Shortcut,
                                               QEvent::ShortcutOverride,
                                               QEvent::TouchBegin,
                                               QEvent::ContextMenu,
                                               QEvent::Drop,
                                               QEvent::Close};
    return inputs.count(type) != 0;
}

/// As long as it lives, the windows that a dialog stands above take no input.
class InputBlock : public QObject {
  public:
    explicit InputBlock(const QDialog& dialog) {
        for (const QWidget* widget = dialog.parentWidget(); widget != nullptr;
             widget = widget->parentWidget()) {
            if (widget->isWindow()) mBlocked.insert(widget);
        }
        qApp->installEventFilter(this);
    }

    bool eventFilter(QObject* receiver, QEvent* event) override {
        if (!receiver->isWidgetType() || !IsInput(event->type())) return false;
        if (mBlocked.count(static_cast<QWidget*>(receiver)->window()) == 0) return false;
        if (event->type() == QEvent::Close) event->ignore();
        return true;
    }

  private:
    std::set<const QWidget*> mBlocked;
};

}  // namespace

int ExecModal(QDialog& dialog) {
    const InputBlock block(dialog);
    return dialog.exec();
}

}  // namespace ui
