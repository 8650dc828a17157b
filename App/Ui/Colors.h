// Every colour of the program, for light and for dark.
#pragma once

#include <QColor>

#include <array>

struct Colors {
    // An invalid accent means our own blue.
    static Colors make(bool dark, const QColor& accent);

    struct Shadow {
        int y = 0;
        int blur = 0;
        QColor color;
    };

    // Grounds and words.
    QColor window, field, menu;
    QColor text, secondary, placeholder;

    // The accent: a fill under white words, a drawing colour, and words on its own tint.
    QColor accent, accentHover, accentPressed;
    QColor mark, accentText;

    QColor red, redText, green, blue, purple, orange, orangeText;

    QColor button, buttonHover, buttonPressed, buttonRing, buttonShade, fieldRing;
    QColor redTint, redTintHover, redTintPressed, redRing;
    QColor disabledFill, disabledRing, disabledWords;
    QColor disabledProminentFill, disabledProminentWords;

    QColor divider, focusRing;
    QColor tabHover, tabPressed, tabSelected;
    QColor card, resultArea;
    QColor tile, tileHover, tileEdit, tilePressed;
    QColor ringTrack, editorOutline, barTrack;
    QColor segmentedTrack, segment, segmentShade, switchOff;
    QColor thumb, thumbHover;

    // The inner edge is invalid in light.
    QColor popoverEdge, popoverInnerEdge;
    std::array<Shadow, 2> popoverShadow;
};
