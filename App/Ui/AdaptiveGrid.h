// Places cells in as many equal columns as there is room for.
#pragma once

#include <QRect>

class AdaptiveGrid final {
public:
    // All in points; a column is never narrower than the least width, unless there is only one.
    AdaptiveGrid(int width, int leastColumn, int spacing, int rowHeight);

    int columns() const { return m_columns; }
    int height(int cells) const;
    QRect cell(int index) const; // From the grid's top left corner.

private:
    int m_width;
    int m_spacing;
    int m_rowHeight;
    int m_columns;
};
