// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelOutlineFiller.h"

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPainterPathStroker>
#include <QPen>
#include <QRgb>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <span>
#include <utility>
#include <vector>

namespace
{

using Point = KelPixelOutline::Point;

// Of a pixel that is wholly covered, and of an opaque color.
constexpr int FULL_COVERAGE = 255;

// ---- colours --------------------------------------------------------------------------------------------------

// All four bytes × factor / 255, rounded as painters do.
QRgb scaled(QRgb pixel, unsigned factor)
{
    constexpr std::uint64_t EVERY_OTHER_BYTE = 0x00ff00ff00ff00ff;
    std::uint64_t bytes = ((std::uint64_t(pixel) | std::uint64_t(pixel) << 24) & EVERY_OTHER_BYTE) * factor;
    bytes = (bytes + ((bytes >> 8) & EVERY_OTHER_BYTE) + 0x0080008000800080) >> 8 & EVERY_OTHER_BYTE;
    return QRgb(bytes) | QRgb(bytes >> 24);
}

// Puts a premultiplied color over pixels. Written so that compilers take many bytes at a time.
class Blender
{
public:
    explicit Blender(QRgb color)
        : m_color(color)
        , m_transparency(static_cast<unsigned>(FULL_COVERAGE - qAlpha(color)))
    {
        for (std::size_t i = 0; i < m_block.size(); i += sizeof(QRgb))
            std::memcpy(m_block.data() + i, &color, sizeof(QRgb));
    }

    QRgb color() const { return m_color; }

    void blend(QRgb *from, QRgb *to) const
    {
        if (m_transparency == 0) {
            std::fill(from, to, m_color);
            return;
        }
        for (; to - from >= PIXELS; from += PIXELS)
            blendBlock(reinterpret_cast<uchar *>(from));
        for (; from != to; ++from)
            *from = m_color + scaled(*from, m_transparency);
    }

private:
    static constexpr int PIXELS = 4; // of a register that all processors have

    void blendBlock(uchar *bytes) const
    {
        for (std::size_t i = 0; i < m_block.size(); ++i) {
            const auto product = static_cast<std::uint16_t>(bytes[i] * m_transparency);
            bytes[i] = static_cast<uchar>(m_block[i] + ((product + (product >> 8) + 0x80) >> 8));
        }
    }

    QRgb m_color;
    unsigned m_transparency;
    std::array<uchar, PIXELS * sizeof(QRgb)> m_block;
};

// The part of the outline's color that shows where so much is covered, painted over a row of pixels.
class RowPainter
{
public:
    RowPainter(QRgb *row, const Blender &covered)
        : m_row(row)
        , m_covered(covered)
    {
    }

    void paint(int from, int to, int coverage) const
    {
        if (coverage == FULL_COVERAGE)
            m_covered.blend(m_row + from, m_row + to);
        else
            Blender(scaled(m_covered.color(), static_cast<unsigned>(coverage))).blend(m_row + from, m_row + to);
    }

private:
    QRgb *m_row;
    const Blender &m_covered;
};

// Paints neighbouring pixels of the same coverage at once.
class RunPainter
{
public:
    RunPainter(RowPainter painter, int from)
        : m_painter(painter)
        , m_from(from)
    {
    }

    void setCoverage(int x, int coverage)
    {
        if (coverage == m_coverage)
            return;
        end(x);
        m_from = x;
        m_coverage = coverage;
    }

    void end(int x) const
    {
        if (m_coverage != 0 && x > m_from)
            m_painter.paint(m_from, x, m_coverage);
    }

private:
    RowPainter m_painter;
    int m_from;
    int m_coverage = 0;
};

// ---- divisions ------------------------------------------------------------------------------------------------

// Rounded down, with a remainder that is not negative; the divisor is positive.
template<typename Number>
struct Division
{
    Division(Number dividend, Number divisor)
        : quotient(dividend / divisor)
        , remainder(dividend % divisor)
    {
        if (remainder < 0) {
            --quotient;
            remainder += divisor;
        }
    }

