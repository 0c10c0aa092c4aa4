// What the window takes. It works the program's real window; QT_QPA_PLATFORM chooses the display.
//
//   window_bench drag RECORDS       how soon it moves, changes its size and repaints while nothing else
//   happens
//                                   and during an export of every table of a made-up site
//   window_bench cancel RECORDS N   how soon N exports stop after a click on Cancel Update
//   window_bench export TARGET      the time of one such export into the file TARGET
//   window_bench start              opens the tool, prints the monotonic clock's seconds when the operator
//   can
//                                   press Select DB, and ends
//
// The last two need the environment that leads to a site, as the tool does.

#include <QApplication>
#include <QCheckBox>
#include <QEventLoop>
#include <QMainWindow>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>

#include "tools/window_driver/made_up_site.h"
#include "tools/window_driver/pulse.h"
#include "tools/window_driver/window_driver.h"
#include "ui/interface_window.h"
#include "ui/run_tool.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using Clock = std::chrono::steady_clock;
using driver::Pulse;
using driver::WindowDriver;

double Milliseconds(Clock::duration time) {
    return std::chrono::duration<double, std::milli>(time).count();
}

double MillisecondsSince(Clock::time_point start) {
    return Milliseconds(Clock::now() - start);
}

/// One session: the window on its site, with a robot for its dialogs.
class Session {
  public:
    Session() {
        if (!mWindow.Form_Load()) throw std::runtime_error("the site gives no engine");
        mWindow.show();
        mWindow.activateWindow();
        if (!QTest::qWaitForWindowActive(&mWindow)) throw std::runtime_error("the window does not come up");
    }

    ui::fInterface& Window() { return mWindow; }
    QPushButton& Button(WindowDriver::Action action) const { return mHands.Button(action); }

    /// A new target with every table ticked.
    void MakeReady(const QString& target) {
        std::filesystem::remove(target.toStdString());
        mHands.SelectDatabase(target);
        for (const QCheckBox* const box : mHands.ListedBoxes()) mHands.Click(box->text());
    }

    /// Runs the update to its end.
    void Update() { Button(WindowDriver::Update).click(); }

  private:
    driver::ModalRobot mRobot;
    ui::fInterface mWindow;
    const WindowDriver mHands{mWindow, mRobot};
};

double Percentile(std::vector<double> values, double percent) {
    if (values.empty()) return 0;
    std::sort(values.begin(), values.end());
    const auto last = static_cast<double>(values.size() - 1);
    return values[static_cast<std::size_t>(last * percent / 100 + 0.5)];
}

void PrintLine(const std::string& what, const std::vector<double>& milliseconds) {
    std::printf("| %s | %zu | %.1f | %.1f | %.1f | %.1f |\n", what.c_str(), milliseconds.size(),
                Percentile(milliseconds, 50), Percentile(milliseconds, 95), Percentile(milliseconds, 99),
                Percentile(milliseconds, 100));
}

void PrintHead(const char* what) {
    std::printf("| %s | Number | Median ms | 95 %% | 99 %% | Longest |\n", what);
    std::printf("| --- | ---: | ---: | ---: | ---: | ---: |\n");
}

template <typename Work>
void PrintPulse(Session& session, Pulse::Request request, const std::string& what, Work work) {
    const Pulse pulse(session.Window(), *session.Window().centralWidget(), request);
    work();
    PrintLine(what, pulse.Done());
    PrintLine(what + ", taken up", pulse.TakenUp());
}

void Idle() {
    constexpr int IdleTime = 3000;  // milliseconds
    QEventLoop loop;
    QTimer::singleShot(IdleTime, &loop, &QEventLoop::quit);
    loop.exec();
}

void Drag(std::int64_t records) {
    const driver::MadeUpSite site(records);
    Session session;
    PrintHead("Request");
    for (const auto& [request, name] : {std::pair(Pulse::Request::Move, "move"),
                                        {Pulse::Request::Resize, "resize"},
                                        {Pulse::Request::Repaint, "repaint"}}) {
        PrintPulse(session, request, std::string(name) + ", idle", [] { Idle(); });
        session.MakeReady(site.Database(u"drag.mdb"_s));
        PrintPulse(session, request, std::string(name) + ", export", [&] { session.Update(); });
    }
}

/// The click comes at random within the time that a whole export takes.
void Cancel(std::int64_t records, int rounds) {
    const driver::MadeUpSite site(records);
    const QString target = site.Database(u"cancel.mdb"_s);
    Session session;
    session.MakeReady(target);
    const auto whole = Clock::now();
    session.Update();
    std::mt19937 random(1);
    std::uniform_real_distribution<double> moments(0, MillisecondsSince(whole) * 0.9);
    std::vector<double> acted;
    std::vector<double> ended;
    for (int round = 0; round < rounds; ++round) {
        session.MakeReady(target);
        Clock::time_point clicked;
        std::jthread hand([&, wait = moments(random)] {
            std::this_thread::sleep_for(std::chrono::duration<double, std::milli>(wait));
            clicked = Clock::now();
            QMetaObject::invokeMethod(
                &session.Window(),
                [&] {
                    QTest::mouseClick(&session.Button(WindowDriver::CancelUpdate), Qt::LeftButton);
                    acted.push_back(MillisecondsSince(clicked));
                },
                Qt::QueuedConnection);
        });
        session.Update();
        const auto end = Clock::now();
        hand.join();
        QCoreApplication::removePostedEvents(&session.Window());  // a click that came too late
        if (acted.size() > ended.size()) ended.push_back(Milliseconds(end - clicked));
    }
    PrintHead("After the click");
    PrintLine("no further record is read", acted);
    PrintLine("the target is closed", ended);
}

void Export(const QString& target) {
    Session session;
    session.MakeReady(target);
    const auto start = Clock::now();
    const std::clock_t cpu = std::clock();
    session.Update();
    std::printf("%.3f s wall  %.3f s CPU\n", MillisecondsSince(start) / 1000,
                static_cast<double>(std::clock() - cpu) / CLOCKS_PER_SEC);
}

/// Closes the tool's window when it has been painted.
class FirstPaint : public QObject {
  public:
    bool eventFilter(QObject* receiver, QEvent* event) override {
        auto* const window = qobject_cast<QMainWindow*>(receiver);
        if (window == nullptr || event->type() != QEvent::Paint || mIsSeen) return false;
        mIsSeen = true;
        QTimer::singleShot(0, window, [window] {
            std::printf("%.6f\n", std::chrono::duration<double>(Clock::now().time_since_epoch()).count());
            window->close();
        });
        return false;
    }

  private:
    bool mIsSeen = false;
};

void Start() {
    FirstPaint firstPaint;
    qApp->installEventFilter(&firstPaint);
    ui::RunTool();
}

bool Run(const std::vector<std::string>& words) {
    if (words.size() == 2 && words[0] == "drag") {
        Drag(std::stoll(words[1]));
    } else if (words.size() == 3 && words[0] == "cancel") {
        Cancel(std::stoll(words[1]), std::stoi(words[2]));
    } else if (words.size() == 2 && words[0] == "export") {
        Export(QString::fromStdString(words[1]));
    } else if (words.size() == 1 && words[0] == "start") {
        Start();
    } else {
        return false;
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    try {
        if (Run({argv + 1, argv + argc})) return 0;
        std::fprintf(stderr, "usage: window_bench drag RECORDS | cancel RECORDS N | export TARGET | start\n");
        return 2;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "window_bench: %s\n", failure.what());
        return 1;
    }
}
