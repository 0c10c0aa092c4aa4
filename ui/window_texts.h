// The texts that the window composes at start-up, and the passage between the system's texts and the
// toolkit's.
#pragma once

#include <QString>
#include <array>
#include <string>

#include "engine/system.h"

namespace ui {

/// "Version   4.02.0001" for 4, 2, 1: the minor number has at least two digits, the revision four.
QString VersionText(int major, int minor, int revision);

/// The program's own.
QString VersionText();

/// Status panels 1 to 4: workstation, host, terminal, and the site's directory with its store number, which
/// follows three letters.
std::array<QString, 4> SitePanelTexts(const engine::cSystem& system);

/// A text of the routines below the window.
inline QString FromUtf8(const std::string& text) {
    return QString::fromStdString(text);
}

/// A text for a widget that takes "&" as the mark of an access key: shown as it stands.
QString WithoutAccessKey(QString text);

}  // namespace ui