    Number quotient;
    Number remainder;
};

// position(k) = start + floor((first + k × step) × slope / divisor), one k after the other. The product of step and slope
// is a Number.
template<typename Number>
class Stepper
{
public:
    Stepper(Number start, Number first, Number slope, Number divisor)
        : m_slope(slope)
        , m_divisor(divisor)
    {
        const Division<std::int64_t> division(std::int64_t(first) * slope, divisor);
        m_position = start + static_cast<Number>(division.quotient);
        m_remainder = static_cast<Number>(division.remainder);
    }

    Number position() const { return m_position; }

    void prepare(Number step)
    {
        const Division<Number> division(step * m_slope, m_divisor);
        m_step = division.quotient;
        m_stepRemainder = division.remainder;
    }

    void advance()
    {
        m_position += m_step;
        m_remainder += m_stepRemainder;
        if (m_remainder >= m_divisor) {
            m_remainder -= m_divisor;
            ++m_position;
        }
    }

private:
    Number m_slope;
    Number m_divisor;
    Number m_position;
    Number m_remainder;
    Number m_step = 0;
    Number m_stepRemainder = 0;
};

// What short outlines leave behind is kept in lists, one for each row and in the order of the columns: most pixels of the
// part would be empty.
template<typename Entry>
class RowLists
{
public:
    void add(const Entry &entry) { m_entries.push_back(entry); }

    // In place, row by row: each entry goes where its row still has room.
    void sort(int top, int bottom)
    {
        m_top = top;
        m_ends.assign(static_cast<std::size_t>(bottom - top) + 1, 0);
        for (const Entry &entry : m_entries)
            ++m_ends[index(entry.row) + 1];
        for (std::size_t i = 1; i < m_ends.size(); ++i)
            m_ends[i] += m_ends[i - 1];
        std::vector<std::size_t> next(m_ends.begin(), m_ends.end() - 1);
        for (std::size_t row = 0; row < next.size(); ++row) {
            while (next[row] < m_ends[row + 1]) {
                Entry &entry = m_entries[next[row]];
                const std::size_t home = index(entry.row);
                if (home != row)
                    std::swap(entry, m_entries[next[home]]);
                ++next[home];
            }
        }
        for (std::size_t i = 1; i < m_ends.size(); ++i) {
            std::sort(m_entries.data() + m_ends[i - 1], m_entries.data() + m_ends[i],
                      [](const Entry &a, const Entry &b) { return a.column < b.column; });
        }
    }

    std::span<const Entry> row(int row) const
    {
        return {m_entries.data() + m_ends[index(row)], m_ends[index(row) + 1] - m_ends[index(row)]};
    }

    const std::vector<Entry> &entries() const { return m_entries; }

    void clear() { m_entries = std::vector<Entry>(); }

    std::size_t bytes() const { return m_entries.capacity() * sizeof(Entry); }

private:
    std::size_t index(int row) const { return static_cast<std::size_t>(row - m_top); }

    std::vector<Entry> m_entries;
    std::vector<std::size_t> m_ends; // of the row before
    int m_top = 0;
};

// A row of lists costs more than one of pixels from so many pixels for each line of the outline.
constexpr std::size_t PIXELS_PER_LINE = 4;

// Lists with more entries than one for so many pixels take more memory, and sorting them more time, than the pixels.
constexpr std::size_t PIXELS_PER_ENTRY = 8;

// The columns of a row that anything was added to.
struct Extent
{
    int from = std::numeric_limits<int>::max();
    int to = 0;

    void add(int first, int last)
    {
        from = std::min(from, first);
        to = std::max(to, last + 1);
    }
};

} // namespace

// What an outline covers in a rectangle of pixels.
class KelOutlineFiller::Part
{
public:
    explicit Part(const QRect &part)
        : m_left(part.left())
        , m_right(part.left() + part.width())
        , m_top(part.top())
        , m_bottom(part.top() + part.height())
        , m_extents(static_cast<std::size_t>(std::max(part.height(), 0)))
    {
    }
    virtual ~Part() = default;
    Q_DISABLE_COPY_MOVE(Part)

