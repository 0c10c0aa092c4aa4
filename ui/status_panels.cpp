#include "ui/status_panels.h"

#include <QDateTime>
#include <QLabel>
#include <QLocale>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace ui {

namespace {

constexpr std::size_t TimePanel = 4;  // 0-based
constexpr std::size_t DatePanel = 5;

}  // namespace

StatusPanels::StatusPanels(QWidget* parent) : QStatusBar(parent) {
    constexpr std::array Stretches{2, 2, 1, 3, 0, 0};
    constexpr int Padding = 4;
    constexpr int ClockInterval = 1000;  // milliseconds
    setObjectName(u"sb1"_s);
    for (std::size_t i = 0; i < mPanels.size(); ++i) {
        mPanels[i] = new QLabel(this);
        mPanels[i]->setObjectName(u"sb1(%1)"_s.arg(i + 1));
        mPanels[i]->setFrameStyle(static_cast<int>(QFrame::StyledPanel) | static_cast<int>(QFrame::Plain));
        mPanels[i]->setContentsMargins(Padding, 0, Padding, 0);
        mPanels[i]->setTextFormat(Qt::PlainText);
        addWidget(mPanels[i], Stretches[i]);
    }
    ShowClock();
    auto* const clock = new QTimer(this);
    connect(clock, &QTimer::timeout, this, &StatusPanels::ShowClock);
    clock->start(ClockInterval);
}

void StatusPanels::ShowSite(const std::array<QString, 4>& texts) {
    for (std::size_t i = 0; i < texts.size(); ++i) mPanels[i]->setText(texts[i]);
}

void StatusPanels::ShowClock() {
    const QDateTime now = QDateTime::currentDateTime();
    mPanels[TimePanel]->setText(QLocale().toString(now.time(), QLocale::ShortFormat));
    mPanels[DatePanel]->setText(QLocale().toString(now.date(), QLocale::ShortFormat));
}

}  // namespace ui
