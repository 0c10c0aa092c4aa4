// Answers the dialogs that an action opens: a modal dialog runs its own event loop, so the answers are
// prepared before the action and given from inside that loop.
#pragma once

#include <QObject>
#include <QString>
#include <QWidget>
#include <deque>
#include <functional>
#include <vector>

namespace driver {

class ModalRobot : public QObject {
  public:
    using Reply = std::function<void(QWidget&)>;

    struct SeenMessage {
        QString Text;
        QString Title;
        bool Critical;
        bool operator==(const SeenMessage&) const = default;
    };

    ModalRobot();

    /// The next dialog that is no message box is answered by reply, which must close it. Dialogs that nobody
    /// expects: the range dialog is answered by its OK, others are rejected.
    void Expect(Reply reply) { mReplies.push_back(std::move(reply)); }

    /// Keeps the robot's hands off a dialog.
    static void Leave(QWidget& dialog);

    /// Runs action at the next turn of an event loop.
    void Soon(const std::function<void()>& action);

    bool IsDone() const { return mReplies.empty(); }

    /// Message boxes are closed by their first button as they come, and kept here.
    std::vector<SeenMessage> Messages;

    /// Runs while a message box is up, before its button is pressed.
    std::function<void(QWidget&)> OnMessage = [](QWidget&) {};

    /// Replies for Expect.
    static Reply ChooseFile(const QString& path);
    static void PressOk(QWidget& rangeDialog);
    static void PressEscape(QWidget& dialog);

  private:
    void Poll();
    void Answer(QWidget& dialog);

    std::deque<Reply> mReplies;
};

}  // namespace driver