    virtual void add(const KelPixelOutline &outline, int sign) = 0;
    virtual bool isExact() const { return true; }
    virtual std::size_t bytes() const = 0;

    void paint(uchar *bits, qsizetype bytesPerLine, QRgb color, Qt::FillRule rule)
    {
        if (area() == 0)
            return;
        prepareToPaint();
        const Blender covered(color);
        for (int row = m_top; row < m_bottom; ++row) {
            const Extent &extent = m_extents[index(row)];
            if (extent.from < extent.to)
                paintRow(row, extent, RowPainter(reinterpret_cast<QRgb *>(bits + row * bytesPerLine), covered), rule);
        }
    }

protected:
    virtual void prepareToPaint() = 0;
    virtual void paintRow(int row, const Extent &extent, const RowPainter &painter, Qt::FillRule rule) const = 0;

    std::size_t index(int row) const { return static_cast<std::size_t>(row - m_top); }
    std::size_t index(int row, int column) const
    {
        return index(row) * static_cast<std::size_t>(m_right - m_left) + static_cast<std::size_t>(column - m_left);
    }
    bool isSparse(const KelPixelOutline &outline) const { return outline.size() * PIXELS_PER_LINE < area(); }
    std::size_t area() const { return m_extents.size() * static_cast<std::size_t>(std::max(m_right - m_left, 0)); }

    const int m_left;
    const int m_right;
    const int m_top;
    const int m_bottom;
    std::vector<Extent> m_extents;
};

namespace
{

// ---- antialiased ----------------------------------------------------------------------------------------------

// Edges in 256ths of a pixel. For each pixel: the height of what passes it, counted downwards, and twice the area between
// that and the pixel's left side. The area to the right of an edge is covered.
template<typename Area>
class AntialiasedPart : public KelOutlineFiller::Part
{
public:
    explicit AntialiasedPart(const QRect &part)
        : Part(part)
    {
    }

    void add(const KelPixelOutline &outline, int sign) override
    {
        if (area() == 0)
            return;
        if (m_cells.empty() && !isSparse(outline))
            takeCells();
        m_sign = sign;
        outline.forEachLine([this](const Point &from, const Point &to) { addLine(from, to); });
    }

    std::size_t bytes() const override { return m_cells.capacity() * sizeof(Cell) + m_lists.bytes(); }

protected:
    void prepareToPaint() override
    {
        if (m_cells.empty())
            m_lists.sort(m_top, m_bottom);
    }

    void paintRow(int row, const Extent &extent, const RowPainter &painter, Qt::FillRule rule) const override
    {
        RunPainter run(painter, extent.from);
        const Area height = m_cells.empty() ? paintList(row, &run, rule) : paintCells(row, extent, &run, rule);
        run.setCoverage(extent.to, coverage(height * (2 * ONE), rule));
        run.end(m_right);
    }

private:
    static constexpr int BITS = 8;
    static constexpr int ONE = 1 << BITS;
    static constexpr int PARTS = ONE / 64;

    // Coordinates from which products need more than 32 bits.
    static constexpr int FAR = 1 << 21;

    struct Cell
    {
        Area area = 0;
        int height = 0;
    };

    struct Entry
    {
        int row;
        int column;
        int height;
        int area;
    };

    // Return the height that passes on to the right.
    Area paintCells(int row, const Extent &extent, RunPainter *run, Qt::FillRule rule) const
    {
        const Cell *cells = m_cells.data() + index(row, m_left) - m_left;
        Area height = 0;
        for (int column = extent.from; column < extent.to; ++column) {
            const Cell &cell = cells[column];
            height += cell.height;
            run->setCoverage(column, coverage(height * (2 * ONE) - cell.area, rule));
        }
        return height;
    }

