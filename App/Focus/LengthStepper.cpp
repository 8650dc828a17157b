#include "App/Focus/LengthStepper.h"

#include "App/Ui/ControlBox.h"
#include "App/Ui/DigitText.h"
#include "App/Ui/Label.h"
#include "App/Ui/Stepper.h"
#include "App/Ui/Theme.h"

#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int spacing = 2; // Between the title and the row below it.
constexpr int gap = 8; // Between the words and the stepper.

int stepperValue(qint64 minutes)
{
    using Limits = std::numeric_limits<int>;
    return static_cast<int>(std::clamp<qint64>(minutes, Limits::min(), Limits::max()));
}

}

LengthStepper::LengthStepper(const QString& title, int most, QWidget* parent)
    : ArrangedWidget(parent)
    , m_title(new Label(TextRole::caption, &Colors::secondary, this))
    , m_stepper(new Stepper(title, this))
{
    m_title->setText(title);
    m_title->setAlignment(Qt::AlignCenter);
    m_stepper->setAccessibleDescription(u"Minutes"_s);
    m_stepper->setRange(1, most);
    m_stepper->setObjectName(title);
    connect(m_stepper, &Stepper::edited, this, &LengthStepper::edited);
}

// With the margin that the stepper's focus ring needs.
void LengthStepper::placeBox(const QRect& box)
{
    ControlBox::place(*this, box);
}

void LengthStepper::setMinutes(qint64 minutes)
{
    m_stepper->setValue(stepperValue(minutes));
    if (std::exchange(m_minutes, minutes) != minutes)
        arrange();
}

QString LengthStepper::words() const
{
    return QString::asprintf("%lld min", m_minutes);
}

void LengthStepper::arrange()
{
    const int titleHeight = Theme::lineHeight(TextRole::caption);
    const auto stepper = Stepper::boxSize();
    const DigitText text(Theme::current().font(TextRole::callout));
    const int width = static_cast<int>(std::ceil(text.width(words())));
    const auto box = ControlBox::of(*this);
    const int left = box.left() + (box.width() - width - gap - stepper.width()) / 2;
    const QRect row(box.left(), box.top() + titleHeight + spacing, box.width(), stepper.height());
    const auto mirrored
        = [&](const QRect& part) { return QStyle::visualRect(layoutDirection(), row, part); };

    m_title->setGeometry(box.left(), box.top(), box.width(), titleHeight);
    m_words = mirrored({ left, row.top(), width, row.height() });
    m_stepper->placeBox(mirrored({ { left + width + gap, row.top() }, stepper }));
    update();
}

void LengthStepper::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const auto& theme = Theme::current();
    DigitText(theme.font(TextRole::callout)).paint(painter, m_words, words(), theme.colors.text);
}
