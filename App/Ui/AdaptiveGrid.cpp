#include "App/Ui/AdaptiveGrid.h"

AdaptiveGrid::AdaptiveGrid(int width, int leastColumn, int spacing, int rowHeight)
    : m_width(width)
    , m_spacing(spacing)
    , m_rowHeight(rowHeight)
    , m_columns(qMax(1, (width + spacing) / (leastColumn + spacing)))
{
}

int AdaptiveGrid::height(int cells) const
{
    const int rows = (cells + m_columns - 1) / m_columns;
    return qMax(0, rows * (m_rowHeight + m_spacing) - m_spacing);
}

// What does not divide by the columns goes where it is least seen: into one or other of them.
QRect AdaptiveGrid::cell(int index) const
{
    const qreal columnWidth = qreal(m_width - (m_columns - 1) * m_spacing) / m_columns;
    const qreal start = index % m_columns * (columnWidth + m_spacing);
    const int left = qRound(start);
    const int top = index / m_columns * (m_rowHeight + m_spacing);
    return { left, top, qRound(start + columnWidth) - left, m_rowHeight };
}