    Area paintList(int row, RunPainter *run, Qt::FillRule rule) const
    {
        const std::span<const Entry> entries = m_lists.row(row);
        Area height = 0;
        for (std::size_t i = 0; i < entries.size();) {
            const int column = entries[i].column;
            Area area = 0;
            for (; i < entries.size() && entries[i].column == column; ++i) {
                height += entries[i].height;
                area += entries[i].area;
            }
            run->setCoverage(column, coverage(height * (2 * ONE) - area, rule));
            run->setCoverage(column + 1, coverage(height * (2 * ONE), rule));
        }
        return height;
    }

    static int coverage(Area area, Qt::FillRule rule)
    {
        Area coverage = area >> (2 * BITS + 1 - 8);
        if (coverage < 0)
            coverage = -coverage;
        if (rule == Qt::OddEvenFill) {
            coverage &= 2 * ONE - 1;
            if (coverage > ONE)
                coverage = 2 * ONE - coverage;
        }
        return static_cast<int>(std::min<Area>(coverage, FULL_COVERAGE));
    }

    void addLine(const Point &from, const Point &to)
    {
        const int y1 = from.y * PARTS;
        const int y2 = to.y * PARTS;
        if (y1 == y2 || std::max(y1, y2) <= m_top * ONE || std::min(y1, y2) >= m_bottom * ONE)
            return;
        const int x1 = from.x * PARTS;
        const int x2 = to.x * PARTS;
        if (std::min(x1, x2) >= m_right * ONE)
            return;
        if (std::max(std::abs(x2 - x1), std::abs(y2 - y1)) < FAR)
            addPixels<int>(x1, y1, x2, y2);
        else
            addPixels<std::int64_t>(x1, y1, x2, y2);
    }

    template<typename Number>
    void addPixels(int x1, int y1, int x2, int y2)
    {
        if (y1 >> BITS == y2 >> BITS)
            addInRow<Number>(y1 >> BITS, x1, y1 & (ONE - 1), x2, y2 & (ONE - 1));
        else
            addRows<Number>(x1, y1, x2, y2);
    }

    template<typename Number>
    void addRows(int x1, int y1, int x2, int y2)
    {
        const bool down = y2 > y1;
        const int step = down ? 1 : -1;
        const int begin = down ? 0 : ONE;
        const int last = y2 >> BITS;
        int row = y1 >> BITS;
        int x = x1;
        int y = y1 & (ONE - 1);
        // Rows outside are skipped.
        const int firstSeen = down ? m_top : m_bottom - 1;
        const int behindSeen = down ? m_bottom : m_top - 1;
        if ((firstSeen - row) * step > 0) {
            row = firstSeen;
            const Number distance = std::abs((down ? row : row + 1) * ONE - y1);
            x = static_cast<int>(Stepper<Number>(x1, distance, x2 - x1, std::abs(y2 - y1)).position());
            y = begin;
        }
        if (row != last) {
            const Number distance = std::abs((down ? row + 1 : row) * ONE - y1);
            Stepper<Number> stepper(x1, distance, x2 - x1, std::abs(y2 - y1));
            addInRow<Number>(row, x, y, static_cast<int>(stepper.position()), ONE - begin);
            x = static_cast<int>(stepper.position());
            y = begin;
            row += step;
            if (row != last && row != behindSeen) {
                stepper.prepare(ONE);
                do {
                    stepper.advance();
                    addInRow<Number>(row, x, y, static_cast<int>(stepper.position()), ONE - begin);
                    x = static_cast<int>(stepper.position());
                    row += step;
                } while (row != last && row != behindSeen);
            }
        }
        if (row != behindSeen)
            addInRow<Number>(row, x, y, x2, y2 & (ONE - 1));
    }

