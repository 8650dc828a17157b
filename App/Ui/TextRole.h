// What a run of words is for; the theme gives each role its font and line.
#pragma once

enum class TextRole {
    tabTitle,
    caption,
    captionHeading,
    callout,
    body,
    headline,
    button,
    smallButton,
    editor,
    ringTime,
    statusTitle,
    widgetRow,
};
