// Tells assistive technology what the widgets are that Qt does not know of.
#pragma once

#include <functional>

class QAccessibleInterface;
class QVariant;
class QWidget;
struct QMetaObject;

namespace Accessibility {

// Makes the interface of a widget; Qt owns it.
using Maker = std::function<QAccessibleInterface*(QWidget*)>;

// What widgets of a class are, from now on.
void describe(const QMetaObject& type, const Maker& make);

// Tell of a change. Where nobody listens nothing is done, unlike by Qt's own functions.
void tellName(QWidget* widget);
void tellDescription(QWidget* widget);
void tellExpanded(QWidget* widget); // Or collapsed.
void tellValue(QWidget* widget, const QVariant& value);

// Describes the controls of this folder, and buttons of any kind. Every control of ours calls it;
// only the first call does anything.
void install();

}