    // A piece of a line that stays in one row, where y is counted from the row's top.
    template<typename Number>
    void addInRow(int row, int x1, int y1, int x2, int y2)
    {
        if (y1 == y2 || row < m_top || row >= m_bottom)
            return;
        const int first = x1 >> BITS;
        const int last = x2 >> BITS;
        if (first >= m_right && last >= m_right)
            return;
        m_extents[index(row)].add(std::clamp(std::min(first, last), m_left, m_right - 1),
                                  std::clamp(std::max(first, last), m_left, m_right - 1));
        if (last < m_left && first < m_left) {
            add(row, m_left, 0, y2 - y1);
        } else if (first == last) {
            add(row, first, (x1 & (ONE - 1)) + (x2 & (ONE - 1)), y2 - y1);
        } else if (first < last) {
            addToTheRight<Number>(row, x1, y1, x2, y2);
        } else {
            addToTheLeft<Number>(row, x1, y1, x2, y2);
        }
    }

    template<typename Number>
    void addToTheRight(int row, int x1, int y1, int x2, int y2)
    {
        const int last = x2 >> BITS;
        int column = x1 >> BITS;
        int x = x1 & (ONE - 1);
        int y = y1;
        if (column < m_left) {
            y = static_cast<int>(Stepper<Number>(y1, m_left * ONE - x1, y2 - y1, x2 - x1).position());
            add(row, m_left, 0, y - y1);
            column = m_left;
            x = 0;
        }
        if (column != last) {
            Stepper<Number> stepper(y1, (column + 1) * ONE - x1, y2 - y1, x2 - x1);
            add(row, column, x + ONE, static_cast<int>(stepper.position()) - y);
            y = static_cast<int>(stepper.position());
            x = 0;
            ++column;
            const int end = std::min(last, m_right);
            if (column < end) {
                stepper.prepare(ONE);
                for (; column < end; ++column) {
                    stepper.advance();
                    add(row, column, ONE, static_cast<int>(stepper.position()) - y);
                    y = static_cast<int>(stepper.position());
                }
            }
        }
        if (last < m_right)
            add(row, last, x + (x2 & (ONE - 1)), y2 - y);
    }

    template<typename Number>
    void addToTheLeft(int row, int x1, int y1, int x2, int y2)
    {
        const int last = x2 >> BITS;
        int column = x1 >> BITS;
        int x = x1 & (ONE - 1);
        int y = y1;
        if (column >= m_right) {
            column = m_right - 1;
            y = static_cast<int>(Stepper<Number>(y1, x1 - m_right * ONE, y2 - y1, x1 - x2).position());
            x = ONE;
        }
        if (column != last) {
            Stepper<Number> stepper(y1, x1 - column * ONE, y2 - y1, x1 - x2);
            add(row, column, x, static_cast<int>(stepper.position()) - y);
            y = static_cast<int>(stepper.position());
            x = ONE;
            --column;
            const int end = std::max(last, m_left - 1);
            if (column > end) {
                stepper.prepare(ONE);
                for (; column > end; --column) {
                    stepper.advance();
                    add(row, column, ONE, static_cast<int>(stepper.position()) - y);
                    y = static_cast<int>(stepper.position());
                }
            }
        }
        if (last < m_left)
            add(row, m_left, 0, y2 - y);
        else
            add(row, last, x + (x2 & (ONE - 1)), y2 - y);
    }

    // Twice the mean distance from the left side of the pixel.
    void add(int row, int column, int twiceTheDistance, int height)
    {
        const int signedHeight = m_sign * height;
        if (!m_cells.empty()) {
            addToCell({row, column, signedHeight, twiceTheDistance * signedHeight});
            return;
        }
        m_lists.add({row, column, signedHeight, twiceTheDistance * signedHeight});
        if (m_lists.entries().size() > area() / PIXELS_PER_ENTRY)
            takeCells();
    }

    void addToCell(const Entry &entry)
    {
        Cell &cell = m_cells[index(entry.row, entry.column)];
        cell.height += entry.height;
        cell.area += entry.area;
    }

    void takeCells()
    {
        m_cells.resize(area());
        for (const Entry &entry : m_lists.entries())
            addToCell(entry);
        m_lists.clear();
    }

