#include "ui/readable_colours.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "ui/mixed_colour.h"

namespace ui {

namespace {

/// What an eye makes of one of the three lights of a screen, from 0 to 1.
double Linear(double light) {
    return light <= 0.03928 ? light / 12.92 : std::pow((light + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& colour) {
    return 0.2126 * Linear(colour.redF()) + 0.7152 * Linear(colour.greenF()) +
           0.0722 * Linear(colour.blueF());
}

}  // namespace

double Contrast(const QColor& a, const QColor& b) {
    constexpr double StrayLight = 0.05;
    const auto [darker, lighter] = std::minmax({Luminance(a), Luminance(b)});
    return (lighter + StrayLight) / (darker + StrayLight);
}

QColor Readable(const QColor& colour, const QColor& ground) {
    constexpr int HalfLight = 128;
    constexpr int Lightened = 260;  // percent
    return ground.lightness() < HalfLight ? colour.lighter(Lightened) : colour;
}

QColor Faded(const QColor& text, const QColor& ground) {
    constexpr double MostFaded = 0.5;
    constexpr double Step = 0.05;
    constexpr double LeastContrast = 3;
    double share = MostFaded;
    while (share > 0 && Contrast(Mixed(text, ground, share), ground) < LeastContrast) share -= Step;
    return Mixed(text, ground, std::max(share, 0.0));
}

QPalette ReadableDisabledTexts(const QPalette& ordinary) {
    QPalette palette;
    for (const auto& [text, ground] : {std::pair(QPalette::WindowText, QPalette::Window),
                                       {QPalette::ButtonText, QPalette::Button},
                                       {QPalette::Text, QPalette::Base}}) {
        palette.setColor(
            QPalette::Disabled, text,
            Faded(ordinary.color(QPalette::Active, text), ordinary.color(QPalette::Active, ground)));
    }
    return palette;
}

}  // namespace ui
