// The six panels of the status bar: four texts about the site, the running time and the date.
#pragma once

#include <QStatusBar>
#include <array>

class QLabel;

namespace ui {

class StatusPanels : public QStatusBar {
    Q_OBJECT
  public:
    explicit StatusPanels(QWidget* parent);

    /// Fills panels 1 to 4.
    void ShowSite(const std::array<QString, 4>& texts);

  private:
    void ShowClock();

    static constexpr std::size_t PanelCount = 6;
    std::array<QLabel*, PanelCount> mPanels{};
};

}  // namespace ui