    std::vector<Cell> m_cells; // none as long as there are lists
    RowLists<Entry> m_lists;
    int m_sign = 1;
};

// ---- aliased --------------------------------------------------------------------------------------------------

// Edges at the middle of each row, in 65536ths of a pixel. For each pixel: how often the outline winds there more than at
// the pixel to its left.
class AliasedPart : public KelOutlineFiller::Part
{
public:
    AliasedPart(const QRect &part, const QSize &size)
        : Part(part)
        , m_size(size)
    {
    }

    void add(const KelPixelOutline &outline, int sign) override
    {
        if (area() == 0)
            return;
        if (m_windings.empty() && !isSparse(outline))
            takeWindings();
        outline.forEachLine([this, sign](const Point &from, const Point &to) {
            if (from.y > to.y)
                addLine(to, from, -sign);
            else
                addLine(from, to, sign);
        });
    }

    bool isExact() const override { return m_isExact; }
    std::size_t bytes() const override { return m_windings.capacity() * sizeof(int) + m_lists.bytes(); }

protected:
    void prepareToPaint() override
    {
        if (m_windings.empty())
            m_lists.sort(m_top, m_bottom);
    }

    void paintRow(int row, const Extent &extent, const RowPainter &painter, Qt::FillRule rule) const override
    {
        const int mask = rule == Qt::WindingFill ? ~0 : 1;
        RunPainter run(painter, extent.from);
        int winding = 0;
        const auto add = [&](int column, int more) {
            winding += more;
            run.setCoverage(column, (winding & mask) != 0 ? FULL_COVERAGE : 0);
        };
        if (m_windings.empty()) {
            for (const Entry &entry : m_lists.row(row))
                add(entry.column, entry.winding);
        } else {
            const int *windings = m_windings.data() + index(row, m_left) - m_left;
            for (int column = extent.from; column < extent.to; ++column)
                add(column, windings[column]);
        }
        run.end(m_right);
    }

private:
    static constexpr int ONE = 1 << 16;

    struct Edge
    {
        std::int64_t x;
        std::int64_t slope;
        int top;
        int bottom;

        std::int64_t end() const { return x + slope * (bottom - top); }
    };

    struct Entry
    {
        int row;
        int column;
        int winding;
    };

    template<typename Number>
    static bool isTooLarge(Number value)
    {
        constexpr Number MOST = std::numeric_limits<int>::max() / 2;
        return !(value > -MOST && value < MOST);
    }

    void addLine(const Point &upper, const Point &lower, int winding)
    {
        Edge edge;
        edge.top = std::max(0, (upper.y + 32) >> 6);
        edge.bottom = std::min(m_size.height() - 1, (lower.y - 32) >> 6);
        if (edge.top > edge.bottom)
            return;
        const std::int64_t x = ONE / 2 + std::int64_t(upper.x) * (ONE / 64);
        const double slope = upper.x == lower.x ? 0.0 : (lower.x - upper.x) / double(lower.y - upper.y) * ONE;
        if (isTooLarge(x) || isTooLarge(slope)) {
            m_isExact = false;
            return;
        }
        edge.slope = static_cast<int>(slope);
        const std::int64_t distance = std::int64_t(edge.top) * ONE + ONE / 2 - std::int64_t(upper.y) * (ONE / 64);
        edge.x = x + ((edge.slope * distance) >> 16);
        if (isTooLarge(distance) || isTooLarge(edge.x) || isTooLarge(edge.end()) || isTooLarge(edge.end() - edge.x))
            m_isExact = false;
        else if (upper.x == lower.x)
            addStraightDown(std::clamp<std::int64_t>(x, 0, rightEdge()), edge.top, edge.bottom, winding);
        else if (clipLeft(&edge, winding) && clipRight(&edge, winding))
            addEdge(edge, winding);
    }

    std::int64_t rightEdge() const { return std::int64_t(m_size.width()) * ONE; }

