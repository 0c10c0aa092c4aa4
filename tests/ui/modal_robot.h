// Answers the dialogs that a test's action opens: a modal dialog runs its own event loop, so the answers are
// prepared before the action and given from inside that loop.
#pragma once

#include <QObject>
#include <QString>
#include <QWidget>
#include <deque>
#include <functional>
#include <vector>

namespace test {

class ModalRobot : public QObject {
  public:
    struct SeenMessage {
        QString Text;
        QString Title;
        bool Critical;
        bool operator==(const SeenMessage&) const = default;
    };

    ModalRobot();

    /// The next dialog is answered by answer; it must end with the dialog closed or about to close. A dialog
    /// that none was prepared for fails the test and is closed.
    void Expect(std::function<void(QWidget&)> answer) { mAnswers.push_back(std::move(answer)); }

    /// Runs action at the next turn of an event loop.
    void Soon(const std::function<void()>& action);

    bool IsDone() const { return mAnswers.empty(); }

    /// Message boxes are closed by their button as they come, and kept here.
    std::vector<SeenMessage> Messages;

    /// Runs while a message box is up, before its button is pressed.
    std::function<void()> OnMessage = [] {};

  private:
    void Poll();
    void Answer(QWidget& dialog);

    std::deque<std::function<void(QWidget&)>> mAnswers;
};

}  // namespace test
