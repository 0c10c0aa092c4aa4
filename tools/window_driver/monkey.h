// Works the tool's window and dialogs by mouse and keys at random, as nobody in his senses would.
#pragma once

#include <QObject>
#include <cstdint>
#include <map>
#include <random>
#include <string>

#include "tools/window_driver/made_up_site.h"

class QMessageBox;

namespace driver {

class Monkey : public QObject {
  public:
    /// The same seed gives the same choices; what they meet depends on the clock as well. site must outlive
    /// this object.
    Monkey(const MadeUpSite& site, std::uint32_t seed) : mSite(site), mRandom(seed) {}

    /// Runs the tool, again whenever it has ended, until events have been done.
    void Work(std::int64_t events);

    /// How often each message was shown, by its first line.
    const std::map<std::string, int>& Messages() const { return mMessages; }

    /// How often the tool was run.
    int Runs() const { return mRuns; }

  private:
    void Act();
    void ActOnce();
    void LeaveTool();
    void ActOnWindow(QWidget& window);
    void ActOnMessage(QMessageBox& box);
    void ActOnSaveDialog(QWidget& dialog);
    void ActOnRangeDialog(QWidget& dialog);
    void PressKey(QWidget& window);

    /// A number from 0 to below - 1.
    int Below(int below) { return std::uniform_int_distribution(0, below - 1)(mRandom); }
    bool OneIn(int cases) { return Below(cases) == 0; }

    const MadeUpSite& mSite;
    std::mt19937 mRandom;
    std::int64_t mEventsLeft = 0;
    int mRuns = 0;
    std::map<std::string, int> mMessages;
};

}  // namespace driver