    // What lies beyond a side of the image runs along that side. Where exactly an edge comes into sight is rounded in its
    // own way, which the pixels at the right side show. False where nothing is left.
    bool clipLeft(Edge *edge, int winding)
    {
        if (edge->x == 0 ? edge->slope > 0 : edge->end() == 0 ? edge->slope < 0
                                                              : edge->x > 0 && edge->end() > 0)
            return true;
        if (edge->x <= 0 && edge->end() <= 0) {
            addStraightDown(0, edge->top, edge->bottom, winding);
            return false;
        }
        return edge->x < 0 ? clipTop(edge, 0, winding) : clipBottom(edge, 0, winding);
    }

    bool clipRight(Edge *edge, int winding)
    {
        const std::int64_t right = rightEdge();
        if (edge->x == right           ? edge->slope < 0
                : edge->end() == right ? edge->slope > 0
                                       : edge->x < right && edge->end() < right)
            return true;
        if (edge->x >= right && edge->end() >= right) {
            addStraightDown(right, edge->top, edge->bottom, winding);
            return false;
        }
        return edge->x > right ? clipTop(edge, right, winding) : clipBottom(edge, right, winding);
    }

    // In 65536ths of a row.
    static int rowsTo(const Edge &edge, std::int64_t side)
    {
        return static_cast<int>(static_cast<double>(side - edge.x) / (static_cast<double>(edge.slope) * (1.0 / ONE)));
    }

    bool clipTop(Edge *edge, std::int64_t side, int winding)
    {
        const int rows = (rowsTo(*edge, side) + 1) >> 16;
        const int middle = edge->top + rows;
        addStraightDown(side, edge->top, middle, winding);
        if (middle == edge->bottom)
            return false;
        edge->x += edge->slope * (rows + 1);
        edge->top = middle + 1;
        return true;
    }

    bool clipBottom(Edge *edge, std::int64_t side, int winding)
    {
        const int middle = edge->top + (rowsTo(*edge, side) >> 16);
        if (middle != edge->bottom) {
            addStraightDown(side, middle + 1, edge->bottom, winding);
            edge->bottom = middle;
        }
        return true;
    }

    void addStraightDown(std::int64_t x, int top, int bottom, int winding) { addEdge({x, 0, top, bottom}, winding); }

    void addEdge(const Edge &edge, int winding)
    {
        const int top = std::max(edge.top, m_top);
        const int bottom = std::min(edge.bottom, m_bottom - 1);
        std::int64_t x = edge.x + edge.slope * (top - edge.top);
        for (int row = top; row <= bottom; ++row, x += edge.slope) {
            const int column = std::max(static_cast<int>(x >> 16), m_left);
            if (column >= m_right)
                continue;
            add({row, column, winding});
            m_extents[index(row)].add(column, column);
        }
    }

    void add(const Entry &entry)
    {
        if (!m_windings.empty()) {
            m_windings[index(entry.row, entry.column)] += entry.winding;
            return;
        }
        m_lists.add(entry);
        if (m_lists.entries().size() > area() / PIXELS_PER_ENTRY)
            takeWindings();
    }

    void takeWindings()
    {
        m_windings.resize(area());
        for (const Entry &entry : m_lists.entries())
            m_windings[index(entry.row, entry.column)] += entry.winding;
        m_lists.clear();
    }

    QSize m_size;
    std::vector<int> m_windings; // none as long as there are lists
    RowLists<Entry> m_lists;
    bool m_isExact = true;
};

std::unique_ptr<KelOutlineFiller::Part> createPart(const QRect &part, const QSize &size,
                                                   KelOutlineFiller::Smoothness smoothness,
                                                   KelOutlineFiller::Amount amount)
{
    if (smoothness == KelOutlineFiller::Aliased)
        return std::make_unique<AliasedPart>(part, size);
    // So few edges may all pass the same pixel without an overflow of the sum of their areas.
    if (amount == KelOutlineFiller::Few)
        return std::make_unique<AntialiasedPart<int>>(part);
    return std::make_unique<AntialiasedPart<std::int64_t>>(part);
}

// Lines of all directions that cross each other.
QPainterPath trialLine()
{
    constexpr int STEPS = 40;
    QPainterPath line(QPointF(20, 20));
    for (int i = 1; i < STEPS; ++i)
        line.lineTo(25 + 1.1 * i * std::cos(i * 2.3), 22 + 0.9 * i * std::sin(i * 2.3));
    return line;
}

// Compares an outline that is filled here with what a QPainter paints.
template<typename Paint>
bool isPaintedAs(const QPainterPath &outline, KelOutlineFiller::Smoothness smoothness, const QColor &color, Paint paint)
{
    const QSize size(48, 40);
    const QPointF offset(0.3, -0.7);
    QImage expected(size, QImage::Format_ARGB32_Premultiplied);
    expected.fill(QColor(10, 60, 90, 180));
    QImage actual = expected.copy();

    QPainter painter(&expected);
    painter.setRenderHint(QPainter::Antialiasing, smoothness == KelOutlineFiller::Antialiased);
    painter.translate(offset);
    paint(&painter);
    painter.end();

    const QRect whole(QPoint(), size);
    KelOutlineFiller(KelPixelOutline(outline, offset, whole), whole, size, smoothness)
        .paint(actual.bits(), actual.bytesPerLine(), KelOutlineFiller::premultiplied(color), outline.fillRule());
    return actual == expected;
}

bool paintsTrialsAsQPainter(KelOutlineFiller::Smoothness smoothness)
{
    const QColor color(200, 100, 30, 150);
    const QPen pen(color, 3.7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    const QPainterPath line = trialLine();
    QPainterPath outline = QPainterPathStroker(pen).createStroke(line);
    outline.setFillRule(Qt::WindingFill);
    if (!isPaintedAs(outline, smoothness, color, [&](QPainter *painter) { painter->strokePath(line, pen); }))
        return false;
    for (const Qt::FillRule rule : {Qt::WindingFill, Qt::OddEvenFill}) {
        outline.setFillRule(rule);
        if (!isPaintedAs(outline, smoothness, color, [&](QPainter *painter) { painter->fillPath(outline, color); }))
            return false;
    }
    return true;
}

} // namespace

KelOutlineFiller::KelOutlineFiller(const QRect &part, const QSize &size, Smoothness smoothness, Amount amount)
    : m_part(createPart(part, size, smoothness, amount))
{
}

KelOutlineFiller::KelOutlineFiller(const KelPixelOutline &outline, const QRect &part, const QSize &size,
                                   Smoothness smoothness)
    : KelOutlineFiller(part & outline.pixels().adjusted(-2, 0, 2, 1), size, smoothness,
                       outline.size() <= MOST_OF_FEW ? Few : Many)
{
    add(outline);
}

KelOutlineFiller::~KelOutlineFiller() = default;

void KelOutlineFiller::add(const KelPixelOutline &outline, Sign sign)
{
    m_part->add(outline, sign == Added ? 1 : -1);
}

bool KelOutlineFiller::isExact() const
{
    return m_part->isExact();
}

void KelOutlineFiller::paint(uchar *bits, qsizetype bytesPerLine, QRgb color, Qt::FillRule rule)
{
    m_part->paint(bits, bytesPerLine, color, rule);
}

QRgb KelOutlineFiller::premultiplied(const QColor &color)
{
    QImage image(1, 1, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainterPath everywhere(QPointF(-8, -8));
    everywhere.lineTo(16, 0);
    everywhere.lineTo(0, 16);
    QPainter(&image).fillPath(everywhere, color);
    return *reinterpret_cast<const QRgb *>(image.constBits());
}

std::size_t KelOutlineFiller::bytes() const
{
    return m_part->bytes();
}

bool KelOutlineFiller::paintsAsQPainter()
{
    static const bool result = paintsTrialsAsQPainter(Antialiased) && paintsTrialsAsQPainter(Aliased);
    return result;
}
